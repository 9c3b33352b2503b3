// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageParts.h"

#include "Core/DataObjects/Attributes.h"
#include "Core/DataObjects/LazyMask.h"

namespace DataObjects::Private
{

bool OwnedArrays::contain(const void* pixel) const
{
    const auto next = m_ends.upper_bound(pixel);
    return next != m_ends.begin() && std::less<>()(pixel, std::prev(next)->second);
}

void mergeAttributes(const Attributes& source, Attributes& target)
{
    if (&source != &target) {
        target.merge(source);
    }
}

void replaceAttributes(const Attributes& source, Attributes& target)
{
    if (&source != &target) {
        const std::vector<Attribute> attributes = source.toStdVector();
        target.clear();
        for (const Attribute& attribute : attributes) {
            // Setting a null value would remove what its name stands for.
            if (!attribute.value.IsNull()) {
                target.setAttribute(attribute);
            }
        }
    }
}

void assignMask(const ImageVariant& source, MaskStrategy& target)
{
    if (source.IsMaskSpawned()) {
        target.ref() = source.GetMask();
        return;
    }
    auto* lazy = dynamic_cast<LazyMask*>(&target);
    if (lazy != nullptr && !lazy->IsMaskSpawned()) {
        lazy->initializeLater();
    } else {
        target.ref().Fill(true);
    }
}

} // namespace DataObjects::Private
