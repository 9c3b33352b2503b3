// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameData.h"

#include "Core/Common/Array.h"

#include <algorithm>
#include <utility>

namespace DataObjects
{

namespace
{

std::unique_ptr<unsigned short[]> copyOfPixels(const FrameData& frame)
{
    if (frame.empty()) {
        return nullptr;
    }
    std::unique_ptr<unsigned short[]> copy(RTE::newArray<unsigned short>(frame.size()));
    std::copy(frame.cbegin(), frame.cend(), copy.get());
    return copy;
}

} // namespace

FrameData::FrameData(const QSize& size) : m_size(size.isEmpty() ? QSize(0, 0) : size)
{
    if (!m_size.isEmpty()) {
        m_data.reset(RTE::newArray<unsigned short>(this->size()));
    }
}

FrameData::FrameData(const FrameData& other) : m_size(other.m_size), m_data(copyOfPixels(other)) {}

FrameData::FrameData(FrameData&& other) noexcept
    : m_size(std::exchange(other.m_size, QSize(0, 0))), m_data(std::move(other.m_data))
{
}

FrameData& FrameData::operator=(const FrameData& other)
{
    if (this != &other) {
        *this = FrameData(other);
    }
    return *this;
}

FrameData& FrameData::operator=(FrameData&& other) noexcept
{
    FrameData taken(std::move(other));
    std::swap(m_size, taken.m_size);
    std::swap(m_data, taken.m_data);
    return *this;
}

FrameData::~FrameData()
{
    RTE::deleteArray(m_data.release(), size());
}

unsigned long long FrameData::width() const noexcept
{
    return static_cast<unsigned long long>(m_size.width());
}

unsigned long long FrameData::height() const noexcept
{
    return static_cast<unsigned long long>(m_size.height());
}

unsigned short* FrameData::release() noexcept
{
    m_size = QSize(0, 0);
    return m_data.release();
}

} // namespace DataObjects
