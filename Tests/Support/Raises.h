// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Exception.h"

#include <gtest/gtest.h>

#include <functional>
#include <typeinfo>
#include <utility>
#include <vector>

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

/// The file in which a call raises, as its failure tells it; empty when nothing is raised.
template <typename Call>
[[nodiscard]] QString locationOf(Call&& call)
{
    try {
        std::forward<Call>(call)();
    } catch (const RTE::Exception& raised) {
        return raised.locationFile();
    }
    return {};
}

/// A call that fails, and its message.
struct Failure
{
    QString text;
    std::function<void()> call;
};

/// Expects each of them to raise exactly this class and its message, one after the other.
template <typename E = RTE::VerificationFailed>
void expectRaised(const std::vector<Failure>& failures)
{
    for (const Failure& failure : failures) {
        SCOPED_TRACE(testing::Message() << "row " << &failure - failures.data());
        EXPECT_TRUE(raises<E>(failure.text, failure.call));
    }
}

} // namespace TestSupport
