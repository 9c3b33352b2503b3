// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/InstantMask.h"

#include "Core/Common/Raise.h"

#include <utility>

namespace DataObjects
{

InstantMask::InstantMask(unsigned int width, unsigned int height, bool initialise)
    : InstantMask(initialise ? Mask(width, height, true) : Mask(width, height))
{
}

InstantMask::InstantMask(Mask&& mask) : InstantMask(std::make_shared<Mask>(std::move(mask))) {}

InstantMask::InstantMask(std::shared_ptr<Mask> mask) noexcept : MaskStrategy(std::move(mask)) {}

InstantMask::~InstantMask() = default;

bool InstantMask::IsMaskSpawned() const
{
    return true;
}

std::shared_ptr<Mask> InstantMask::sptr_internal()
{
    return held();
}

const Mask& InstantMask::ref_internal() const
{
    RTE::verify(held() != nullptr, "Mask is not valid.");
    return *held();
}

Mask& InstantMask::ref_internal()
{
    RTE::verify(held() != nullptr, "Mask is not valid.");
    return *held();
}

} // namespace DataObjects
