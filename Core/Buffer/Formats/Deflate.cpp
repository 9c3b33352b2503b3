// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Deflate.h"

#include "Core/Common/Raise.h"

#include <isa-l/igzip_lib.h>

#include <limits>

namespace BufferApi::Formats
{

namespace
{

constexpr unsigned deflateLevel = 1;
constexpr unsigned levelBufferBytes = ISAL_DEF_LVL1_DEFAULT;

} // namespace

unsigned char* Scratch::reserve(unsigned long long bytes)
{
    if (bytes > m_size) {
        m_bytes.reset();
        m_bytes.reset(new unsigned char[bytes]);
        m_size = bytes;
    }
    return m_bytes.get();
}

std::span<const unsigned char> Deflater::pack(std::span<const unsigned char> source)
{
    // Bytes that do not shrink are stored in blocks with five bytes before each, which this margin covers.
    const unsigned long long room = source.size() + source.size() / 128 + 1024;
    RTE::verify(room <= std::numeric_limits<unsigned int>::max(), "Chunk too large to be packed");
    isal_zstream stream;
    isal_deflate_stateless_init(&stream);
    stream.level = deflateLevel;
    stream.level_buf = m_levelBuffer.reserve(levelBufferBytes);
    stream.level_buf_size = levelBufferBytes;
    stream.gzip_flag = IGZIP_ZLIB;
    stream.end_of_stream = 1;
    stream.flush = NO_FLUSH;
    stream.next_in = const_cast<unsigned char*>(source.data());
    stream.avail_in = static_cast<unsigned int>(source.size());
    stream.next_out = m_packed.reserve(room);
    stream.avail_out = static_cast<unsigned int>(room);
    RTE::verify(isal_deflate_stateless(&stream) == COMP_OK, "Chunk could not be packed");
    return {m_packed.reserve(0), stream.total_out};
}

} // namespace BufferApi::Formats
