// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/LazyMask.h"

namespace DataObjects
{

LazyMask::LazyMask(unsigned int width, unsigned int height, bool initialise)
    : m_width(width), m_height(height), m_initialise(initialise)
{
}

LazyMask::~LazyMask() = default;

bool LazyMask::IsMaskSpawned() const
{
    return hasMask();
}

std::shared_ptr<Mask> LazyMask::sptr_internal()
{
    SpawnMaskIfNotYetDone();
    return held();
}

const Mask& LazyMask::ref_internal() const
{
    SpawnMaskIfNotYetDone();
    return *held();
}

Mask& LazyMask::ref_internal()
{
    SpawnMaskIfNotYetDone();
    return *held();
}

void LazyMask::SpawnMaskIfNotYetDone() const
{
    if (hasMask()) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (hasMask()) {
        return;
    }
    const auto mask = std::make_shared<Mask>(m_width, m_height);
    if (m_initialise) {
        mask->Fill(true);
    }
    publish(mask);
}

} // namespace DataObjects
