// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/PngLibrary.h"

#include <new>

namespace BufferApi::Formats
{

PngLibrary::PngLibrary(Direction direction) : m_direction(direction)
{
    m_png = direction == Direction::Read
                ? png_create_read_struct(PNG_LIBPNG_VER_STRING, this, &keepReason, &ignoreWarning)
                : png_create_write_struct(PNG_LIBPNG_VER_STRING, this, &keepReason, &ignoreWarning);
    m_info = m_png != nullptr ? png_create_info_struct(m_png) : nullptr;
}

PngLibrary::~PngLibrary()
{
    if (m_direction == Direction::Read) {
        png_destroy_read_struct(&m_png, &m_info, nullptr);
    } else {
        png_destroy_write_struct(&m_png, &m_info);
    }
}

void PngLibrary::keepReason(png_structp png, png_const_charp message)
{
    static_cast<PngLibrary*>(png_get_error_ptr(png))->m_reason = QString::fromLatin1(message);
    png_longjmp(png, 1);
}

void PngLibrary::ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

} // namespace BufferApi::Formats
