// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/RGBFieldToBuffer.h"

#include "Core/Common/TargetClones.h"
#include "Core/DataObjects/BufferLibDataAccess.h"
#include "Core/DataObjects/FrameWriting.h"

#include <algorithm>

namespace DataObjects
{

namespace
{

using BufferApi::RgbQuad;

void verifyField(const RGBField& field, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::verify(field.width != 0 && field.height != 0 && field.pixels != nullptr, "Source image is empty",
                location);
}

DATAOBJECTS_TARGET_CLONES void sums(const RgbQuad* quads, std::size_t count, unsigned short* words)
{
    for (std::size_t i = 0; i < count; ++i) {
        words[i] = static_cast<unsigned short>(quads[i].blue + quads[i].green + quads[i].red);
    }
}

DATAOBJECTS_TARGET_CLONES void weightedSums(const RgbQuad* quads, std::size_t count, unsigned short* words)
{
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned int sum = 587U * quads[i].green + 299U * quads[i].red + 114U * quads[i].blue;
        words[i] = static_cast<unsigned short>(sum >> 2U);
    }
}

/// A buffer with one new frame, of which `fill` writes the pixels.
template <typename T, typename Fill>
std::unique_ptr<BufferApi::I_Buffer> bufferOf(const RGBField& field, Fill&& fill)
{
    Private::FramePointer frame = Private::newFrame<T>({field.width, field.height}, 1);
    fill(Private::GetPlaneData<T>(*frame, 0));
    return Private::bufferOf(std::move(frame));
}

std::size_t countOf(const RGBField& field)
{
    return static_cast<std::size_t>(field.width) * field.height;
}

void writeWords(const RGBField& field, bool sum, unsigned short* words)
{
    (sum ? sums : weightedSums)(field.pixels, countOf(field), words);
}

} // namespace

ImageData<unsigned short> CreateImageDataWordFromRGBField(const RGBField& field, bool sum)
{
    verifyField(field);
    ImageData<unsigned short> data(field.width, field.height);
    writeWords(field, sum, data.GetRawPointer());
    return data;
}

std::unique_ptr<BufferApi::I_Buffer> CreateWordBufferFromRGBField(const RGBField& field, bool sum)
{
    verifyField(field);
    return bufferOf<unsigned short>(field, [&](unsigned short* words) { writeWords(field, sum, words); });
}

std::unique_ptr<BufferApi::I_Buffer> CreateRGBBufferFromRGBField(const RGBField& field)
{
    verifyField(field);
    return bufferOf<RgbQuad>(field, [&](RgbQuad* quads) {
        std::transform(field.pixels, field.pixels + countOf(field), quads, [](const RgbQuad& quad) {
            return RgbQuad{quad.blue, quad.green, quad.red, 0};
        });
    });
}

} // namespace DataObjects
