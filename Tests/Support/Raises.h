// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Exception.h"

#include <gtest/gtest.h>

#include <typeinfo>
#include <utility>

namespace TestSupport
{

namespace Private
{

[[nodiscard]] testing::AssertionResult
checkRaised(const RTE::Exception& raised, const std::type_info& expectedType, const QString& expectedText);

} // namespace Private

/// EXPECT_TRUE(raises<RTE::VerificationFailed>("text", [&] { call(); })): exactly this class and message, and
/// located.
template <typename E, typename Call>
[[nodiscard]] testing::AssertionResult raises(const QString& text, Call&& call)
{
    try {
        std::forward<Call>(call)();
    } catch (const RTE::Exception& raised) {
        return Private::checkRaised(raised, typeid(E), text);
    }
    return testing::AssertionFailure() << "nothing was raised, expected \"" << text.toStdString() << '"';
}

} // namespace TestSupport
