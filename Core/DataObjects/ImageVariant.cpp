// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageVariant.h"

namespace DataObjects
{

ImageVariant::~ImageVariant() = default;

bool AllValuesValid(const ImageVariant& image)
{
    return AllValuesValid(image.GetMask());
}

} // namespace DataObjects
