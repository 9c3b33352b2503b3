// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Constrained.h"
#include "Tests/Support/Raises.h"

namespace
{

using Positive = Zt::Constrained<int, Zt::PositivePredicate<int>>;

TEST(Constrained, RefusesAndKeepsItsValue)
{
    const QString text = QStringLiteral("Cannot assign new value that is not in accepted range");
    Positive factor = 1;
    factor = 4;
    for (const int refused : {0, -1}) {
        EXPECT_TRUE(TestSupport::raises<RTE::InvalidArgumentError>(text, [&] { Positive bad(refused); }));
        EXPECT_TRUE(TestSupport::raises<RTE::InvalidArgumentError>(text, [&] { factor = refused; }));
    }
    EXPECT_EQ(factor + 1, 5);
}

} // namespace
