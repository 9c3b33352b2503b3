// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace TestSupport
{

using BufferPointer = std::unique_ptr<BufferApi::I_Buffer>;

/// Fills all planes of a frame with bits that depend on the seed alone, NaN payloads among them.
void fillWithNoise(BufferApi::I_Frame& frame, unsigned int seed);

void setText(BufferApi::I_Buffer& buffer, const std::string& name, const QString& text);
void setText(BufferApi::I_Frame& frame, const std::string& name, const QString& text);
/// One number.
void setNumber(BufferApi::I_Frame& frame, const std::string& name, double value);

/// A recording of particle images: words of 12 bits, scales, a time on each frame.
[[nodiscard]] BufferPointer particleImages(unsigned int width, unsigned int height, unsigned int frames);

/// A recording of vectors with two choices, a mask and the typed scalar "Correlation".
[[nodiscard]] BufferPointer vectorFields(unsigned int frames);

/// Makes a buffer that holds one kind of thing.
struct SampleBuffer
{
    std::string name;
    std::function<BufferPointer()> make;
};

/// Together they hold everything that the store can.
[[nodiscard]] const std::vector<SampleBuffer>& sampleBuffers();

} // namespace TestSupport
