// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Exception.h"

#include <gtest/gtest.h>

#include <typeinfo>
#include <utility>

namespace TestSupport
{

/// What `raises` makes of an exception that it caught.
[[nodiscard]] testing::AssertionResult
checkRaised(const RTE::Exception& raised, const std::type_info& expectedType, const QString& expectedText);

/// EXPECT_TRUE(raises("text", [&] { call(); })): exactly this message and class, by default the usual one of
/// violated assertions, and located.
template <typename E = RTE::VerificationFailed, typename Call>
[[nodiscard]] testing::AssertionResult raises(const QString& text, Call&& call)
{
    try {
        std::forward<Call>(call)();
    } catch (const RTE::Exception& raised) {
        return checkRaised(raised, typeid(E), text);
    }
    return testing::AssertionFailure() << "nothing was raised, expected \"" << text.toStdString() << '"';
}

} // namespace TestSupport
