// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Export.h"

#include <QSize>

#include <memory>

namespace DataObjects
{

/// A camera frame as it travels between decoders, transformers and recorded frames: words and a size, nothing
/// else.
///
/// Row-major, x fastest, no gap between rows: pixel (x, y) is element y × width + x. The frame owns its array
/// (an array of RTE::newArray) and hands it out for writing even when it is const itself. For one thread at a
/// time; reading from several is safe. Its twin FloatFrame differs in the sizes that a frame without pixels
/// has, so test empty(), not the size.
class DATAOBJECTS_DATAOBJECTS_EXPORT FrameData
{
public:
    /// Allocates width × height pixels, uninitialised.
    ///
    /// A size whose width or height is not positive gives a frame of size (0, 0) without pixels.
    /// \throws std::bad_alloc
    explicit FrameData(const QSize& size);
    /// Copies all pixels; the copy of a frame without pixels has none.
    FrameData(const FrameData& other);
    /// Takes the array; `other` keeps no pixels and the size (0, 0).
    FrameData(FrameData&& other) noexcept;
    /// Safe on itself; a failed allocation leaves the frame as it was.
    FrameData& operator=(const FrameData& other);
    FrameData& operator=(FrameData&& other) noexcept;
    ~FrameData();

    [[nodiscard]] unsigned long long width() const noexcept;
    [[nodiscard]] unsigned long long height() const noexcept;
    [[nodiscard]] QSize frameSize() const noexcept { return m_size; }
    /// Number of pixels.
    [[nodiscard]] unsigned long long size() const noexcept { return width() * height(); }
    /// Number of bytes.
    [[nodiscard]] unsigned long long dataSize() const noexcept { return size() * sizeof(unsigned short); }
    /// True exactly when there is no array.
    [[nodiscard]] bool empty() const noexcept { return m_data == nullptr; }

    [[nodiscard]] unsigned short* data() const noexcept { return m_data.get(); }
    [[nodiscard]] unsigned short* begin() const noexcept { return data(); }
    [[nodiscard]] unsigned short* end() const noexcept { return data() + size(); }
    [[nodiscard]] const unsigned short* cbegin() const noexcept { return begin(); }
    [[nodiscard]] const unsigned short* cend() const noexcept { return end(); }

    /// Hands the array over to the caller, who frees it with `delete[]`; leaves size (0, 0) and no pixels.
    [[nodiscard]] unsigned short* release() noexcept;

private:
    QSize m_size;
    std::unique_ptr<unsigned short[]> m_data;
};

} // namespace DataObjects
