// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/MemoryBlock.h"
#include "Core/Common/Span.h"
#include "Core/DataObjects/FrameData.h"

#include <QSize>
#include <QString>
#include <QVersionNumber>

#include <memory>

namespace DataObjects::FrameDecoder
{

/// Turns the bytes of one camera frame into 16-bit words, one per pixel, right-aligned: a 10-bit pixel lies
/// in 0 to 1023.
///
/// Decoders have no state and may be used from several threads at once. All failures are raised before the
/// first pixel is written, so that a rejected frame leaves its destination as it was.
class DATAOBJECTS_DATAOBJECTS_EXPORT I_FrameDecoder
{
public:
    virtual ~I_FrameDecoder();

    /// Bytes of an encoded frame of this size; width × height is formed in 32 bits.
    /// \throws RTE::InvalidArgumentError for an invalid size and what encodedSize(pixelCount) raises
    [[nodiscard]] virtual unsigned long long encodedSize(const QSize& size) const = 0;

    /// Decodes `source` into the words of `destination`, in row order. What a source or a destination longer
    /// than the other needs comes to is for each format to say: pixels are not written, or bytes not read.
    /// \throws RTE::InvalidArgumentError for a null source and for sizes that do not fit; each format
    /// documents its own
    virtual void decode(Zt::span<const unsigned char> source, const RTE::MemoryBlock& destination) const = 0;

    /// A new frame of this size with the pixels of `source`.
    [[nodiscard]] virtual FrameData decode(Zt::span<const unsigned char> source, const QSize& size) = 0;

    /// Key in the registry and in stored configurations; stable.
    [[nodiscard]] virtual QString id() const = 0;
    /// Text for a user.
    [[nodiscard]] virtual QString label() const = 0;
    /// Oldest version of the main application that reads the format.
    [[nodiscard]] virtual QVersionNumber minimalOrvaneVersion() const = 0;
    /// A new instance of the same class.
    [[nodiscard]] virtual std::unique_ptr<I_FrameDecoder> clone() const = 0;

    /// Bytes of an encoded run of this many pixels.
    /// \throws RTE::InvalidArgumentError for no pixels and for a count that the format cannot hold
    [[nodiscard]] virtual unsigned long long encodedSize(const unsigned long long& pixelCount) const = 0;

protected:
    I_FrameDecoder() = default;
    I_FrameDecoder(const I_FrameDecoder&) = default;
    I_FrameDecoder& operator=(const I_FrameDecoder&) = default;
};

} // namespace DataObjects::FrameDecoder
