// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ImageVolume.h"

namespace TestSupport
{

inline constexpr auto strangeType = static_cast<DataObjects::E_DataType>(2);

/// Objects that say they are of a type which the library does not have.
class StrangeImageData : public DataObjects::ImageData<float>
{
public:
    StrangeImageData() : ImageData(2, 2, 0.0F) {}
    [[nodiscard]] DataObjects::E_DataType GetDataType() const noexcept override { return strangeType; }
};

class StrangeImage : public DataObjects::Image<float>
{
public:
    StrangeImage() : Image(2, 2, 0.0F, true) {}
    [[nodiscard]] DataObjects::E_DataType GetDataType() const noexcept override { return strangeType; }
};

class StrangeVolume : public DataObjects::ImageVolume<float>
{
public:
    StrangeVolume() : ImageVolume(2, 2, 1, true) {}
    [[nodiscard]] DataObjects::E_DataType GetDataType() const noexcept override { return strangeType; }
};

} // namespace TestSupport
