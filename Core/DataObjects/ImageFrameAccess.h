// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/DataObjects/Export.h"

#include <utility>

/// \file
/// What the readers of image frames have in common.
namespace DataObjects::Private
{

/// The image frame at `index`. \throws RTE::VerificationFailed `text` when there is no frame or it is of
/// another kind
[[nodiscard]] BufferApi::I_FrameImage&
getImageFrame(const BufferApi::I_Buffer& buffer, unsigned int index, const char* text,
              RTE::SourceLocation location = RTE::SourceLocation::current());

/// Calls `visitor` with the PixelTypes::Tag of the frame's type.
/// \throws RTE::Exception `rgbText` for colour, `otherText` for what is none of the six types
template <typename Visitor>
decltype(auto) visitFrameType(const BufferApi::I_Frame& frame, Visitor&& visitor, const char* rgbText,
                              const char* otherText,
                              RTE::SourceLocation location = RTE::SourceLocation::current())
{
    const BufferApi::E_DataType type = frame.GetDataType();
    const auto unsupported = [&] {
        return RTE::Exception(QString::fromLatin1(type == BufferApi::DT_RGB ? rgbText : otherText));
    };
    return PixelTypes::visit(type, std::forward<Visitor>(visitor), unsupported, location);
}

} // namespace DataObjects::Private
