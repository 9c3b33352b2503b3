// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/BmpFormat.h"
#include "Core/Buffer/Formats/FileFormat.h"
#include "Core/Buffer/Formats/NativeFormat.h"
#include "Core/Buffer/Formats/PgmFormat.h"
#include "Core/Buffer/Formats/PngFormat.h"
#include "Core/Buffer/Formats/TiffFormat.h"

namespace BufferApi::Formats
{

namespace
{

std::vector<std::unique_ptr<const FileFormat>> allFormats()
{
    std::vector<std::unique_ptr<const FileFormat>> formats;
    formats.push_back(createNativeFormat());
    formats.push_back(createTiffFormat());
    formats.push_back(createPngFormat());
    formats.push_back(createBmpFormat());
    formats.push_back(createPgmFormat());
    return formats;
}

} // namespace

const std::vector<std::unique_ptr<const FileFormat>>& fileFormats()
{
    static const std::vector<std::unique_ptr<const FileFormat>> formats = allFormats();
    return formats;
}

} // namespace BufferApi::Formats
