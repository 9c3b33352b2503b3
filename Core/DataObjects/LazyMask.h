// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/MaskStrategy.h"

#include <mutex>

namespace DataObjects
{

/// Makes its mask when somebody first asks for it, once, whichever thread comes first; until then it holds a
/// size only.
class DATAOBJECTS_DATAOBJECTS_EXPORT LazyMask final : public MaskStrategy
{
public:
    /// The mask will be all `true`; with `initialise` false its pixels will be uninitialised, for a producer
    /// that writes all of them.
    LazyMask(unsigned int width, unsigned int height, bool initialise);
    LazyMask(const LazyMask&) = delete;
    LazyMask& operator=(const LazyMask&) = delete;
    ~LazyMask() override;

    /// Lets a mask that is made later be all `true`; changes nothing once it exists. Not for use while other
    /// threads ask for the mask.
    void initializeLater() noexcept { m_initialise = true; }
    /// False until the mask was asked for.
    [[nodiscard]] bool IsMaskSpawned() const override;

private:
    std::shared_ptr<Mask> sptr_internal() override;
    const Mask& ref_internal() const override;
    Mask& ref_internal() override;
    void SpawnMaskIfNotYetDone() const;

    unsigned int m_width;
    unsigned int m_height;
    bool m_initialise;
    mutable std::mutex m_mutex;
};

} // namespace DataObjects
