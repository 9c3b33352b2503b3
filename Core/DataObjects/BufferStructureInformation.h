// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/DataType.h"
#include "Core/DataObjects/Export.h"

#include <QString>

namespace BufferApi
{
class I_Buffer;
} // namespace BufferApi

namespace DataObjects
{

/// What a buffer of the frame store holds, as its first frame tells; without frames, as the defaults here.
struct BufferStructureInformation
{
    unsigned int frameCount = 0;
    /// Number of planes.
    unsigned int depth = 0;
    /// Pixels, or vectors of a vector frame.
    unsigned int width = 0;
    unsigned int height = 0;
    /// Type of the pixels, or of the components of vectors.
    BufferApi::E_DataType dataType = BufferApi::DT_UNKNOWN;
    /// Distance of the vectors of a vector frame in pixels.
    unsigned int gridX = 0;
    unsigned int gridY = 0;
    unsigned int gridZ = 1;
    bool isImage = false;
    bool isVector = false;
    bool isVector3C = false;
    bool hasMask = false;
    /// The buffer's.
    QString name;
};

/// Looks at the first frame; no plane of a file is read.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT BufferStructureInformation
GetBufferStructureInformationForBuffer(const BufferApi::I_Buffer& buffer);

} // namespace DataObjects
