// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/PixelKernels.h"

#include "Core/Common/PixelTypes.h"
#include "Core/DataObjects/PixelRules.h"

#include <algorithm>

namespace DataObjects::Private
{

template <typename T>
void fill(T* pixels, std::size_t count, T value)
{
    std::fill_n(pixels, count, value);
}

template <typename T>
void multiply(T* pixels, std::size_t count, double operand)
{
    std::for_each_n(pixels, count, [=](T& pixel) { pixel = Rules<T>::product(pixel, operand); });
}

template <typename T>
void add(T* pixels, std::size_t count, double operand)
{
    std::for_each_n(pixels, count, [=](T& pixel) { pixel = Rules<T>::sum(pixel, operand); });
}

template <typename T>
void divide(T* pixels, std::size_t count, double operand)
{
    if (operand == 0) {
        std::transform(pixels, pixels + count, pixels, Rules<T>::overZero);
    } else {
        std::for_each_n(pixels, count, [=](T& pixel) { pixel = Rules<T>::quotient(pixel, operand); });
    }
}

template <typename T>
void divideBy(T* pixels, std::size_t count, const T* divisors)
{
    std::transform(pixels, pixels + count, divisors, pixels, Rules<T>::ratio);
}

#define DATAOBJECTS_INSTANTIATE(type, number, name)                                                          \
    template void fill(type*, std::size_t, type);                                                            \
    template void multiply(type*, std::size_t, double);                                                      \
    template void add(type*, std::size_t, double);                                                           \
    template void divide(type*, std::size_t, double);                                                        \
    template void divideBy(type*, std::size_t, const type*);
DATAOBJECTS_PIXEL_TYPES(DATAOBJECTS_INSTANTIATE)
#undef DATAOBJECTS_INSTANTIATE

} // namespace DataObjects::Private
