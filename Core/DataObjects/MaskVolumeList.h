// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/MaskVolume.h"

#include <memory>
#include <vector>

namespace DataObjects
{

/// The masks of a buffer: one MaskVolume of equal size per frame, at least one.
///
/// For one thread at a time. Failures are RTE::VerificationFailed and leave the list as it was. A moved-from
/// list has no volumes and may only be assigned to or destroyed.
class DATAOBJECTS_DATAOBJECTS_EXPORT MaskVolumeList
{
public:
    /// \name Construction
    /// @{
    /// New volumes, uninitialised. \throws RTE::VerificationFailed "List size of mask volumes not allowed to
    /// be zero" for count 0, then as MaskVolume does
    MaskVolumeList(const Math::Size3T<unsigned int>& volumeSize, unsigned int count);
    MaskVolumeList(unsigned int width, unsigned int height, unsigned int depth, unsigned int count);
    /// Moves the volumes in, or shares them; a failure moves none.
    /// \throws RTE::VerificationFailed "List size of mask volumes not allowed to be zero" for an empty
    /// vector,
    ///         "Mask volume is not valid" for a null volume, "Size of mask volumes is different" for one of
    ///         another size than the first
    explicit MaskVolumeList(std::vector<MaskVolume>&& volumes);
    explicit MaskVolumeList(std::vector<std::shared_ptr<MaskVolume>> volumes);
    /// A deep copy: new volumes with new planes, which own their pixels.
    MaskVolumeList(const MaskVolumeList& other);
    MaskVolumeList(MaskVolumeList&& other) noexcept;
    ~MaskVolumeList();
    /// @}

    /// \name Assignment
    /// @{
    /// Replaces the volumes by copies of the other's, whatever their number and size; who holds an old volume
    /// keeps it.
    MaskVolumeList& operator=(const MaskVolumeList& other);
    MaskVolumeList& operator=(MaskVolumeList&& other) noexcept;
    /// Sets every pixel of every volume.
    MaskVolumeList& operator=(bool value) noexcept;
    void DeepCopyFrom(const MaskVolumeList& other) { *this = other; }
    void MoveFrom(MaskVolumeList&& other) noexcept { *this = std::move(other); }
    /// @}

    /// \name Size and volumes
    /// @{
    /// Extents of the first volume.
    [[nodiscard]] unsigned int GetWidth() const noexcept { return m_volumes.front()->GetWidth(); }
    [[nodiscard]] unsigned int GetHeight() const noexcept { return m_volumes.front()->GetHeight(); }
    [[nodiscard]] unsigned int GetDepth() const noexcept { return m_volumes.front()->GetDepth(); }
    [[nodiscard]] Math::Size3T<unsigned int> GetVolumeSize() const noexcept
    {
        return m_volumes.front()->GetSize();
    }
    /// Number of volumes.
    [[nodiscard]] unsigned long long size() const noexcept { return m_volumes.size(); }
    /// The shared volume of this frame, not checked. Whoever replaces it keeps the size.
    [[nodiscard]] std::shared_ptr<MaskVolume>& operator[](unsigned long long frame) noexcept
    {
        return m_volumes[frame];
    }
    [[nodiscard]] std::shared_ptr<const MaskVolume> operator[](unsigned long long frame) const noexcept
    {
        return m_volumes[frame];
    }
    /// @}

    /// Combines volume by volume. \throws RTE::VerificationFailed "Size of mask volumes is different" for
    /// another number or size of volumes
    MaskVolumeList& operator&=(const MaskVolumeList& other);

private:
    std::vector<std::shared_ptr<MaskVolume>> m_volumes;
};

} // namespace DataObjects
