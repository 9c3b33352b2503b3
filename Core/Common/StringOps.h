// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace RTE::String
{

/// True when the last sign is one of "0" to "9"; false for the empty text.
[[nodiscard]] inline bool endsWithDigit(const std::string& text) noexcept
{
    return !text.empty() && text.back() >= '0' && text.back() <= '9';
}

} // namespace RTE::String
