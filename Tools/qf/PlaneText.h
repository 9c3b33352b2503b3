// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Component.h"

#include <QRect>
#include <QString>

namespace Qf
{

enum class PlaneForm
{
    /// Columns below one another, separated by blanks.
    Text,
    Csv,
    /// One object with everything that the values need to be understood.
    Json,
    /// The bytes, little endian; of colours red, green, blue.
    Raw
};

/// A part of a plane, and where it is from.
struct PlaneExcerpt
{
    QString path;
    unsigned int frame = 0;
    const BufferApi::I_Component& component;
    unsigned int z = 0;
    const BufferApi::I_PlaneBase& plane;
    QRect region;
    /// Physical values instead of those that are stored; colours have none.
    bool scaled = false;
};

/// Writes the values on stdout, row by row, each with as few digits as give it back exactly.
/// \throws RTE::InvalidArgumentError for scaled colours or scaled bytes
void writePlane(const PlaneExcerpt& excerpt, PlaneForm form);

} // namespace Qf
