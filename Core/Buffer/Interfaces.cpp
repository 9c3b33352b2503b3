// SPDX-License-Identifier: Apache-2.0
// The destructors and constants of the interfaces, so that each has one home for its type information.
#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/I_FrameVector.h"

namespace BufferApi
{

I_PlaneBase::~I_PlaneBase() = default;
I_Component::~I_Component() = default;
I_AttributeBase::~I_AttributeBase() = default;
I_Frame::~I_Frame() = default;
I_FrameImage::~I_FrameImage() = default;
I_FrameRGB32::~I_FrameRGB32() = default;
I_FrameVector::~I_FrameVector() = default;
I_FrameVector2C::~I_FrameVector2C() = default;
I_FrameVector3C::~I_FrameVector3C() = default;
I_Buffer::~I_Buffer() = default;

const std::string I_Frame::COMPONENT_MASK = "MASK";
const std::string I_Frame::TYPED_SCALAR_PREFIX = "TS:";
const std::string I_FrameImage::COMPONENT_PIXEL = "PIXEL";
const std::string I_FrameVector::COMPONENT_U = "U";
const std::string I_FrameVector::COMPONENT_V = "V";
const std::string I_FrameVector::COMPONENT_W = "W";
const std::string I_FrameVector::COMPONENT_ENABLED = "ENABLED";
const std::string I_FrameVector::COMPONENT_ACTIVE_CHOICE = "ACTIVE_CHOICE";

} // namespace BufferApi
