// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/InputFile.h"

#include <tiffio.h>

#include <memory>

namespace BufferApi::Formats
{

/// A TIFF file opened for reading through libtiff, at no directory yet. For one thread; several may stand
/// over one file. libtiff prints nothing: its first error becomes the reason of the exception.
class TiffLibrary
{
public:
    /// \param file outlives this object \throws RTE::FileReadError
    explicit TiffLibrary(const InputFile& file);
    TiffLibrary(const TiffLibrary&) = delete;
    TiffLibrary& operator=(const TiffLibrary&) = delete;

    [[nodiscard]] TIFF* tiff() const noexcept { return m_tiff.get(); }
    [[nodiscard]] const InputFile& file() const noexcept { return m_file; }

    /// Reads the directory at this place of the file. \throws RTE::FileReadError
    void openDirectory(unsigned long long offset);

    /// The value of a tag with one number, or its default; `missing` when there is neither.
    template <typename T>
    [[nodiscard]] T field(uint32_t tag, T missing) const
    {
        T value = missing;
        return TIFFGetFieldDefaulted(m_tiff.get(), tag, &value) != 0 ? value : missing;
    }

    /// Raises RTE::FileReadError with what libtiff said, or else this reason.
    [[noreturn]] void refuse(const QString& reason,
                             RTE::SourceLocation location = RTE::SourceLocation::current()) const;

private:
    struct Closer
    {
        void operator()(TIFF* tiff) const { TIFFClose(tiff); }
    };

    static int keepError(TIFF* tiff, void* self, const char* module, const char* format, va_list arguments);
    static int ignoreWarning(TIFF* tiff, void* self, const char* module, const char* format,
                             va_list arguments);
    static tmsize_t read(thandle_t self, void* destination, tmsize_t bytes);
    static tmsize_t refuseWrite(thandle_t self, void* source, tmsize_t bytes);
    static toff_t seek(thandle_t self, toff_t offset, int origin);
    static int close(thandle_t self);
    static toff_t size(thandle_t self);

    const InputFile& m_file;
    toff_t m_position = 0;
    QString m_reason;
    std::unique_ptr<TIFF, Closer> m_tiff;
};

} // namespace BufferApi::Formats
