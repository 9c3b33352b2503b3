// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <QString>

#include <memory>

namespace BufferApi::Formats
{

/// A buffer of one frame whose pixels load when they are asked for.
[[nodiscard]] std::unique_ptr<I_Buffer> readPng(const QString& path);

} // namespace BufferApi::Formats
