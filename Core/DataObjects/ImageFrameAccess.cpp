// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageFrameAccess.h"

namespace DataObjects::Private
{

BufferApi::I_FrameImage& getImageFrame(const BufferApi::I_Buffer& buffer, unsigned int index,
                                       const char* text, RTE::SourceLocation location)
{
    auto* const frame = dynamic_cast<BufferApi::I_FrameImage*>(buffer.GetFrame(index));
    RTE::verify(frame != nullptr, text, location);
    return *frame;
}

} // namespace DataObjects::Private
