// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/LinearScale.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace
{

TEST(LinearScale, SetIsSeenByAllWhoShareItAndFiresOnce)
{
    auto first = std::make_shared<Zt::LinearScale>(Zt::ScalePreset::X);
    auto second = first;
    int fired = 0;
    first->setChangedCallback([&](const Zt::LinearScale& scale) {
        ++fired;
        EXPECT_EQ(&scale, first.get());
        EXPECT_EQ(scale.getUnit(), QStringLiteral("mm"));
    });
    second->set({0.5, -3.0, QStringLiteral("mm"), QStringLiteral("Position")});
    EXPECT_EQ(fired, 1);
    EXPECT_EQ(first->getScaled(10.0), 2.0);
    EXPECT_EQ(first->getUnscaled(first->getScaled(10.0)), 10.0);
}

TEST(LinearScale, CallbackBelongsToTheObjectNotToTheValue)
{
    int fired = 0;
    Zt::LinearScale linked(Zt::ScalePreset::I);
    linked.setChangedCallback([&](const Zt::LinearScale&) { ++fired; });
    Zt::LinearScale copy(linked);
    copy.setFactor(2.0);
    EXPECT_EQ(fired, 0);
    linked = copy;
    EXPECT_EQ(fired, 1);
    EXPECT_EQ(linked, copy);
    Zt::LinearScale other(Zt::ScalePreset::Y);
    other = linked;
    EXPECT_EQ(fired, 1);
}

TEST(LinearScale, CallbackMayRemoveItself)
{
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> held = token;
    int fired = 0;
    bool alive = false;
    Zt::LinearScale scale(Zt::ScalePreset::X);
    scale.setChangedCallback([&, token = std::move(token)](const Zt::LinearScale& changed) {
        ++fired;
        scale.setChangedCallback({});
        alive = !held.expired() && &changed == &scale;
    });
    scale.setFactor(2.0);
    scale.setFactor(3.0);
    EXPECT_EQ(fired, 1);
    EXPECT_TRUE(alive) << "destroyed while it ran";
    EXPECT_TRUE(held.expired());
}

} // namespace
