// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <png.h>

#include <csetjmp>
#include <limits>

namespace BufferApi::Formats
{

/// Names the text chunk that holds our own record, see FrameRecord.h.
inline constexpr char pngRecordKeyword[] = "Frame record";

/// One libpng structure for reading or writing. libpng reports errors by a long jump, which passes over
/// destructors: all its calls go through `run`, in lambdas that hold nothing that has one.
class PngLibrary
{
public:
    enum class Direction
    {
        Read,
        Write
    };

    /// \param largestAllocation in bytes: libpng takes memory for a chunk on its word, before it is read
    explicit PngLibrary(Direction direction, unsigned long long largestAllocation =
                                                 std::numeric_limits<unsigned long long>::max());
    PngLibrary(const PngLibrary&) = delete;
    PngLibrary& operator=(const PngLibrary&) = delete;
    ~PngLibrary();

    [[nodiscard]] png_structp png() const noexcept { return m_png; }
    [[nodiscard]] png_infop info() const noexcept { return m_info; }
    /// What libpng said when `run` gave false.
    [[nodiscard]] QString reason() const { return m_reason; }

    /// Calls the lambda; false when libpng reported an error on the way.
    template <typename Calls>
    [[nodiscard]] bool run(const Calls& calls)
    {
        if (setjmp(png_jmpbuf(m_png)) != 0) {
            return false;
        }
        calls(m_png, m_info);
        return true;
    }

private:
    static void keepReason(png_structp png, png_const_charp message);
    static void ignoreWarning(png_structp png, png_const_charp message);
    static png_voidp allocate(png_structp png, png_alloc_size_t bytes);
    static void deallocate(png_structp png, png_voidp block);

    Direction m_direction;
    unsigned long long m_largestAllocation;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    QString m_reason;
};

} // namespace BufferApi::Formats
