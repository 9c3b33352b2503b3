// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/MaskVolumeList.h"

#include "Core/Common/Raise.h"

#include <utility>

namespace DataObjects
{

namespace
{

using Volumes = std::vector<std::shared_ptr<MaskVolume>>;

constexpr const char* differentSizes = "Size of mask volumes is different";

void verifyNotEmpty(unsigned long long count, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::verify(count > 0, "List size of mask volumes not allowed to be zero", location);
}

Volumes newVolumes(const Math::Size3T<unsigned int>& volumeSize, unsigned int count)
{
    verifyNotEmpty(count);
    Volumes volumes(count);
    for (auto& volume : volumes) {
        volume = std::make_shared<MaskVolume>(volumeSize);
    }
    return volumes;
}

Volumes movedFrom(std::vector<MaskVolume>& volumes)
{
    for (const MaskVolume& volume : volumes) {
        RTE::verify(volume.GetSize() == volumes.front().GetSize(), differentSizes);
    }
    Volumes moved;
    moved.reserve(volumes.size());
    for (MaskVolume& volume : volumes) {
        moved.push_back(std::make_shared<MaskVolume>(std::move(volume)));
    }
    return moved;
}

Volumes copyOf(const Volumes& volumes)
{
    Volumes copies;
    copies.reserve(volumes.size());
    for (const auto& volume : volumes) {
        copies.push_back(std::make_shared<MaskVolume>(*volume));
    }
    return copies;
}

} // namespace

MaskVolumeList::MaskVolumeList(const Math::Size3T<unsigned int>& volumeSize, unsigned int count)
    : m_volumes(newVolumes(volumeSize, count))
{
}

MaskVolumeList::MaskVolumeList(unsigned int width, unsigned int height, unsigned int depth,
                               unsigned int count)
    : MaskVolumeList(Math::Size3T<unsigned int>(width, height, depth), count)
{
}

MaskVolumeList::MaskVolumeList(std::vector<MaskVolume>&& volumes) : MaskVolumeList(movedFrom(volumes)) {}

MaskVolumeList::MaskVolumeList(std::vector<std::shared_ptr<MaskVolume>> volumes)
    : m_volumes(std::move(volumes))
{
    verifyNotEmpty(m_volumes.size());
    for (const auto& volume : m_volumes) {
        RTE::verify(volume != nullptr, "Mask volume is not valid");
        RTE::verify(volume->GetSize() == GetVolumeSize(), differentSizes);
    }
}

MaskVolumeList::MaskVolumeList(const MaskVolumeList& other) : m_volumes(copyOf(other.m_volumes)) {}

MaskVolumeList::MaskVolumeList(MaskVolumeList&& other) noexcept = default;

MaskVolumeList::~MaskVolumeList() = default;

MaskVolumeList& MaskVolumeList::operator=(const MaskVolumeList& other)
{
    if (this != &other) {
        m_volumes = copyOf(other.m_volumes);
    }
    return *this;
}

MaskVolumeList& MaskVolumeList::operator=(MaskVolumeList&& other) noexcept
{
    if (this != &other) {
        m_volumes = std::exchange(other.m_volumes, {});
    }
    return *this;
}

MaskVolumeList& MaskVolumeList::operator=(bool value) noexcept
{
    for (const auto& volume : m_volumes) {
        *volume = value;
    }
    return *this;
}

MaskVolumeList& MaskVolumeList::operator&=(const MaskVolumeList& other)
{
    RTE::verify(size() == other.size(), differentSizes);
    // All before the first, so that a failure changes nothing.
    for (unsigned long long frame = 0; frame < size(); ++frame) {
        RTE::verify(m_volumes[frame]->GetSize() == other.m_volumes[frame]->GetSize(), differentSizes);
    }
    for (unsigned long long frame = 0; frame < size(); ++frame) {
        *m_volumes[frame] &= *other.m_volumes[frame];
    }
    return *this;
}

} // namespace DataObjects
