// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/MaskStrategy.h"

#include <utility>

namespace DataObjects
{

MaskStrategy::MaskStrategy(std::shared_ptr<Mask> mask) noexcept
    : m_mask(std::move(mask)), m_hasMask(m_mask != nullptr)
{
}

MaskStrategy::MaskStrategy(const MaskStrategy& other) noexcept : MaskStrategy(other.m_mask) {}

MaskStrategy::MaskStrategy(MaskStrategy&& other) noexcept : MaskStrategy(std::move(other.m_mask))
{
    other.m_hasMask = other.m_mask != nullptr;
}

MaskStrategy::~MaskStrategy() = default;

MaskStrategy& MaskStrategy::operator=(const MaskStrategy& other) noexcept
{
    m_mask = other.m_mask;
    m_hasMask = m_mask != nullptr;
    return *this;
}

MaskStrategy& MaskStrategy::operator=(MaskStrategy&& other) noexcept
{
    if (this != &other) {
        m_mask = std::move(other.m_mask);
        m_hasMask = m_mask != nullptr;
        other.m_hasMask = false;
    }
    return *this;
}

void MaskStrategy::publish(std::shared_ptr<Mask> mask) const noexcept
{
    m_mask = std::move(mask);
    m_hasMask.exchange(true);
}

} // namespace DataObjects
