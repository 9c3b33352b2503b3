// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Raise.h"

#include <utility>

namespace Zt
{

/// Accepts values greater than 0.
template <typename T>
struct PositivePredicate
{
    [[nodiscard]] constexpr bool operator()(const T& value) const noexcept { return value > T{}; }
};

/// A value that always satisfies the predicate: construction and assignment refuse any other.
///
/// \throws RTE::InvalidArgumentError with "Cannot assign new value that is not in accepted range"
template <typename T, typename Predicate>
class Constrained
{
public:
    Constrained(T value, RTE::SourceLocation location = RTE::SourceLocation::current())
        : m_value(accepted(std::move(value), location))
    {
    }
    /// A refused value leaves the present one.
    Constrained& operator=(T value)
    {
        m_value = accepted(std::move(value), RTE::SourceLocation::current());
        return *this;
    }

    operator const T&() const noexcept { return m_value; }

private:
    static T accepted(T value, RTE::SourceLocation location)
    {
        if (!Predicate{}(value)) {
            RTE::raise(RTE::InvalidArgumentError(
                           QStringLiteral("Cannot assign new value that is not in accepted range")),
                       location);
        }
        return value;
    }

    T m_value;
};

} // namespace Zt
