// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Export.h"

#include <QSize>

#include <memory>

namespace DataObjects
{

/// The single-precision twin of FrameData; it carries the white image of an intensity correction.
///
/// Row-major, x fastest, no gap between rows. It differs from FrameData in its odd sizes: an extent of 0 is
/// kept together with an array of no elements, and a frame that gave its pixels up has the size (-1, -1), so
/// that size() says 1. Test empty(), not the size.
class DATAOBJECTS_DATAOBJECTS_EXPORT FloatFrame
{
public:
    /// Allocates width × height pixels, uninitialised; a width or height of 0 gives an array of no elements.
    ///
    /// A size with a negative width or height gives a frame of size (0, 0) without pixels. The number of
    /// pixels is formed in 32 signed bits; a negative one cannot be allocated.
    /// \throws std::bad_alloc
    explicit FloatFrame(const QSize& size);
    /// Copies all pixels; the copy of a frame without pixels has none.
    FloatFrame(const FloatFrame& other);
    /// Takes the array; `other` keeps no pixels and the size (-1, -1).
    FloatFrame(FloatFrame&& other) noexcept;
    /// Frees the old array before it allocates the new one, so a frame must not be assigned to itself; a
    /// failed allocation leaves the frame without pixels.
    FloatFrame& operator=(const FloatFrame& other);
    FloatFrame& operator=(FloatFrame&& other) noexcept;
    ~FloatFrame();

    [[nodiscard]] unsigned long long width() const noexcept;
    [[nodiscard]] unsigned long long height() const noexcept;
    [[nodiscard]] QSize frameSize() const noexcept { return m_size; }
    /// Number of pixels.
    [[nodiscard]] unsigned long long size() const noexcept { return width() * height(); }
    /// Number of bytes.
    [[nodiscard]] unsigned long long dataSize() const noexcept { return size() * sizeof(float); }
    /// True exactly when there is no array.
    [[nodiscard]] bool empty() const noexcept { return m_data == nullptr; }

    [[nodiscard]] float* data() const noexcept { return m_data.get(); }
    [[nodiscard]] float* begin() const noexcept { return data(); }
    [[nodiscard]] float* end() const noexcept { return data() + size(); }
    [[nodiscard]] const float* cbegin() const noexcept { return begin(); }
    [[nodiscard]] const float* cend() const noexcept { return end(); }

    /// Hands the array over to the caller, who frees it with `delete[]`; leaves size (-1, -1) and no pixels.
    [[nodiscard]] float* release() noexcept;

private:
    QSize m_size;
    std::unique_ptr<float[]> m_data;
};

} // namespace DataObjects
