// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FloatFrame.h"

#include "Core/Common/Array.h"

#include <algorithm>
#include <utility>

namespace DataObjects
{

namespace
{

/// Formed in 32 bits and sign-extended, so that a product beyond them asks for more than there can be.
unsigned long long elementCount(const QSize& size) noexcept
{
    const unsigned int product =
        static_cast<unsigned int>(size.width()) * static_cast<unsigned int>(size.height());
    return static_cast<unsigned long long>(static_cast<int>(product));
}

std::unique_ptr<float[]> copyOfPixels(const FloatFrame& frame)
{
    if (frame.empty()) {
        return nullptr;
    }
    const unsigned long long count = elementCount(frame.frameSize());
    std::unique_ptr<float[]> copy(RTE::newArray<float>(count));
    std::copy_n(frame.cbegin(), count, copy.get());
    return copy;
}

} // namespace

FloatFrame::FloatFrame(const QSize& size) : m_size(size.isValid() ? size : QSize(0, 0))
{
    if (size.isValid()) {
        m_data.reset(RTE::newArray<float>(elementCount(size)));
    }
}

FloatFrame::FloatFrame(const FloatFrame& other) : m_size(other.m_size), m_data(copyOfPixels(other)) {}

FloatFrame::FloatFrame(FloatFrame&& other) noexcept
    : m_size(std::exchange(other.m_size, QSize())), m_data(std::move(other.m_data))
{
}

FloatFrame& FloatFrame::operator=(const FloatFrame& other)
{
    m_data.reset();
    m_size = QSize();
    m_data = copyOfPixels(other);
    m_size = other.m_size;
    return *this;
}

FloatFrame& FloatFrame::operator=(FloatFrame&& other) noexcept
{
    FloatFrame taken(std::move(other));
    std::swap(m_size, taken.m_size);
    std::swap(m_data, taken.m_data);
    return *this;
}

FloatFrame::~FloatFrame()
{
    RTE::deleteArray(m_data.release(), elementCount(m_size));
}

unsigned long long FloatFrame::width() const noexcept
{
    return static_cast<unsigned long long>(m_size.width());
}

unsigned long long FloatFrame::height() const noexcept
{
    return static_cast<unsigned long long>(m_size.height());
}

float* FloatFrame::release() noexcept
{
    m_size = QSize();
    return m_data.release();
}

} // namespace DataObjects
