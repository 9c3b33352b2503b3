// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"

#include <QRect>

namespace Qf
{

/// \name What a user names, or an error that tells what there is
/// @{

/// \throws RTE::OutOfRangeError
[[nodiscard]] const BufferApi::I_Frame& frameOf(const BufferApi::I_Buffer& buffer, unsigned int index);

/// \param name empty for the pixels. \throws RTE::InvalidArgumentError
[[nodiscard]] const BufferApi::I_Component& componentOf(const BufferApi::I_Frame& frame, const QString& name);

/// \throws RTE::OutOfRangeError
[[nodiscard]] const BufferApi::I_PlaneBase& planeOf(const BufferApi::I_Component& component, unsigned int z);

/// \param wanted empty for the whole plane. \throws RTE::OutOfRangeError
[[nodiscard]] QRect regionOf(const BufferApi::I_PlaneBase& plane, const QRect& wanted);

/// @}

} // namespace Qf
