// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageDataVariant.h"

namespace DataObjects
{

ImageDataVariant::~ImageDataVariant() = default;

} // namespace DataObjects
