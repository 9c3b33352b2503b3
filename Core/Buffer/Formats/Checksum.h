// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace BufferApi::Formats
{

/// Fletcher's checksum of 32 bits in the form that HDF5's filter of this name stores behind a chunk: over
/// 16-bit words, most significant byte first, an odd last byte followed by a zero.
/// Source: J. Fletcher, "An Arithmetic Checksum for Serial Transmissions", IEEE Trans. Comm. 30 (1982).
[[nodiscard]] unsigned int fletcher32(const void* data, unsigned long long bytes);

} // namespace BufferApi::Formats
