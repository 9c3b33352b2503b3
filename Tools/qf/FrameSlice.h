// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Qf
{

/// Which frames of a file: "7", "0:100:2", "-10:", "::-1", as Python slices do; frames count from 0.
struct FrameSlice
{
    std::optional<long long> start;
    std::optional<long long> stop;
    long long step = 1;
    /// One frame, `start`, which must exist.
    bool isSingle = false;
    /// As it was written.
    std::string text;
};

/// Empty, or what is wrong with the text and what would be right.
[[nodiscard]] std::string readFrames(const std::string& text, FrameSlice& slice);

/// The numbers of the selected frames out of `count`, in the order of the slice. Bounds beyond the ends are
/// cut as Python does. \throws RTE::OutOfRangeError when nothing is selected
[[nodiscard]] std::vector<unsigned int> selectedFrames(const std::optional<FrameSlice>& slice,
                                                       unsigned int count);

} // namespace Qf
