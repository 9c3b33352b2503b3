// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string_view>

namespace Fuzz
{

/// Imports the bytes as a file, as a user would, and reads all that it holds. Any exception of the library
/// will do; whatever else comes out is a finding.
///
/// \param signatures with which the files of one format begin; other input is passed over, so that a target
///        stays with its reader
void read(const unsigned char* bytes, std::size_t count, std::initializer_list<std::string_view> signatures);

} // namespace Fuzz
