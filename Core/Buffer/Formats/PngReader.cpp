// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/PngReader.h"

#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/Formats/FrameRecord.h"
#include "Core/Buffer/Formats/ImageFrame.h"
#include "Core/Buffer/Formats/InputFile.h"
#include "Core/Buffer/Formats/PngLibrary.h"
#include "Core/Common/Exception.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace BufferApi::Formats
{

namespace
{

/// What the chunks before the pixels tell.
struct Layout
{
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int bits = 0;
    int colourType = 0;
    bool hasAlpha = false;
    /// The gray of each index, when `isGrayPalette`.
    std::array<unsigned char, 256> grays{};
    bool isGrayPalette = false;

    [[nodiscard]] bool isGray() const { return (colourType & PNG_COLOR_MASK_COLOR) == 0; }
    [[nodiscard]] E_DataType type() const
    {
        if (isGrayPalette) {
            return DT_BYTE;
        }
        return !isGray() ? DT_RGB : bits == 16 ? DT_WORD : DT_BYTE;
    }
};

/// Rows of a million pixels, which is libpng's limit, and chunks that are really in the file.
unsigned long long largestAllocation(unsigned long long fileBytes)
{
    constexpr unsigned long long rows = 1ULL << 24;
    return rows + fileBytes;
}

/// One pass over the file from its beginning.
class PngInput
{
public:
    explicit PngInput(const InputFile& file)
        : m_file(file), m_library(PngLibrary::Direction::Read, largestAllocation(file.size()))
    {
        run([this](png_structp png, png_infop info) {
            png_set_read_fn(png, this, &readBytes);
            // Texts may be longer than libpng's own limit, but not than the file.
            png_set_chunk_malloc_max(png, m_file.size() + 1);
            // Damage of any chunk shows: texts hold our scales and attributes.
            png_set_crc_action(png, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
            png_read_info(png, info);
        });
    }

    [[nodiscard]] Layout layout();
    /// Our own record; empty when the file has none.
    [[nodiscard]] QByteArray record();
    void readPixels(const Layout& layout, void* destination);

private:
    template <typename Calls>
    void run(const Calls& calls)
    {
        if (!m_library.run(calls)) {
            m_file.refuse(m_library.reason());
        }
    }

    static void readBytes(png_structp png, png_bytep destination, std::size_t bytes);
    void readPalette(Layout& layout);
    void readRows(unsigned char* destination, std::size_t rowBytes, png_uint_32 height);
    template <typename T>
    void readGraysWithAlpha(const Layout& layout, T* destination);
    void readColours(const Layout& layout, RgbQuad* destination);

    const InputFile& m_file;
    PngLibrary m_library;
    unsigned long long m_offset = 0;
};

void PngInput::readBytes(png_structp png, png_bytep destination, std::size_t bytes)
{
    auto* input = static_cast<PngInput*>(png_get_io_ptr(png));
    bool failed = input->m_file.size() - input->m_offset < bytes;
    try {
        if (!failed) {
            input->m_file.read(input->m_offset, destination, bytes);
            input->m_offset += bytes;
        }
    } catch (const RTE::Exception&) {
        // An exception must not pass through C code; libpng's own error reaches the caller instead.
        failed = true;
    }
    if (failed) {
        png_error(png, "the file ends early");
    }
}

Layout PngInput::layout()
{
    Layout layout;
    run([&layout](png_structp png, png_infop info) {
        png_get_IHDR(png, info, &layout.width, &layout.height, &layout.bits, &layout.colourType, nullptr,
                     nullptr, nullptr);
        layout.hasAlpha =
            (layout.colourType & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(png, info, PNG_INFO_tRNS) != 0;
    });
    readPalette(layout);
    if (layout.type() == DT_RGB && layout.bits == 16) {
        m_file.refuse(
            QStringLiteral("colours of 16 bits a channel are not supported; save them with 8 bits"));
    }
    // Deflate makes at most 1032 bytes out of one, so that a small file cannot ask for a huge plane.
    constexpr unsigned long long mostPerByte = 1032;
    const unsigned long long rowBits = 1ULL * layout.width * static_cast<unsigned int>(layout.bits);
    if (layout.height != 0 && rowBits / 8 > m_file.size() * mostPerByte / layout.height) {
        m_file.refuse(
            QStringLiteral("the file is too small for %1 x %2 pixels").arg(layout.width).arg(layout.height));
    }
    return layout;
}

QByteArray PngInput::record()
{
    png_textp texts = nullptr;
    int count = 0;
    run([&](png_structp png, png_infop info) { png_get_text(png, info, &texts, &count); });
    const png_textp end = texts + count;
    const auto* found = std::find_if(texts, end, [](const png_text& text) {
        return std::strcmp(text.key, pngRecordKeyword) == 0 && text.compression == PNG_ITXT_COMPRESSION_NONE;
    });
    return found != end ? QByteArray(found->text, static_cast<qsizetype>(found->itxt_length)) : QByteArray();
}

void PngInput::readPalette(Layout& layout)
{
    if (layout.colourType != PNG_COLOR_TYPE_PALETTE || layout.hasAlpha) {
        return;
    }
    png_colorp colours = nullptr;
    int count = 0;
    run([&](png_structp png, png_infop info) { png_get_PLTE(png, info, &colours, &count); });
    layout.isGrayPalette = std::all_of(
        colours, colours + count, [](const png_color& c) { return c.red == c.green && c.green == c.blue; });
    for (int i = 0; i < count; ++i) {
        layout.grays[static_cast<std::size_t>(i)] = colours[i].green;
    }
}

void PngInput::readPixels(const Layout& layout, void* destination)
{
    auto* bytes = static_cast<unsigned char*>(destination);
    if (layout.type() == DT_RGB) {
        readColours(layout, static_cast<RgbQuad*>(destination));
    } else if (layout.isGrayPalette) {
        run([](png_structp png, png_infop) { png_set_packing(png); });
        readRows(bytes, layout.width, layout.height);
        const unsigned long long count = 1ULL * layout.width * layout.height;
        std::transform(bytes, bytes + count, bytes, [&](unsigned char index) { return layout.grays[index]; });
    } else {
        run([](png_structp png, png_infop) {
            png_set_expand_gray_1_2_4_to_8(png);
            png_set_tRNS_to_alpha(png);
            if constexpr (std::endian::native == std::endian::little) {
                png_set_swap(png);
            }
        });
        if (layout.hasAlpha && layout.type() == DT_WORD) {
            readGraysWithAlpha(layout, static_cast<unsigned short*>(destination));
        } else if (layout.hasAlpha) {
            readGraysWithAlpha(layout, bytes);
        } else {
            readRows(bytes, GetDataTypeSize(layout.type()) * layout.width, layout.height);
        }
    }
}

/// Reads all rows, through the passes of an interlaced file, and the chunks behind them.
void PngInput::readRows(unsigned char* destination, std::size_t rowBytes, png_uint_32 height)
{
    std::vector<png_bytep> rows(height);
    for (std::size_t y = 0; y < height; ++y) {
        rows[y] = destination + y * rowBytes;
    }
    bool fits = false;
    run([&](png_structp png, png_infop info) {
        png_set_interlace_handling(png);
        png_read_update_info(png, info);
        fits = png_get_rowbytes(png, info) == rowBytes;
        if (fits) {
            png_read_image(png, rows.data());
            png_read_end(png, nullptr);
        }
    });
    if (!fits) {
        m_file.refuse(QStringLiteral("its rows have an unexpected size"));
    }
}

template <typename T>
void PngInput::readGraysWithAlpha(const Layout& layout, T* destination)
{
    const std::size_t count = 1ULL * layout.width * layout.height;
    std::vector<T> pairs(2 * count);
    readRows(reinterpret_cast<unsigned char*>(pairs.data()), 2 * sizeof(T) * layout.width, layout.height);
    for (std::size_t i = 0; i < count; ++i) {
        if (pairs[2 * i + 1] != std::numeric_limits<T>::max()) {
            m_file.refuse(QStringLiteral("it has transparent pixels"));
        }
        destination[i] = pairs[2 * i];
    }
}

void PngInput::readColours(const Layout& layout, RgbQuad* destination)
{
    run([&](png_structp png, png_infop) {
        png_set_palette_to_rgb(png);
        png_set_tRNS_to_alpha(png);
        png_set_bgr(png);
        if (!layout.hasAlpha) {
            png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
        }
    });
    readRows(reinterpret_cast<unsigned char*>(destination), sizeof(RgbQuad) * layout.width, layout.height);
    const std::size_t count = 1ULL * layout.width * layout.height;
    for (std::size_t i = 0; i < count; ++i) {
        if (destination[i].reserved != 0xFF) {
            m_file.refuse(QStringLiteral("it has transparent pixels"));
        }
        destination[i].reserved = 0;
    }
}

class PngPixels : public PlaneSource
{
public:
    PngPixels(std::shared_ptr<const InputFile> file, const Layout& layout)
        : m_file(std::move(file)), m_layout(layout)
    {
    }

    void read(void* destination, unsigned long long /*bytes*/) const override
    {
        PngInput(*m_file).readPixels(m_layout, destination);
    }

private:
    std::shared_ptr<const InputFile> m_file;
    Layout m_layout;
};

} // namespace

std::unique_ptr<I_Buffer> readPng(const QString& path)
{
    const auto file = std::make_shared<const InputFile>(path);
    PngInput input(*file);
    const Layout layout = input.layout();
    auto frame = lazyImageFrame(layout.type(), layout.width, layout.height,
                                {std::make_shared<PngPixels>(file, layout)});
    std::unique_ptr<I_Buffer> buffer(CreateBuffer());
    if (const QByteArray text = input.record(); !text.isEmpty()) {
        const FrameRecord record(text, path);
        // Another program may have made this picture of one out of several.
        if (record.frameCount() == 1) {
            record.applyTo(*buffer);
            record.applyTo(*frame, 0);
        }
    }
    buffer->AddFrame(frame.get());
    static_cast<void>(frame.release());
    buffer->SetModified(false);
    return buffer;
}

} // namespace BufferApi::Formats
