// SPDX-License-Identifier: Apache-2.0
#include "Tests/Support/Raises.h"

namespace TestSupport
{

testing::AssertionResult checkRaised(const RTE::Exception& raised, const std::type_info& expectedType,
                                     const QString& expectedText)
{
    if (typeid(raised) != expectedType) {
        return testing::AssertionFailure() << "raised " << typeid(raised).name() << " instead of "
                                           << expectedType.name() << ": " << raised.what();
    }
    if (raised.message() != expectedText) {
        return testing::AssertionFailure() << "raised \"" << raised.message().toStdString()
                                           << "\" instead of \"" << expectedText.toStdString() << '"';
    }
    if (raised.locationFile().isEmpty()) {
        return testing::AssertionFailure() << "raised without a location: " << raised.what();
    }
    return testing::AssertionSuccess();
}

} // namespace TestSupport
