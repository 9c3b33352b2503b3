// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/FrameInputs.h"

#include <condition_variable>
#include <map>
#include <thread>

namespace Qf
{

/// Hands out frames one after the other, while threads of its own read and unpack those that follow.
class ReadAhead
{
public:
    /// \param numbers of the frames in the sequence of the inputs, in the order in which they are taken
    /// \param jobs how many threads work, the caller's among them; 1 reads nothing ahead
    ReadAhead(const FrameInputs& inputs, std::vector<unsigned int> numbers, unsigned int jobs);
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;
    ~ReadAhead();

    /// The frame at this place of the order; places are asked for in rising order. It stays until the next
    /// one is taken. \throws RTE::Exception when it cannot be had
    [[nodiscard]] BufferApi::I_Frame& take(std::size_t place);

private:
    void work();
    [[nodiscard]] bool isDue() const;
    /// Reads the next frame without the lock, which is held before and after.
    void readNext(std::unique_lock<std::mutex>& lock);

    const FrameInputs& m_inputs;
    std::vector<unsigned int> m_numbers;
    /// How many frames are in memory at most, the one that was taken among them.
    std::size_t m_ahead;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    /// By place; null where reading failed.
    std::map<std::size_t, std::shared_ptr<OpenedFrame>> m_ready;
    std::size_t m_next = 0;
    std::size_t m_taken = 0;
    bool m_isEnding = false;
    std::vector<std::thread> m_threads;
};

} // namespace Qf
