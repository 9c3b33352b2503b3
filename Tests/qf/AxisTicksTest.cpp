// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/Plot/AxisTicks.h"

#include <cmath>
#include <limits>

namespace
{

QString labels(double from, double to, int maximumCount)
{
    QStringList texts;
    for (const Qf::Tick& tick : Qf::axisTicks(from, to, maximumCount)) {
        texts << tick.label;
    }
    return texts.join(QLatin1Char(' ')).replace(QChar(0x2212), QLatin1Char('-'));
}

struct Case
{
    double from;
    double to;
    int maximumCount;
    const char* labels;
};

TEST(AxisTicks, areRoundAndLabelledWithTheDigitsTheyNeed)
{
    const std::vector<Case> cases{
        {-0.5, 1279.5, 8, "0 200 400 600 800 1000 1200"},
        {0.0, 1.0, 6, "0 0.2 0.4 0.6 0.8 1.0"},
        {10.24, -10.24, 6, "-10 -5 0 5 10"},
        {0.1, 0.3, 3, "0.1 0.2 0.3"},
        {-1e-3, 1e-3, 3, "-0.001 0 0.001"},
        {0.0, 3e-5, 4, "0 1e-5 2e-5 3e-5"},
        {0.0, 2.5e6, 6, "0 5e5 1e6 1.5e6 2e6 2.5e6"},
        {3.2, 3.4, 2, "3.2 3.4"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(labels(c.from, c.to, c.maximumCount).toStdString(), c.labels) << c.from << " to " << c.to;
    }
}

TEST(AxisTicks, endWithRangesThatHaveNoTicks)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(labels(1.0, 1.0, 5), QString());
    EXPECT_EQ(labels(0.0, infinity, 5), QString());
    EXPECT_EQ(labels(0.0, std::nan(""), 5), QString());
    // Adding one to such an index changes nothing.
    EXPECT_LE(Qf::axisTicks(1e20, 1e20 + 32768.0, 5).size(), 5U);
}

TEST(AxisTicks, neverExceedTheMaximum)
{
    for (double high = 1.0; high < 1000.0; high *= 1.037) {
        for (int count = 2; count < 12; ++count) {
            EXPECT_LE(Qf::axisTicks(0.0, high, count).size(), static_cast<std::size_t>(count)) << high;
        }
    }
}

} // namespace
