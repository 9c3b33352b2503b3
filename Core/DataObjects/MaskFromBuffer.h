// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Mask.h"

namespace BufferApi
{
class I_Frame;
class I_PlaneBase;
} // namespace BufferApi

namespace DataObjects
{

/// \file
/// Masks out of the frame store. The form of the argument says who owns the pixels: from a plane or frame
/// that stays, the mask is a view, which must not outlive it; from one that is given up, the mask takes the
/// memory and the plane is left without. All failures are RTE::VerificationFailed; the plane of an imported
/// buffer that cannot be read raises what the store raises.

/// A view of the plane's memory. \throws RTE::VerificationFailed "plane type cannot be mapped onto a bool
/// array" unless its elements are bytes, "data-pointer is null" when its memory was given up
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Mask GetMask(BufferApi::I_PlaneBase& plane);
/// Takes the plane's memory; raises as for the view.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Mask GetMask(BufferApi::I_PlaneBase&& plane);
/// A view of the frame's mask of this z. \throws RTE::VerificationFailed "Z is out of range", then "Frame has
/// no mask"
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Mask GetMask(const BufferApi::I_Frame& frame, unsigned int z);

namespace Private
{

/// A view of the frame's mask of this z; for a frame without one, whatever the z, a mask of the frame's size
/// that owns its pixels, all `true`. \throws RTE::VerificationFailed "Frame requires a mask, but has no
/// mask." when there is none and it is required, "Z is out of range" when there is one
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Mask GetOrCreateMask(const BufferApi::I_Frame& frame,
                                                                  unsigned int z, bool maskRequired);
/// As GetOrCreateMask, but takes the memory out of the mask plane.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT Mask MoveOrCreateMask(BufferApi::I_Frame&& frame, unsigned int z,
                                                                   bool maskRequired);

} // namespace Private

} // namespace DataObjects
