// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ScalarField.h"
#include "Tests/DataObjects/StrangeField.h"
#include "Tests/Support/Scales.h"

#include <stdexcept>

namespace TestSupport
{

template <typename T>
DataObjects::ScalarField<T> filled(unsigned int width, unsigned int height, T value,
                                   const Zt::LinearScale& scale = kelvin)
{
    return {DataObjects::ImageData<T>(width, height, value), scale};
}

/// 3 × 2 in kelvin.
template <typename T>
DataObjects::ScalarField<T> filled(T value)
{
    return filled(3, 2, value);
}

/// What a collection tells of a key that it lacks; nothing when it raises no std::out_of_range.
template <typename Fields>
std::string textOfMissing(Fields& fields)
{
    try {
        static_cast<void>(fields["missing"]);
    } catch (const std::out_of_range& error) {
        return error.what();
    }
    return {};
}

/// What a matcher takes.
template <typename T>
std::vector<T> valuesOf(const DataObjects::ImageData<T>& data)
{
    return {data.begin(), data.end()};
}

} // namespace TestSupport
