// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffLibrary.h"

#include "Core/Common/Exception.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdio>

namespace BufferApi::Formats
{

namespace
{

struct OptionsFreer
{
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

/// Decoders need tables of fixed size, everything else is in proportion to the file.
tmsize_t largestAllocation(unsigned long long fileBytes)
{
    constexpr unsigned long long tables = 1ULL << 24;
    return static_cast<tmsize_t>(tables + 8 * fileBytes);
}

} // namespace

TiffLibrary::TiffLibrary(const InputFile& file) : m_file(file)
{
    const std::unique_ptr<TIFFOpenOptions, OptionsFreer> options(TIFFOpenOptionsAlloc());
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), &keepError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), &ignoreWarning, this);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), largestAllocation(file.size()));
    // h: only the header; m: no memory mapping, which a shortened file would turn into a signal; c: a large
    // strip stays whole; D: tables of strips are read when they are needed.
    m_tiff.reset(TIFFClientOpenExt(QFile::encodeName(file.path()).constData(), "rhmcD", this, &read,
                                   &refuseWrite, &seek, &close, &size, nullptr, nullptr, options.get()));
    if (!m_tiff) {
        refuse(QStringLiteral("its header is damaged"));
    }
}

void TiffLibrary::openDirectory(unsigned long long offset)
{
    m_reason.clear();
    if (TIFFSetSubDirectory(m_tiff.get(), offset) == 0) {
        refuse(QStringLiteral("a directory is damaged"));
    }
}

void TiffLibrary::refuse(const QString& reason, RTE::SourceLocation location) const
{
    m_file.refuse(m_reason.isEmpty() ? reason : m_reason, location);
}

int TiffLibrary::keepError(TIFF* /*tiff*/, void* self, const char* /*module*/, const char* format,
                           va_list arguments)
{
    std::array<char, 512> text{};
    std::vsnprintf(text.data(), text.size(), format, arguments);
    QString& reason = static_cast<TiffLibrary*>(self)->m_reason;
    if (reason.isEmpty()) {
        reason = QString::fromLocal8Bit(text.data());
    }
    return 1;
}

int TiffLibrary::ignoreWarning(TIFF* /*tiff*/, void* /*self*/, const char* /*module*/, const char* /*format*/,
                               va_list /*arguments*/)
{
    return 1;
}

tmsize_t TiffLibrary::read(thandle_t self, void* destination, tmsize_t bytes)
{
    auto& library = *static_cast<TiffLibrary*>(self);
    const toff_t size = library.m_file.size();
    const toff_t left = size - std::min(size, library.m_position);
    const toff_t count = std::min(static_cast<toff_t>(std::max<tmsize_t>(bytes, 0)), left);
    try {
        library.m_file.read(library.m_position, destination, count);
    } catch (const RTE::Exception&) {
        // An exception must not pass through C code; libtiff reports the failed read.
        return -1;
    }
    library.m_position += count;
    return static_cast<tmsize_t>(count);
}

tmsize_t TiffLibrary::refuseWrite(thandle_t /*self*/, void* /*source*/, tmsize_t /*bytes*/)
{
    return -1;
}

toff_t TiffLibrary::seek(thandle_t self, toff_t offset, int origin)
{
    auto& library = *static_cast<TiffLibrary*>(self);
    const toff_t from = origin == SEEK_SET   ? 0
                        : origin == SEEK_CUR ? library.m_position
                                             : library.m_file.size();
    library.m_position = from + offset;
    return library.m_position;
}

int TiffLibrary::close(thandle_t /*self*/)
{
    return 0;
}

toff_t TiffLibrary::size(thandle_t self)
{
    return static_cast<TiffLibrary*>(self)->m_file.size();
}

} // namespace BufferApi::Formats
