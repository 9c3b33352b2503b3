// SPDX-License-Identifier: Apache-2.0
/// \file
/// Passes over the pixels of a plane, in place, tuned to this processor. They equal the rules of PixelRules.h
/// bit for bit, allocate nothing, and take any alignment that the element type allows.
#pragma once

#include <cstddef>

namespace DataObjects::Private
{

template <typename T>
void fill(T* pixels, std::size_t count, T value);

template <typename T>
void multiply(T* pixels, std::size_t count, double operand);

/// Adds; a subtraction is the addition of -operand, in every type.
template <typename T>
void add(T* pixels, std::size_t count, double operand);

template <typename T>
void divide(T* pixels, std::size_t count, double operand);

/// Divides pixel by pixel; `divisors` may be `pixels`.
template <typename T>
void divideBy(T* pixels, std::size_t count, const T* divisors);

} // namespace DataObjects::Private
