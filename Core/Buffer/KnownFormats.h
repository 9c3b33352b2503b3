// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/Buffer/Export.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace BufferApi
{

/// A kind of file that `ImportBuffer` reads, as told to people.
struct KnownFormat
{
    /// "TIFF".
    QString name;
    /// Lower case, without the dot; the first is the usual one.
    QStringList extensions;
    /// What a file of this kind can hold: "one frame: gray of 8 or 16 bit, RGB".
    QString holds;
    /// True if `ExportBuffer` writes it.
    bool isWritten = false;
    /// True if a written file holds a single frame.
    bool isSingleFrame = false;
    /// True if it holds images alone: no vectors, and no component beside the pixels.
    bool holdsOnlyPixels = true;
    /// The types of pixels that `ExportBuffer` writes.
    std::vector<E_DataType> pixelTypes;
    /// True if a file that `ExportBuffer` wrote tells itself when a pixel was damaged.
    bool hasChecksums = false;
};

/// All formats; the first is the native one.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT const std::vector<KnownFormat>& knownFormats();

/// The format of a file, which its content decides. \throws RTE::FileOpenError as `ImportBuffer`
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT const KnownFormat& formatOfContent(const QString& path);

/// True if the file itself tells when one of its pixels was damaged. Native files of other programs need not:
/// they may have pixels, or the tables where to find them, without checksums.
/// \throws RTE::Exception as `ImportBuffer`
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT bool showsDamage(const QString& path);

/// The format in which `ExportBuffer` writes a file of this name: the extension decides, and any that no
/// other format owns means the native one.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT const KnownFormat& formatOfName(const QString& path);

} // namespace BufferApi
