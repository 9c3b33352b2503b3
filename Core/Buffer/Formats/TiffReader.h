// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <QString>

#include <memory>

namespace BufferApi::Formats
{

/// A buffer with a frame for each page; a page is looked at and its pixels load when they are asked for.
/// Pages that are marked as reduced copies or as masks of others are passed over.
[[nodiscard]] std::unique_ptr<I_Buffer> readTiff(const QString& path);

} // namespace BufferApi::Formats
