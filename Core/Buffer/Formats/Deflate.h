// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <span>

namespace BufferApi::Formats
{

/// Memory that grows and is not initialised.
class Scratch
{
public:
    [[nodiscard]] unsigned char* reserve(unsigned long long bytes);

private:
    std::unique_ptr<unsigned char[]> m_bytes;
    unsigned long long m_size = 0;
};

/// Packs bytes to zlib streams (RFC 1950) at level 1, which everybody's zlib reads. For one thread.
class Deflater
{
public:
    /// \returns the stream, valid until the next call \throws RTE::VerificationFailed above 4 GiB
    [[nodiscard]] std::span<const unsigned char> pack(std::span<const unsigned char> source);

private:
    Scratch m_levelBuffer;
    Scratch m_packed;
};

} // namespace BufferApi::Formats
