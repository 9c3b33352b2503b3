// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/SourceLocation.h"
#include "Core/Common/Span.h"

#include <QString>

/// The checks of the decoders; each raises RTE::InvalidArgumentError on behalf of its caller.
namespace DataObjects::FrameDecoder::Private
{

using RTE::SourceLocation;

void checkSource(Zt::span<const unsigned char> source, SourceLocation location = SourceLocation::current());
void checkMultiple(unsigned long long sourceSize, unsigned int groupBytes,
                   SourceLocation location = SourceLocation::current());
void checkCapacity(unsigned long long needed, unsigned long long capacity,
                   SourceLocation location = SourceLocation::current());
void checkPixelMultiple(unsigned long long pixels, unsigned int multiple,
                        SourceLocation location = SourceLocation::current());

/// A pixel count is not 0.
void checkNotEmpty(unsigned long long pixelCount, SourceLocation location = SourceLocation::current());
/// A pixel count is a multiple of `multiple`; else `message` with the count for its %1.
void checkDimensions(unsigned long long pixelCount, unsigned int multiple, const QString& message,
                     SourceLocation location = SourceLocation::current());

} // namespace DataObjects::FrameDecoder::Private
