// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/PngLibrary.h"

#include <cstdlib>

namespace BufferApi::Formats
{

PngLibrary::PngLibrary(Direction direction, unsigned long long largestAllocation)
    : m_direction(direction), m_largestAllocation(largestAllocation)
{
    const auto create = direction == Direction::Read ? &png_create_read_struct_2 : &png_create_write_struct_2;
    m_png = create(PNG_LIBPNG_VER_STRING, this, &keepReason, &ignoreWarning, this, &allocate, &deallocate);
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

png_voidp PngLibrary::allocate(png_structp png, png_alloc_size_t bytes)
{
    const auto* library = static_cast<const PngLibrary*>(png_get_mem_ptr(png));
    return bytes <= library->m_largestAllocation ? std::malloc(bytes) : nullptr;
}

void PngLibrary::deallocate(png_structp /*png*/, png_voidp block)
{
    std::free(block);
}

} // namespace BufferApi::Formats
