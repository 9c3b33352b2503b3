// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Mask.h"

#include <atomic>
#include <memory>

namespace DataObjects
{

/// How an image or a vector field holds its mask: from the start (InstantMask), or made when somebody first
/// asks for it (LazyMask), so that a mask in which all is valid and which nobody looks at costs nothing.
///
/// ref(), sptr() and IsMaskSpawned() may be called from several threads at once; the pixels themselves are
/// not protected. A copy shares the mask.
class DATAOBJECTS_DATAOBJECTS_EXPORT MaskStrategy
{
public:
    virtual ~MaskStrategy();
    /// True when the mask exists, so that asking for it allocates nothing.
    [[nodiscard]] virtual bool IsMaskSpawned() const = 0;

    /// The mask, which is made now if it does not exist yet; belongs to the strategy.
    const Mask& ref() const { return hasMask() ? *m_mask : ref_internal(); }
    Mask& ref() { return hasMask() ? *m_mask : ref_internal(); }
    /// The mask, shared; it is made now if it does not exist yet.
    std::shared_ptr<Mask> sptr() { return hasMask() ? m_mask : sptr_internal(); }

protected:
    MaskStrategy() noexcept = default;
    explicit MaskStrategy(std::shared_ptr<Mask> mask) noexcept;
    MaskStrategy(const MaskStrategy& other) noexcept;
    MaskStrategy(MaskStrategy&& other) noexcept;
    MaskStrategy& operator=(const MaskStrategy& other) noexcept;
    MaskStrategy& operator=(MaskStrategy&& other) noexcept;

    /// The mask as it is held, empty when there is none; not to be read while another thread publishes one.
    [[nodiscard]] const std::shared_ptr<Mask>& held() const noexcept { return m_mask; }
    /// Holds the mask and lets all threads see it. Once only, and by one thread at a time.
    void publish(std::shared_ptr<Mask> mask) const noexcept;
    /// True once a mask is held and may be read by this thread.
    [[nodiscard]] bool hasMask() const noexcept { return m_hasMask.load(std::memory_order_acquire); }

private:
    virtual std::shared_ptr<Mask> sptr_internal() = 0;
    virtual const Mask& ref_internal() const = 0;
    virtual Mask& ref_internal() = 0;

    mutable std::shared_ptr<Mask> m_mask;
    // Guards the pointer, which one thread may write while others ask for it. It stands here and not with the
    // lazy form so that access to a mask that exists is inline, without a virtual call per pixel.
    mutable std::atomic<bool> m_hasMask = false;
};

} // namespace DataObjects
