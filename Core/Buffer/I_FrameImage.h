// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"

namespace BufferApi
{

/// A frame with pixels.
class DATAOBJECTS_BUFFER_EXPORT I_FrameImage : public virtual I_Frame
{
public:
    static const std::string COMPONENT_PIXEL;

    ~I_FrameImage() override;
};

/// A frame whose pixels are packed colour, `RgbQuad`.
class DATAOBJECTS_BUFFER_EXPORT I_FrameRGB32 : public virtual I_Frame
{
public:
    ~I_FrameRGB32() override;
};

} // namespace BufferApi
