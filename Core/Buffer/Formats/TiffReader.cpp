// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffReader.h"

#include "Core/Buffer/Formats/FrameRecord.h"
#include "Core/Buffer/Formats/ImageFrame.h"
#include "Core/Buffer/Formats/OmeXml.h"
#include "Core/Buffer/Formats/TiffDirectories.h"
#include "Core/Buffer/Formats/TiffPage.h"
#include "Core/Buffer/Formats/TiffRows.h"
#include "Core/Buffer/LazyBuffer.h"

#include <algorithm>
#include <optional>

namespace BufferApi::Formats
{

namespace
{

/// Decodes the strips or tiles of the open directory into a plane.
class PageReader
{
public:
    PageReader(const TiffLibrary& library, const TiffPage& page, void* pixels)
        : m_library(library), m_page(page), m_pixels(static_cast<unsigned char*>(pixels)),
          m_pixelBytes(GetDataTypeSize(page.type))
    {
    }

    void read();

private:
    /// A strip or tile; those at the right and lower edge may have fewer pixels inside the page than others.
    struct Block
    {
        uint32_t index;
        unsigned int sample;
        unsigned int x;
        unsigned int y;
        unsigned int width;
        unsigned int height;
    };

    void readBlock(const Block& block);
    void decode(uint32_t index, void* destination, unsigned long long bytes);
    [[nodiscard]] unsigned char* pixelsAt(unsigned int x, unsigned int y) const
    {
        return m_pixels + (1ULL * y * m_page.width + x) * m_pixelBytes;
    }

    const TiffLibrary& m_library;
    const TiffPage& m_page;
    unsigned char* m_pixels;
    unsigned long long m_pixelBytes;
    std::vector<unsigned char> m_stored;
};

void PageReader::read()
{
    Block block{};
    for (block.sample = 0; block.sample < m_page.storedPlanes(); ++block.sample) {
        for (unsigned long long y = 0; y < m_page.height; y += m_page.blockHeight) {
            for (unsigned long long x = 0; x < m_page.width; x += m_page.blockWidth, ++block.index) {
                block.x = static_cast<unsigned int>(x);
                block.y = static_cast<unsigned int>(y);
                block.width = std::min(m_page.blockWidth, m_page.width - block.x);
                block.height = std::min(m_page.blockHeight, m_page.height - block.y);
                readBlock(block);
            }
        }
    }
    orientTiffPixels(m_page, m_pixels);
}

void PageReader::readBlock(const Block& block)
{
    const unsigned long long rowBytes = m_page.storedRowBytes(m_page.blockWidth);
    const unsigned int storedRows = m_page.isTiled ? m_page.blockHeight : block.height;
    if (m_page.isPlain() && !m_page.isTiled) {
        decode(block.index, pixelsAt(0, block.y), rowBytes * storedRows);
        return;
    }
    m_stored.resize(rowBytes * storedRows);
    decode(block.index, m_stored.data(), m_stored.size());
    for (unsigned int row = 0; row < block.height; ++row) {
        if (!convertTiffRow(m_page, block.sample, m_stored.data() + row * rowBytes, block.width,
                            pixelsAt(block.x, block.y + row))) {
            m_library.file().refuse(QStringLiteral("it has transparent pixels"));
        }
    }
}

void PageReader::decode(uint32_t index, void* destination, unsigned long long bytes)
{
    TIFF* tiff = m_library.tiff();
    int damaged = 0;
    const uint64_t offset = TIFFGetStrileOffsetWithErr(tiff, index, &damaged);
    // Files may leave out blocks; libtiff would take the header of the file for their bytes.
    if (damaged != 0 || offset == 0 || TIFFGetStrileByteCountWithErr(tiff, index, &damaged) == 0 ||
        damaged != 0) {
        m_library.refuse(QStringLiteral("strip or tile %1 is missing").arg(index));
    }
    const auto size = static_cast<tmsize_t>(bytes);
    const tmsize_t decoded = m_page.isTiled ? TIFFReadEncodedTile(tiff, index, destination, size)
                                            : TIFFReadEncodedStrip(tiff, index, destination, size);
    if (decoded != size) {
        m_library.refuse(QStringLiteral("strip or tile %1 is damaged").arg(index));
    }
}

class TiffPixels : public PlaneSource
{
public:
    TiffPixels(std::shared_ptr<const InputFile> file, unsigned long long directory, const TiffPage& page)
        : m_file(std::move(file)), m_directory(directory), m_type(page.type), m_width(page.width),
          m_height(page.height)
    {
    }

    void read(void* destination, unsigned long long /*bytes*/) const override
    {
        TiffLibrary library(*m_file);
        library.openDirectory(m_directory);
        const TiffPage page = readTiffPage(library);
        if (page.type != m_type || page.width != m_width || page.height != m_height) {
            m_file->refuse(QStringLiteral("it has changed since it was opened"));
        }
        PageReader(library, page, destination).read();
    }

private:
    std::shared_ptr<const InputFile> m_file;
    unsigned long long m_directory;
    E_DataType m_type;
    unsigned int m_width;
    unsigned int m_height;
};

void applyScales(const OmeScales& scales, I_Frame& frame)
{
    if (scales.x) {
        frame.SetScaleX(*scales.x);
    }
    if (scales.y) {
        frame.SetScaleY(*scales.y);
    }
    if (scales.z) {
        frame.SetScaleZ(*scales.z);
    }
}

/// The pages as frames, with what our own record tells of them: without it each page is a frame.
class TiffFrames : public FrameSource
{
public:
    explicit TiffFrames(const QString& path)
        : m_file(std::make_shared<const InputFile>(path)), m_directories(tiffDirectories(*m_file))
    {
        TiffLibrary library(*m_file);
        library.openDirectory(m_directories.front());
        // A file of one page, the most common, proves here whether it can be taken.
        static_cast<void>(readTiffPage(library));
        const QByteArray description = library.field<const char*>(TIFFTAG_IMAGEDESCRIPTION, nullptr);
        const QByteArray text = recordOfOmeXml(description);
        if (!text.isEmpty()) {
            m_record.emplace(text, path);
        } else {
            m_scales = scalesOfOmeXml(description, m_directories.size());
        }
        // Another program added or removed pages: nobody knows any more which frame the record tells of.
        if (m_record && m_record->planeCount() != m_directories.size()) {
            m_record.reset();
        }
    }

    [[nodiscard]] unsigned int count() const
    {
        return static_cast<unsigned int>(m_record ? m_record->frameCount() : m_directories.size());
    }
    [[nodiscard]] const FrameRecord* record() const { return m_record ? &*m_record : nullptr; }

    [[nodiscard]] std::unique_ptr<I_Frame> frame(unsigned int index) const override
    {
        const unsigned long long first = m_record ? m_record->firstPlane(index) : index;
        const TiffPage page = pageAt(first);
        std::vector<std::shared_ptr<const PlaneSource>> planes;
        for (unsigned int z = 0; z < (m_record ? m_record->depth(index) : 1); ++z) {
            if (z > 0) {
                verifyAlike(page, pageAt(first + z));
            }
            planes.push_back(std::make_shared<TiffPixels>(m_file, m_directories[first + z], page));
        }
        auto frame = lazyImageFrame(page.type, page.width, page.height, std::move(planes));
        if (m_record) {
            m_record->applyTo(*frame, index);
        } else if (!m_scales.empty() && m_scales[index]) {
            applyScales(*m_scales[index], *frame);
        }
        return frame;
    }

private:
    [[nodiscard]] TiffPage pageAt(unsigned long long number) const
    {
        TiffLibrary library(*m_file);
        library.openDirectory(m_directories[number]);
        return readTiffPage(library);
    }

    void verifyAlike(const TiffPage& first, const TiffPage& page) const
    {
        if (page.type != first.type || page.width != first.width || page.height != first.height) {
            m_file->refuse(QStringLiteral("the planes of a volume differ in size or type"));
        }
    }

    std::shared_ptr<const InputFile> m_file;
    std::vector<unsigned long long> m_directories;
    std::optional<FrameRecord> m_record;
    /// Of each page, when another program described them.
    std::vector<std::shared_ptr<const OmeScales>> m_scales;
};

} // namespace

std::unique_ptr<I_Buffer> readTiff(const QString& path)
{
    const auto frames = std::make_shared<const TiffFrames>(path);
    std::unique_ptr<I_Buffer> buffer = createLazyBuffer(frames->count(), frames);
    if (const FrameRecord* record = frames->record()) {
        record->applyTo(*buffer);
    }
    buffer->SetModified(false);
    return buffer;
}

} // namespace BufferApi::Formats
