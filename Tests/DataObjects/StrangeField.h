// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ScalarField.h"

namespace TestSupport
{

/// A scalar field that says it is of a type which the library does not have.
class StrangeField : public DataObjects::ScalarField<float>
{
public:
    StrangeField(unsigned int width, unsigned int height)
        : ScalarField(width, height, Zt::LinearScale(Zt::ScalePreset::I))
    {
        InitializeWithZeros();
    }
    [[nodiscard]] DataObjects::E_DataType GetDataType() const noexcept override
    {
        return static_cast<DataObjects::E_DataType>(2);
    }
};

} // namespace TestSupport
