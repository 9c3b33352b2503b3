// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

namespace DataObjects::FrameDecoder::Private
{

/// What the vector kernels read; a group is the smallest run of bytes that holds whole pixels.
enum class Encoding
{
    Mono10p,
    Mono10pmsb,
    Mono12p,
    Mono12packed,
    Mono12pmsb,
    Raw8,
    Rgb24
};

/// Turns whole groups into right-aligned 16-bit words, on the best vector unit of the processor.
///
/// Reads exactly the groups' bytes and writes exactly their pixels; neither array needs an alignment. A
/// frame that would not stay in the last-level cache is written past it.
void unpack(Encoding encoding, const unsigned char* source, void* destination, std::size_t groups);

} // namespace DataObjects::FrameDecoder::Private
