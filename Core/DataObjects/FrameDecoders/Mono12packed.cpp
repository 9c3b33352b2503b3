// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/FrameDecoders/Mono12packed.h"

#include "Core/Common/Raise.h"
#include "Core/DataObjects/FrameDecoders/DecoderChecks.h"
#include "Core/DataObjects/FrameDecoders/PixelKernels.h"
#include "Core/DataObjects/FrameDecoders/Registration.h"

#include <array>
#include <cstring>

namespace DataObjects::FrameDecoder
{

namespace
{

void checkSourceFor(unsigned long long pixels, unsigned long long sourceSize, unsigned long long needed)
{
    if (sourceSize < needed) {
        RTE::raise(RTE::InvalidArgumentError(
            QStringLiteral("Source too small: need %1 bytes for %2 pixels, but got %3 bytes")
                .arg(needed)
                .arg(pixels)
                .arg(sourceSize)));
    }
}

} // namespace

void Mono12packed::decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const
{
    Private::checkSource(source);
    Private::checkMultiple(source.size(), 3);
    const unsigned long long pixels = destination.size() / 2;
    checkSourceFor(pixels, source.size(), encodedSize(pixels));
    const unsigned long long pairs = pixels / 2;
    Private::unpack(Private::Encoding::Mono12packed, source.data(), destination.data(), pairs);
    if (pixels % 2 != 0) {
        std::array<unsigned short, 2> last;
        Private::unpack(Private::Encoding::Mono12packed, source.data() + pairs * 3, last.data(), 1);
        std::memcpy(static_cast<unsigned char*>(destination.data()) + pairs * 4, last.data(), sizeof last[0]);
    }
}

QString Mono12packed::id() const
{
    return QStringLiteral("mono-12packed");
}

QString Mono12packed::label() const
{
    return QStringLiteral("Mono12packed to 16 bit");
}

QVersionNumber Mono12packed::minimalOrvaneVersion() const
{
    return {10, 2, 0};
}

std::unique_ptr<I_FrameDecoder> Mono12packed::clone() const
{
    return std::make_unique<Mono12packed>();
}

unsigned long long Mono12packed::encodedSize(const unsigned long long& pixelCount) const
{
    Private::checkNotEmpty(pixelCount);
    return (pixelCount + (pixelCount & 1U)) / 2 * 3;
}

DATAOBJECTS_REGISTER_DECODER(Mono12packed, 204)

} // namespace DataObjects::FrameDecoder
