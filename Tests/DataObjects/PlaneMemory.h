// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Image.h"
#include "Core/DataObjects/ScalarField.h"
#include "Tests/Support/ImageFrames.h"

namespace TestSupport
{

/// Where pixels, mask and both typed scalars of a plane of `imageFrame` begin.
using Memory = std::vector<const void*>;

inline const Memory noMemory(4, nullptr);

inline Memory memoryOfPlane(const BufferApi::I_Frame& frame, unsigned int z)
{
    return {pixelsOf(frame, z), memoryOf(frame, BufferApi::I_Frame::COMPONENT_MASK, z),
            memoryOf(frame, peakRatio, z), memoryOf(frame, fieldHeight, z)};
}

template <typename T>
Memory memoryOfPlane(const DataObjects::Image<T>& image)
{
    const DataObjects::ScalarFields& fields = image.GetScalarFields();
    return {image.begin(), image.GetMask().GetRawPointer(),
            DataObjects::CastScalarFieldTo<float>(*fields.Get("Peak ratio")).begin(),
            DataObjects::CastScalarFieldTo<unsigned short>(*fields.Get("Height")).begin()};
}

} // namespace TestSupport
