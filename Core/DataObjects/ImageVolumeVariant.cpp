// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/ImageVolumeVariant.h"

namespace DataObjects
{

ImageVolumeVariant::~ImageVolumeVariant() = default;

bool AllValuesValid(const ImageVolumeVariant& volume)
{
    for (unsigned int z = 0; z < volume.GetDepth(); ++z) {
        if (!AllValuesValid(volume.getPlane(z))) {
            return false;
        }
    }
    return true;
}

void CopyScalesAndAttributes(const ImageVolumeVariant& source, ImageVolumeVariant& target)
{
    target.SetScaleX(source.GetScaleX());
    target.SetScaleY(source.GetScaleY());
    target.SetScaleZ(source.GetScaleZ());
    target.SetAttributes(source.GetAttributes());
}

} // namespace DataObjects
