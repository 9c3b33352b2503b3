// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace RTE
{

/// The place in the source that raised an exception. Used as a defaulted last parameter, so that it names the
/// caller.
///
/// `std::source_location` with the two things that errors need; it exists because clang 14, which runs
/// clang-tidy and the fuzzers, lacks the standard one.
class SourceLocation
{
public:
    [[nodiscard]] static constexpr SourceLocation current(const char* file = __builtin_FILE(),
                                                          unsigned int line = __builtin_LINE()) noexcept
    {
        return SourceLocation(file, line);
    }

    [[nodiscard]] constexpr const char* file() const noexcept { return m_file; }
    [[nodiscard]] constexpr unsigned int line() const noexcept { return m_line; }

private:
    constexpr SourceLocation(const char* file, unsigned int line) noexcept : m_file(file), m_line(line) {}

    const char* m_file;
    unsigned int m_line;
};

} // namespace RTE
