// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageVariant.h"

#include <functional>
#include <map>

/// \file
/// Steps of assigning images, volumes and buffers that know no pixel type.
namespace DataObjects::Private
{

/// The arrays that objects are about to free.
class OwnedArrays
{
public:
    /// The array of pixels or of a mask, if it is the object's own.
    template <typename Pixels>
    void add(const Pixels& pixels)
    {
        if (pixels.HasOwnerShip() && pixels.size() > 0) {
            m_ends.emplace(pixels.GetRawPointer(), pixels.GetRawPointer() + pixels.size());
        }
    }

    /// Whether the pixels or the mask are a view that begins in one of the arrays.
    template <typename Pixels>
    [[nodiscard]] bool areSeenBy(const Pixels& pixels) const
    {
        return !pixels.HasOwnerShip() && contain(pixels.GetRawPointer());
    }

private:
    [[nodiscard]] bool contain(const void* pixel) const;

    std::map<const void*, const void*, std::less<>> m_ends;
};

/// Sets the attributes of `source` in `target` and keeps those of other names; nothing on itself.
void mergeAttributes(const Attributes& source, Attributes& target);

/// Clears `target` and sets the attributes of `source`; nothing on itself. The source is read before the
/// target is cleared, because two objects may look at the same frame.
void replaceAttributes(const Attributes& source, Attributes& target);

/// Gives `target` the values of `source`. A mask that nobody asked for counts as all valid and is not made:
/// when both are in that state, so is the result.
void assignMask(const ImageVariant& source, MaskStrategy& target);

/// Sets the four scales of an image or a volume from those of another.
template <typename Source, typename Target>
void assignScales(const Source& source, Target& target)
{
    target.SetScaleX(source.GetScaleX());
    target.SetScaleY(source.GetScaleY());
    target.SetScaleZ(source.GetScaleZ());
    target.SetScaleI(source.GetScaleI());
}

} // namespace DataObjects::Private
