// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <hwy/targets.h>

namespace TestSupport
{

/// Calls once for each kind of processor that kernels are compiled for and that this machine can stand in
/// for.
template <typename Call>
void onEachTarget(Call&& call)
{
    const auto dispatchTo = [](std::int64_t targets) {
        hwy::SetSupportedTargetsForTest(targets);
        hwy::GetChosenTarget().DeInit();
    };
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        SCOPED_TRACE(hwy::TargetName(target));
        dispatchTo(target);
        call();
    }
    dispatchTo(0);
}

} // namespace TestSupport
