// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <memory>

namespace BufferApi::Formats::Native
{

/// Opens a native file and reads its structure; frames are made when they are asked for, and their pixels
/// read when those are. The file stays open while a frame or a plane still has something in it.
[[nodiscard]] std::unique_ptr<I_Buffer> readBuffer(const QString& path);

/// True if all planes, and the tables where to find them, are under checksums.
[[nodiscard]] bool showsDamage(const QString& path);

} // namespace BufferApi::Formats::Native
