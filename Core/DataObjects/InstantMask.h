// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/MaskStrategy.h"

namespace DataObjects
{

/// Holds a mask from the start. Copies share the mask.
class DATAOBJECTS_DATAOBJECTS_EXPORT InstantMask final : public MaskStrategy
{
public:
    /// Makes a mask whose pixels are all `true`, or with `initialise` false left uninitialised, for a caller
    /// that writes all of them. \throws std::bad_alloc
    InstantMask(unsigned int width, unsigned int height, bool initialise);
    explicit InstantMask(Mask&& mask);
    /// Shares the mask, which should not be null: ref() would then raise RTE::VerificationFailed "Mask is not
    /// valid.", as it does after a move.
    explicit InstantMask(std::shared_ptr<Mask> mask) noexcept;
    InstantMask(const InstantMask&) noexcept = default;
    InstantMask(InstantMask&&) noexcept = default;
    InstantMask& operator=(const InstantMask&) noexcept = default;
    InstantMask& operator=(InstantMask&&) noexcept = default;
    ~InstantMask() override;

    /// Always true.
    [[nodiscard]] bool IsMaskSpawned() const override;

private:
    std::shared_ptr<Mask> sptr_internal() override;
    const Mask& ref_internal() const override;
    Mask& ref_internal() override;
};

} // namespace DataObjects
