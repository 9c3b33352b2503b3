// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffWriter.h"

#include "Core/Buffer/Formats/FrameRecord.h"
#include "Core/Buffer/Formats/ImageFrame.h"
#include "Core/Buffer/Formats/OmeXml.h"
#include "Core/Buffer/Formats/TiffDirectoryWriter.h"
#include "Core/Buffer/Formats/TiffEncoder.h"

#include <tiff.h>

#include <algorithm>
#include <cmath>

namespace BufferApi::Formats
{

namespace
{

constexpr unsigned long long usualStripBytes = 256 * 1024;

/// What is left of a frame once its pixels are in the file.
struct Page
{
    E_DataType type = DT_UNKNOWN;
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int rowsPerStrip = 0;
    std::vector<unsigned long long> offsets;
    std::vector<unsigned long long> byteCounts;
};

struct Ratio
{
    std::uint32_t numerator = 0;
    std::uint32_t denominator = 1;
};

/// The nearest ratio whose denominator is the smallest sufficient power of ten; 0 when there is none.
Ratio ratioOf(double value)
{
    Ratio ratio;
    for (double denominator = 1; denominator <= 1e9; denominator *= 10) {
        const double numerator = std::round(value * denominator);
        if (!(numerator <= 4294967295.0)) {
            break;
        }
        ratio = {static_cast<std::uint32_t>(numerator), static_cast<std::uint32_t>(denominator)};
        if (std::abs(numerator / denominator - value) <= 1e-12 * value) {
            break;
        }
    }
    return ratio;
}

/// Tags 282, 283, 284 and 296, which programs read that know nothing of the description.
void addResolution(TiffDirectoryWriter& tags, const OmeImage& image)
{
    constexpr double centimetre = 0.01;
    const Ratio x = ratioOf(centimetre / metresPerPixel(image.scaleX).value_or(NAN));
    const Ratio y = ratioOf(centimetre / metresPerPixel(image.scaleY).value_or(NAN));
    const bool isKnown = x.numerator != 0 && y.numerator != 0;
    tags.addRatio(TIFFTAG_XRESOLUTION, isKnown ? x.numerator : 1, isKnown ? x.denominator : 1);
    tags.addRatio(TIFFTAG_YRESOLUTION, isKnown ? y.numerator : 1, isKnown ? y.denominator : 1);
    tags.addWords(TIFFTAG_PLANARCONFIG, 1, PLANARCONFIG_CONTIG);
    tags.addWords(TIFFTAG_RESOLUTIONUNIT, 1,
                  isKnown ? std::uint16_t{RESUNIT_CENTIMETER} : std::uint16_t{RESUNIT_NONE});
}

std::uint16_t sampleFormat(E_DataType type)
{
    if (type == DT_FLOAT || type == DT_DOUBLE) {
        return SAMPLEFORMAT_IEEEFP;
    }
    return type == DT_INT32 ? SAMPLEFORMAT_INT : SAMPLEFORMAT_UINT;
}

/// The page goes on with the series.
bool continues(const OmeImage& series, const OmeImage& page)
{
    return series.type == page.type && series.width == page.width && series.height == page.height &&
           series.depth == page.depth && series.scaleX == page.scaleX && series.scaleY == page.scaleY &&
           series.scaleZ == page.scaleZ;
}

class TiffWriter : public FrameWriter
{
public:
    TiffWriter(const OutputPath& path, bool isPacked, unsigned long long largestClassic)
        : m_file(path), m_encoder(isPacked), m_largestClassic(largestClassic)
    {
        const std::array<char, TiffDirectoryWriter::headerBytes> header{};
        m_file.append(header.data(), header.size());
    }

    void append(const I_Frame& frame) override;
    void finish(const I_Buffer& buffer) override;

private:
    void appendPage(const I_PlaneBase& plane);
    void describe(const I_Frame& frame);
    [[nodiscard]] TiffFlavour flavour(qsizetype descriptionBytes) const;
    [[nodiscard]] TiffDirectoryWriter directory(const Page& page, const OmeImage& image, TiffFlavour flavour,
                                                const QByteArray& description) const;

    OutputFile m_file;
    TiffEncoder m_encoder;
    unsigned long long m_largestClassic;
    FrameRecordWriter m_record;
    std::vector<OmeImage> m_images;
    std::vector<Page> m_pages;
};

void TiffWriter::append(const I_Frame& frame)
{
    const I_Component& pixels = onlyPixels(frame, m_file, QStringLiteral("TIFF"));
    describe(frame);
    for (unsigned int z = 0; z < frame.GetDepth(); ++z) {
        appendPage(*pixels.GetPlane(z));
    }
}

void TiffWriter::appendPage(const I_PlaneBase& plane)
{
    const PlanePixels pixels(plane);
    refuseFourthByte(plane, pixels.data(), m_file, QStringLiteral("TIFF"));
    Page page;
    page.type = plane.GetDataType();
    page.width = plane.GetWidth();
    page.height = plane.GetHeight();
    const unsigned long long rowBytes = tiffRowBytes(page.type, page.width);
    page.rowsPerStrip =
        static_cast<unsigned int>(std::clamp<unsigned long long>(usualStripBytes / rowBytes, 1, page.height));
    for (unsigned long long y = 0; y < page.height; y += page.rowsPerStrip) {
        const unsigned char* rows = pixels.data() + y * page.width * GetDataTypeSize(page.type);
        const auto count =
            static_cast<unsigned int>(std::min<unsigned long long>(page.rowsPerStrip, page.height - y));
        const auto stored = m_encoder.encode(page.type, rows, page.width, count);
        page.offsets.push_back(m_file.size());
        page.byteCounts.push_back(stored.size());
        m_file.append(stored.data(), stored.size());
    }
    m_pages.push_back(std::move(page));
}

void TiffWriter::describe(const I_Frame& frame)
{
    m_record.add(frame);
    const OmeImage image{.type = frame.GetDataType(),
                         .width = frame.GetWidth(),
                         .height = frame.GetHeight(),
                         .depth = frame.GetDepth(),
                         .scaleX = frame.GetScaleX(),
                         .scaleY = frame.GetScaleY(),
                         .scaleZ = frame.GetScaleZ(),
                         .firstPage = static_cast<unsigned int>(m_pages.size()),
                         .pages = frame.GetDepth()};
    if (!m_images.empty() && continues(m_images.back(), image)) {
        m_images.back().pages += image.pages;
    } else {
        m_images.push_back(image);
    }
}

void TiffWriter::finish(const I_Buffer& buffer)
{
    if (m_pages.empty()) {
        m_file.refuse(QStringLiteral("TIFF needs a frame at least; a .qfi file does not"));
    }
    const QByteArray description = omeXml(m_images, buffer.GetName(), m_record.finish(buffer));
    const TiffFlavour flavour = this->flavour(description.size());
    if (m_file.size() % 2 != 0) {
        m_file.append("", 1);
    }
    TiffDirectoryWriter::writeHeader(m_file, flavour, m_file.size());
    auto image = m_images.begin();
    for (unsigned int i = 0; i < m_pages.size(); ++i) {
        image += i == image->firstPage + image->pages ? 1 : 0;
        directory(m_pages[i], *image, flavour, i == 0 ? description : QByteArray())
            .write(m_file, i + 1 == m_pages.size());
    }
    m_file.close();
}

TiffFlavour TiffWriter::flavour(qsizetype descriptionBytes) const
{
    // More than any directory takes beside its strips and description.
    constexpr unsigned long long fixedBytes = 512;
    unsigned long long bytes = m_file.size() + static_cast<unsigned long long>(descriptionBytes);
    for (const Page& page : m_pages) {
        bytes += fixedBytes + 8 * page.offsets.size();
    }
    return bytes > m_largestClassic ? TiffFlavour::Big : TiffFlavour::Classic;
}

TiffDirectoryWriter TiffWriter::directory(const Page& page, const OmeImage& image, TiffFlavour flavour,
                                          const QByteArray& description) const
{
    const bool isRgb = page.type == DT_RGB;
    const std::uint16_t samples = isRgb ? 3 : 1;
    const auto bits = static_cast<std::uint16_t>(isRgb ? 8 : 8 * GetDataTypeSize(page.type));
    const std::uint16_t format = sampleFormat(page.type);
    TiffDirectoryWriter tags(flavour);
    tags.addDword(TIFFTAG_IMAGEWIDTH, page.width);
    tags.addDword(TIFFTAG_IMAGELENGTH, page.height);
    tags.addWords(TIFFTAG_BITSPERSAMPLE, samples, bits);
    tags.addWords(TIFFTAG_COMPRESSION, 1,
                  m_encoder.isPacked() ? std::uint16_t{COMPRESSION_ADOBE_DEFLATE}
                                       : std::uint16_t{COMPRESSION_NONE});
    tags.addWords(TIFFTAG_PHOTOMETRIC, 1,
                  isRgb ? std::uint16_t{PHOTOMETRIC_RGB} : std::uint16_t{PHOTOMETRIC_MINISBLACK});
    if (!description.isEmpty()) {
        tags.addText(TIFFTAG_IMAGEDESCRIPTION, description);
    }
    tags.addOffsets(TIFFTAG_STRIPOFFSETS, page.offsets);
    tags.addWords(TIFFTAG_SAMPLESPERPIXEL, 1, samples);
    tags.addDword(TIFFTAG_ROWSPERSTRIP, page.rowsPerStrip);
    tags.addOffsets(TIFFTAG_STRIPBYTECOUNTS, page.byteCounts);
    addResolution(tags, image);
    if (m_encoder.isPacked()) {
        tags.addWords(TIFFTAG_PREDICTOR, 1,
                      format == SAMPLEFORMAT_IEEEFP ? std::uint16_t{PREDICTOR_FLOATINGPOINT}
                                                    : std::uint16_t{PREDICTOR_HORIZONTAL});
    }
    tags.addWords(TIFFTAG_SAMPLEFORMAT, samples, format);
    return tags;
}

} // namespace

std::unique_ptr<FrameWriter> createTiffWriter(const OutputPath& path, bool isPacked,
                                              unsigned long long largestClassic)
{
    return std::make_unique<TiffWriter>(path, isPacked, largestClassic);
}

} // namespace BufferApi::Formats
