// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Mask.h"

#include <memory>
#include <vector>

namespace DataObjects
{

/// The masks of a volume: one Mask of equal size per z plane, at least one.
///
/// The planes are shared pointers, so that a plane can be held beyond the volume. Positions are not checked.
/// For one thread at a time. Failures are RTE::VerificationFailed and leave the volume as it was. A
/// moved-from volume has no planes and the size 0 × 0 × 0.
class DATAOBJECTS_DATAOBJECTS_EXPORT MaskVolume
{
public:
    /// \name Construction
    /// @{
    /// New planes, uninitialised. \throws RTE::VerificationFailed "At least 1 plane required." for depth 0
    explicit MaskVolume(const Math::Size3T<unsigned int>& size);
    MaskVolume(unsigned int width, unsigned int height, unsigned int depth);
    /// Shares the masks, one per z.
    /// \throws RTE::VerificationFailed "At least 1 plane required" for an empty vector, "Mask is not valid."
    ///         for a null mask, "Mask has invalid size." for one of another size than the first
    explicit MaskVolume(std::vector<std::shared_ptr<Mask>> planes);
    /// One plane: moved in, copied, or shared. \throws RTE::VerificationFailed "Mask is not valid." for null
    explicit MaskVolume(Mask&& plane);
    explicit MaskVolume(const Mask& plane);
    explicit MaskVolume(std::shared_ptr<Mask> plane);
    /// A deep copy: new planes, which own their pixels.
    MaskVolume(const MaskVolume& other);
    MaskVolume(MaskVolume&& other) noexcept;
    ~MaskVolume();
    /// @}

    /// \name Assignment
    /// @{
    /// Replaces the planes by copies of the other's; who holds an old plane keeps its pixels.
    /// \throws RTE::VerificationFailed "Mask volume has a different size"
    MaskVolume& operator=(const MaskVolume& other);
    /// Takes planes and size, whatever the size.
    MaskVolume& operator=(MaskVolume&& other) noexcept;
    /// Sets every pixel of every plane.
    MaskVolume& operator=(bool value) noexcept;
    void DeepCopyFrom(const MaskVolume& other) { *this = other; }
    void MoveFrom(MaskVolume&& other) noexcept { *this = std::move(other); }
    /// @}

    /// \name Size and planes
    /// @{
    [[nodiscard]] unsigned int GetWidth() const noexcept { return m_size.width; }
    [[nodiscard]] unsigned int GetHeight() const noexcept { return m_size.height; }
    [[nodiscard]] unsigned int GetDepth() const noexcept { return m_size.depth; }
    [[nodiscard]] Math::Size3T<unsigned int> GetSize() const noexcept { return m_size; }
    /// Number of planes.
    [[nodiscard]] unsigned long long size() const noexcept { return m_planes.size(); }
    [[nodiscard]] bool empty() const noexcept { return m_planes.empty(); }
    /// The plane of this z. \throws RTE::OutOfRangeError "z"
    [[nodiscard]] const Mask& GetMask(unsigned int z) const;
    [[nodiscard]] Mask& GetMask(unsigned int z);
    /// The shared plane of this z, not checked. Whoever replaces it keeps the size.
    [[nodiscard]] std::shared_ptr<Mask>& operator[](unsigned long long z) noexcept { return m_planes[z]; }
    [[nodiscard]] std::shared_ptr<const Mask> operator[](unsigned long long z) const noexcept
    {
        return m_planes[z];
    }
    /// @}

    /// \name Pixels
    /// Not checked against the size.
    /// @{
    [[nodiscard]] bool IsValid(unsigned int x, unsigned int y, unsigned int z) const noexcept
    {
        return m_planes[z]->IsValid(x, y);
    }
    [[nodiscard]] bool IsValid(const Math::Point3T<int>& position) const noexcept;
    void SetValid(unsigned int x, unsigned int y, unsigned int z, bool valid) noexcept
    {
        m_planes[z]->SetValid(x, y, valid);
    }
    void SetValid(const Math::Point3T<int>& position, bool valid) noexcept;
    /// @}

    /// Combines plane by plane as Mask does. \throws RTE::VerificationFailed "Size of mask volumes is
    /// different"
    MaskVolume& operator&=(const MaskVolume& other);

private:
    std::vector<std::shared_ptr<Mask>> m_planes;
    Math::Size3T<unsigned int> m_size;
};

} // namespace DataObjects
