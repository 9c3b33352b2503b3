// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

namespace TestSupport
{

/// What a process of its own comes to, which makes the call and ends in the usual way: empty when all is
/// well, else the class and message of what was raised ("FileWriteError: Cannot …"), all that it printed, and
/// the signal that ended it ("signal 11").
[[nodiscard]] QString inChild(const std::function<void()>& call);

/// For children: files get no longer than that.
void limitFileSize(unsigned long long bytes);
/// For children: no more than that is to be had in memory. Does nothing under sanitizers, which need more.
void limitMemory(unsigned long long bytes);
/// For children: goes on as a user to whom permissions apply, whoever runs the tests.
void becomeOrdinaryUser();

} // namespace TestSupport
