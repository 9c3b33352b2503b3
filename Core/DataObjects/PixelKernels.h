// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/// \file
/// Passes over the pixels of a plane, in place, for the six element types.
namespace DataObjects::Private
{

template <typename T>
void fill(T* pixels, std::size_t count, T value);

template <typename T>
void multiply(T* pixels, std::size_t count, double operand);

/// Adds; subtraction is the addition of -operand, in every type.
template <typename T>
void add(T* pixels, std::size_t count, double operand);

template <typename T>
void divide(T* pixels, std::size_t count, double operand);

template <typename T>
void divideBy(T* pixels, std::size_t count, const T* divisors);

} // namespace DataObjects::Private
