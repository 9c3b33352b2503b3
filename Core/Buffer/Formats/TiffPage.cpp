// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffPage.h"

#include <algorithm>
#include <array>

namespace BufferApi::Formats
{

namespace
{

struct Compression
{
    unsigned int code;
    /// The most bytes that one stored byte can stand for.
    unsigned long long mostPerByte;
};

// LZW: 12 bits stand for at most 4096 bytes. PackBits: two for 128. Deflate: see RFC 1951, 258 for two bits.
constexpr std::array<Compression, 5> compressions{{{COMPRESSION_NONE, 1},
                                                   {COMPRESSION_LZW, 2731},
                                                   {COMPRESSION_ADOBE_DEFLATE, 1032},
                                                   {COMPRESSION_DEFLATE, 1032},
                                                   {COMPRESSION_PACKBITS, 64}}};

/// Decides on one page, from the tags of its directory.
class PageTags
{
public:
    explicit PageTags(const TiffLibrary& library) : m_library(library) {}

    [[nodiscard]] TiffPage read();

private:
    [[nodiscard]] uint16_t word(uint32_t tag, uint16_t missing) const
    {
        return m_library.field(tag, missing);
    }
    [[nodiscard]] uint32_t dword(uint32_t tag) const { return m_library.field<uint32_t>(tag, 0); }

    void readSamples();
    void readColour();
    void readAlpha();
    void readPalette();
    void readBlocks();
    void chooseType();
    [[nodiscard]] E_DataType grayType() const;
    void checkSizes() const;
    [[nodiscard]] unsigned long long mostBytes() const;
    [[noreturn]] void refuseSize() const;

    const TiffLibrary& m_library;
    TiffPage m_page;
};

TiffPage PageTags::read()
{
    m_page.width = dword(TIFFTAG_IMAGEWIDTH);
    m_page.height = dword(TIFFTAG_IMAGELENGTH);
    if (m_page.width == 0 || m_page.height == 0) {
        m_library.file().refuse(QStringLiteral("it has no pixels"));
    }
    readSamples();
    readColour();
    readAlpha();
    readPalette();
    chooseType();
    readBlocks();
    checkSizes();
    return std::move(m_page);
}

void PageTags::readSamples()
{
    m_page.bits = word(TIFFTAG_BITSPERSAMPLE, 1);
    m_page.samples = word(TIFFTAG_SAMPLESPERPIXEL, 1);
    m_page.format = word(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    if (m_page.format == SAMPLEFORMAT_VOID) {
        m_page.format = SAMPLEFORMAT_UINT;
    }
    m_page.isSeparate =
        m_page.samples > 1 && word(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    m_page.orientation = word(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    if (m_page.orientation > ORIENTATION_BOTLEFT) {
        m_library.file().refuse(
            QStringLiteral("rows and columns are exchanged (orientation %1), which is not supported")
                .arg(m_page.orientation));
    }
    if (m_library.field<uint32_t>(TIFFTAG_IMAGEDEPTH, 1) != 1) {
        m_library.file().refuse(QStringLiteral("pages of several planes are not supported"));
    }
}

void PageTags::readColour()
{
    uint16_t photometric = m_page.samples < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
    TIFFGetField(m_library.tiff(), TIFFTAG_PHOTOMETRIC, &photometric);
    switch (photometric) {
    // The mosaic of a colour camera is gray until somebody makes colours of it.
    case PHOTOMETRIC_CFA:
    case PHOTOMETRIC_MINISBLACK:
        m_page.colour = TiffColour::Gray;
        break;
    case PHOTOMETRIC_MINISWHITE:
        m_page.colour = TiffColour::InvertedGray;
        break;
    case PHOTOMETRIC_PALETTE:
        m_page.colour = TiffColour::Palette;
        break;
    case PHOTOMETRIC_RGB:
        m_page.colour = TiffColour::Rgb;
        break;
    default:
        m_library.file().refuse(
            QStringLiteral("colours of kind %1 are not supported; save them as RGB").arg(photometric));
    }
}

void PageTags::readAlpha()
{
    const unsigned int colours = m_page.colour == TiffColour::Rgb ? 3 : 1;
    uint16_t extraCount = 0;
    uint16_t* extras = nullptr;
    TIFFGetFieldDefaulted(m_library.tiff(), TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
    m_page.hasAlpha =
        m_page.samples == colours + 1 && extraCount == 1 && extras[0] != EXTRASAMPLE_UNSPECIFIED;
    if (m_page.samples != colours + (m_page.hasAlpha ? 1 : 0)) {
        m_library.file().refuse(QStringLiteral("%1 samples a pixel are not supported").arg(m_page.samples));
    }
}

void PageTags::readPalette()
{
    if (m_page.colour != TiffColour::Palette) {
        return;
    }
    uint16_t* red = nullptr;
    uint16_t* green = nullptr;
    uint16_t* blue = nullptr;
    if (m_page.bits > 8 || TIFFGetField(m_library.tiff(), TIFFTAG_COLORMAP, &red, &green, &blue) == 0) {
        m_library.file().refuse(QStringLiteral("its palette is missing or has more than 256 colours"));
    }
    const std::size_t count = std::size_t{1} << m_page.bits;
    const auto largest = [count](const uint16_t* channel) {
        return *std::max_element(channel, channel + count);
    };
    // Some programs write 8 bits where 16 are due.
    const int shift = std::max({largest(red), largest(green), largest(blue)}) < 256 ? 0 : 8;
    const auto byte = [shift](uint16_t value) { return static_cast<unsigned char>(value >> shift); };
    for (std::size_t i = 0; i < count; ++i) {
        m_page.palette.push_back({byte(blue[i]), byte(green[i]), byte(red[i]), 0});
    }
}

E_DataType PageTags::grayType() const
{
    const unsigned int bits = m_page.bits;
    if (m_page.format == SAMPLEFORMAT_UINT) {
        return bits <= 8 ? DT_BYTE : bits <= 16 ? DT_WORD : bits == 32 ? DT_UINT32 : DT_UNKNOWN;
    }
    // Inverted values and opacity have a meaning for unsigned numbers alone.
    if (m_page.colour == TiffColour::InvertedGray || m_page.hasAlpha) {
        return DT_UNKNOWN;
    }
    if (m_page.format == SAMPLEFORMAT_INT) {
        return bits == 8 || bits == 16 || bits == 32 ? DT_INT32 : DT_UNKNOWN;
    }
    if (m_page.format == SAMPLEFORMAT_IEEEFP) {
        return bits == 32 ? DT_FLOAT : bits == 64 ? DT_DOUBLE : DT_UNKNOWN;
    }
    return DT_UNKNOWN;
}

void PageTags::chooseType()
{
    const bool isUnsigned = m_page.format == SAMPLEFORMAT_UINT;
    if (m_page.colour == TiffColour::Rgb) {
        m_page.type = isUnsigned && m_page.bits == 8 ? DT_RGB : DT_UNKNOWN;
    } else if (m_page.colour == TiffColour::Palette) {
        const bool isGray = std::all_of(m_page.palette.begin(), m_page.palette.end(), [](const RgbQuad& c) {
            return c.red == c.green && c.green == c.blue;
        });
        m_page.type = !isUnsigned ? DT_UNKNOWN : isGray ? DT_BYTE : DT_RGB;
    } else {
        m_page.type = grayType();
    }
    if (m_page.type == DT_UNKNOWN) {
        static const std::array<const char*, 7> names = {
            "", "unsigned", "signed", "floating-point", "untyped", "complex integer", "complex"};
        const char* name = m_page.format < names.size() ? names[m_page.format] : "unknown";
        m_library.file().refuse(
            QStringLiteral("%1 %2 samples of %3 bits are not supported")
                .arg(m_page.colour == TiffColour::Rgb ? QStringLiteral("coloured") : QStringLiteral("gray"),
                     QLatin1String(name))
                .arg(m_page.bits));
    }
}

void PageTags::readBlocks()
{
    m_page.isTiled = TIFFIsTiled(m_library.tiff()) != 0;
    m_page.blockWidth = m_page.isTiled ? dword(TIFFTAG_TILEWIDTH) : m_page.width;
    m_page.blockHeight =
        m_page.isTiled ? dword(TIFFTAG_TILELENGTH) : std::min(dword(TIFFTAG_ROWSPERSTRIP), m_page.height);
    if (m_page.blockWidth == 0 || m_page.blockHeight == 0) {
        m_library.file().refuse(QStringLiteral("its strips or tiles have no pixels"));
    }
}

/// The most bytes that all pixels together can take, given the size of the file.
unsigned long long PageTags::mostBytes() const
{
    const unsigned int code = word(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    const auto* known = std::find_if(compressions.begin(), compressions.end(),
                                     [code](const Compression& c) { return c.code == code; });
    if (known == compressions.end()) {
        const TIFFCodec* codec = TIFFFindCODEC(static_cast<uint16_t>(code));
        m_library.file().refuse(
            QStringLiteral("compression %1 is not supported; save it with deflate or LZW")
                .arg(codec != nullptr ? QString::fromLatin1(codec->name) : QString::number(code)));
    }
    return m_library.file().size() * known->mostPerByte;
}

void PageTags::checkSizes() const
{
    const unsigned long long most = mostBytes();
    const unsigned long long rowBytes = m_page.storedRowBytes(m_page.width) * m_page.storedPlanes();
    const unsigned long long blockRowBytes = m_page.storedRowBytes(m_page.blockWidth);
    if (rowBytes > most / m_page.height || blockRowBytes > most / m_page.blockHeight) {
        m_library.file().refuse(
            QStringLiteral("the file is too small for %1 x %2 pixels").arg(m_page.width).arg(m_page.height));
    }
    const unsigned long long blockBytes =
        m_page.isTiled ? TIFFTileSize64(m_library.tiff()) : TIFFStripSize64(m_library.tiff());
    if (blockBytes != blockRowBytes * m_page.blockHeight) {
        m_library.file().refuse(QStringLiteral("its strips or tiles have an unexpected size"));
    }
}

} // namespace

TiffPage readTiffPage(const TiffLibrary& library)
{
    return PageTags(library).read();
}

} // namespace BufferApi::Formats
