// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/Rgb24.h"

#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"
#include "Core/DataObjects/FrameDecoders/PixelKernels.h"

#include <algorithm>
#include <array>

namespace DataObjects::FrameDecoder
{

void Rgb24::decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const
{
    Private::checkSource(source);
    const unsigned long long pixels = source.size() / 3;
    const unsigned long long capacity = destination.size();
    Private::checkCapacity(pixels * 2, capacity);
    Private::unpack(Private::Encoding::Rgb24, source.data(), destination.data(), pixels);
    if (source.size() % 3 != 0 && capacity / 2 > pixels) {
        std::array<unsigned char, 3> last{};
        std::copy(source.data() + pixels * 3, source.end(), last.begin());
        unsigned char* const destinationEnd = static_cast<unsigned char*>(destination.data()) + pixels * 2;
        Private::unpack(Private::Encoding::Rgb24, last.data(), destinationEnd, 1);
    }
}

QString Rgb24::id() const
{
    return QStringLiteral("rgb-24");
}

QString Rgb24::label() const
{
    return QStringLiteral("RGB 24");
}

QVersionNumber Rgb24::minimalOrvaneVersion() const
{
    return {10, 2, 1};
}

std::unique_ptr<I_FrameDecoder> Rgb24::clone() const
{
    return std::make_unique<Rgb24>();
}

unsigned long long Rgb24::encodedSize(const unsigned long long& pixelCount) const
{
    Private::checkNotEmpty(pixelCount);
    return pixelCount * 3;
}

} // namespace DataObjects::FrameDecoder
