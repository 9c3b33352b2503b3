// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/FrameSlice.h"

#include "Tools/qf/Arguments.h"

#include "Core/Common/Raise.h"

#include <QString>

#include <algorithm>
#include <array>
#include <numeric>

namespace Qf
{

namespace
{

/// A bound may be left out.
bool readBound(std::string_view text, std::optional<long long>& bound)
{
    long long number = 0;
    if (text.empty()) {
        return true;
    }
    bound = number;
    return readWhole(text, *bound);
}

std::vector<std::string_view> parts(std::string_view text)
{
    std::vector<std::string_view> result;
    std::size_t colon = text.find(':');
    for (; colon != std::string_view::npos; colon = text.find(':')) {
        result.push_back(text.substr(0, colon));
        text.remove_prefix(colon + 1);
    }
    result.push_back(text);
    return result;
}

/// A bound that counts from the end becomes one that counts from the start; both are cut to [low, high].
long long placed(std::optional<long long> bound, long long otherwise, long long count, long long low,
                 long long high)
{
    if (!bound) {
        return otherwise;
    }
    const long long fromStart = *bound < 0 ? std::max(*bound, -count - 1) + count : *bound;
    return std::clamp(fromStart, low, high);
}

[[noreturn]] void refuseFrame(const FrameSlice& slice, unsigned int count)
{
    RTE::raise(RTE::OutOfRangeError(noFrameText(QString::fromStdString(slice.text), count)));
}

unsigned int singleFrame(const FrameSlice& slice, unsigned int count)
{
    const long long number = *slice.start < 0 ? *slice.start + count : *slice.start;
    if (number < 0 || number >= count) {
        refuseFrame(slice, count);
    }
    return static_cast<unsigned int>(number);
}

} // namespace

std::string readFrames(const std::string& text, FrameSlice& slice)
{
    slice = FrameSlice();
    slice.text = text;
    const std::vector<std::string_view> read = parts(text);
    std::optional<long long> step;
    slice.isSingle = read.size() == 1;
    const bool isRead = read.size() <= 3 && readBound(read[0], slice.start) &&
                        (read.size() < 2 || readBound(read[1], slice.stop)) &&
                        (read.size() < 3 || readBound(read[2], step));
    slice.step = step.value_or(1);
    if (!isRead || slice.step == 0 || (slice.isSingle && !slice.start)) {
        return "'" + text +
               "' selects no frames; write START:STOP:STEP as Python does, such as 0:100:2, or one number";
    }
    return {};
}

std::vector<unsigned int> selectedFrames(const std::optional<FrameSlice>& slice, unsigned int count)
{
    std::vector<unsigned int> frames(count);
    std::iota(frames.begin(), frames.end(), 0U);
    if (!slice) {
        return frames;
    }
    if (slice->isSingle) {
        return {singleFrame(*slice, count)};
    }
    const bool isForward = slice->step > 0;
    const long long low = isForward ? 0 : -1;
    const long long high = isForward ? count : static_cast<long long>(count) - 1;
    const long long start = placed(slice->start, isForward ? low : high, count, low, high);
    const long long stop = placed(slice->stop, isForward ? high : low, count, low, high);
    // A step beyond the count selects one frame; cut, it cannot overflow.
    const long long step = std::clamp(slice->step, -high - 2, high + 2);
    frames.clear();
    for (long long number = start; isForward ? number < stop : number > stop; number += step) {
        frames.push_back(static_cast<unsigned int>(number));
    }
    if (frames.empty()) {
        RTE::raise(RTE::OutOfRangeError(
            QStringLiteral("--frames %1 selects none of the %2; frames count from 0, and START:STOP ends "
                           "before STOP")
                .arg(QString::fromStdString(slice->text), counted(count, QStringLiteral("frame")))));
    }
    return frames;
}

} // namespace Qf
