// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/MaskVolume.h"

#include "Core/Common/Raise.h"

#include <utility>

namespace DataObjects
{

namespace
{

using Planes = std::vector<std::shared_ptr<Mask>>;

Planes newPlanes(const Math::Size3T<unsigned int>& size)
{
    RTE::verify(size.depth > 0, "At least 1 plane required.");
    Planes planes(size.depth);
    for (auto& plane : planes) {
        plane = std::make_shared<Mask>(size.width, size.height);
    }
    return planes;
}

Planes copyOf(const Planes& planes)
{
    Planes copies;
    copies.reserve(planes.size());
    for (const auto& plane : planes) {
        copies.push_back(std::make_shared<Mask>(*plane));
    }
    return copies;
}

Math::Size3T<unsigned int> commonSize(const Planes& planes)
{
    RTE::verify(!planes.empty(), "At least 1 plane required");
    for (const auto& plane : planes) {
        RTE::verify(plane != nullptr, "Mask is not valid.");
        RTE::verify(plane->GetSize() == planes.front()->GetSize(), "Mask has invalid size.");
    }
    return {planes.front()->GetWidth(), planes.front()->GetHeight(),
            static_cast<unsigned int>(planes.size())};
}

} // namespace

MaskVolume::MaskVolume(const Math::Size3T<unsigned int>& size) : m_planes(newPlanes(size)), m_size(size) {}

MaskVolume::MaskVolume(unsigned int width, unsigned int height, unsigned int depth)
    : MaskVolume(Math::Size3T<unsigned int>(width, height, depth))
{
}

MaskVolume::MaskVolume(std::vector<std::shared_ptr<Mask>> planes)
    : m_planes(std::move(planes)), m_size(commonSize(m_planes))
{
}

MaskVolume::MaskVolume(Mask&& plane) : MaskVolume(std::make_shared<Mask>(std::move(plane))) {}

MaskVolume::MaskVolume(const Mask& plane) : MaskVolume(Mask(plane)) {}

MaskVolume::MaskVolume(std::shared_ptr<Mask> plane) : MaskVolume(Planes(1, std::move(plane))) {}

MaskVolume::MaskVolume(const MaskVolume& other) : m_planes(copyOf(other.m_planes)), m_size(other.m_size) {}

MaskVolume::MaskVolume(MaskVolume&& other) noexcept
    : m_planes(std::exchange(other.m_planes, {})), m_size(std::exchange(other.m_size, {}))
{
}

MaskVolume::~MaskVolume() = default;

MaskVolume& MaskVolume::operator=(const MaskVolume& other)
{
    if (this != &other) {
        RTE::verify(m_size == other.m_size, "Mask volume has a different size");
        m_planes = copyOf(other.m_planes);
    }
    return *this;
}

MaskVolume& MaskVolume::operator=(MaskVolume&& other) noexcept
{
    if (this != &other) {
        m_planes = std::exchange(other.m_planes, {});
        m_size = std::exchange(other.m_size, {});
    }
    return *this;
}

MaskVolume& MaskVolume::operator=(bool value) noexcept
{
    for (const auto& plane : m_planes) {
        plane->Fill(value);
    }
    return *this;
}

const Mask& MaskVolume::GetMask(unsigned int z) const
{
    RTE::verifyIndex(z, m_planes.size(), "z");
    return *m_planes[z];
}

Mask& MaskVolume::GetMask(unsigned int z)
{
    RTE::verifyIndex(z, m_planes.size(), "z");
    return *m_planes[z];
}

bool MaskVolume::IsValid(const Math::Point3T<int>& position) const noexcept
{
    return IsValid(static_cast<unsigned int>(position.x), static_cast<unsigned int>(position.y),
                   static_cast<unsigned int>(position.z));
}

void MaskVolume::SetValid(const Math::Point3T<int>& position, bool valid) noexcept
{
    SetValid(static_cast<unsigned int>(position.x), static_cast<unsigned int>(position.y),
             static_cast<unsigned int>(position.z), valid);
}

MaskVolume& MaskVolume::operator&=(const MaskVolume& other)
{
    RTE::verify(m_size == other.m_size, "Size of mask volumes is different");
    for (unsigned long long z = 0; z < m_planes.size(); ++z) {
        *m_planes[z] &= *other.m_planes[z];
    }
    return *this;
}

} // namespace DataObjects
