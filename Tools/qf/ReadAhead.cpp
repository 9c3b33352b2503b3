// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/ReadAhead.h"

#include <algorithm>

namespace Qf
{

ReadAhead::ReadAhead(const FrameInputs& inputs, std::vector<unsigned int> numbers, unsigned int jobs)
    : m_inputs(inputs), m_numbers(std::move(numbers)), m_ahead(jobs == 1 ? 1 : jobs + 1)
{
    const auto threads = std::min<std::size_t>(jobs - 1, m_numbers.size());
    for (std::size_t i = 0; i < threads; ++i) {
        m_threads.emplace_back([this] { work(); });
    }
}

ReadAhead::~ReadAhead()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

BufferApi::I_Frame& ReadAhead::take(std::size_t place)
{
    std::unique_lock lock(m_mutex);
    m_taken = place;
    m_next = std::max(m_next, place);
    m_ready.erase(m_ready.begin(), m_ready.lower_bound(place));
    m_changed.notify_all();
    while (m_ready.count(place) == 0) {
        // Whoever would wait helps.
        if (isDue()) {
            readNext(lock);
        } else {
            m_changed.wait(lock);
        }
    }
    std::shared_ptr<OpenedFrame>& frame = m_ready[place];
    if (!frame) {
        frame = m_inputs.open(m_numbers[place]);
        frame->load();
    }
    return frame->frame();
}

bool ReadAhead::isDue() const
{
    return m_next < m_numbers.size() && m_next < m_taken + m_ahead;
}

void ReadAhead::work()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isEnding || isDue(); });
        if (m_isEnding) {
            return;
        }
        readNext(lock);
    }
}

void ReadAhead::readNext(std::unique_lock<std::mutex>& lock)
{
    const std::size_t place = m_next++;
    lock.unlock();
    std::shared_ptr<OpenedFrame> frame;
    try {
        frame = m_inputs.open(m_numbers[place]);
        frame->load();
    } catch (const std::exception&) {
        // Whoever takes the frame tries again and gets the reason.
        frame.reset();
    }
    lock.lock();
    m_ready[place] = std::move(frame);
    m_changed.notify_all();
}

} // namespace Qf
