// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/RGBImage.h"
#include "Core/DataObjects/RgbKernels.h"

namespace DataObjects
{

/// Turns the single plane of a colour filter mosaic into a colour image and back, on raw values.
///
/// Every second pixel of every second row is a site of red, the pixels diagonal to them are sites of blue,
/// the others of green. The code of the phase, which is the attribute `RGBFrame` of a mosaic, tells where the
/// first site of red is: 1 at (0, 0), 257 at (1, 0), 513 at (0, 1), 769 at (1, 1).
class BayerTransformer
{
public:
    /// \throws RTE::VerificationFailed "Invalid RGBFrame attribute: " and the number for another code
    explicit BayerTransformer(int code);
    /// For the code that a mosaic has in its attributes; a text that is no number counts as 0.
    explicit BayerTransformer(const Attributes& attributes);

    /// The components that a site does not have are the truncated means of the nearest sites that have them;
    /// beyond an edge the neighbour of the other side counts. Mask, scales, scalar fields and attributes come
    /// along, but for `RGBFrame`.
    /// \throws RTE::VerificationFailed "Image to small. Needs to be at least 2x2"
    [[nodiscard]] RGBImage toColour(const Image<unsigned short>& mosaic) const;

    /// The transpose of toColour without its divisions: each pixel adds its components to the sites that
    /// toColour would take them from, where sums wrap at 16 bits. Mask, scales, scalar fields and attributes
    /// come along, and `RGBFrame` is set.
    /// \throws RTE::VerificationFailed "Image to small. Needs to be at least 2x2"
    [[nodiscard]] Image<unsigned short> toMosaic(const RGBImage& image) const;

private:
    [[nodiscard]] Private::MosaicSites sitesOf(unsigned int y) const noexcept;

    int m_code;
    unsigned int m_redX; ///< parity of the columns with sites of red
    unsigned int m_redY; ///< parity of the rows with sites of red
};

} // namespace DataObjects
