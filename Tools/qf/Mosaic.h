// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tools/qf/Plot/ValueRange.h"

#include "Core/Buffer/I_FrameImage.h"

#include <QImage>

#include <optional>

namespace Qf
{

/// True for words that a camera took behind a colour filter.
[[nodiscard]] bool isMosaic(const BufferApi::I_Frame& frame);

/// The colours of a mosaic. Each channel runs from the lower end of the range to the upper one; pixels that
/// the mask rejects stay blank. \param range in the unit of the frame's intensity scale; without it the range
/// follows from the values of all channels
/// \throws RTE::VerificationFailed for a mark that tells no known phase, and for less than 2x2 pixels
[[nodiscard]] QImage mosaicImage(const BufferApi::I_FrameImage& frame, unsigned int z,
                                 const std::optional<ValueRange>& range);

} // namespace Qf
