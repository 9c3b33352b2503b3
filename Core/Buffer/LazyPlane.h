// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Plane.h"

#include <memory>

namespace BufferApi
{

/// Where a plane of an imported buffer has its pixels from. Several threads may call `read` at once.
class DATAOBJECTS_BUFFER_EXPORT PlaneSource
{
public:
    PlaneSource(const PlaneSource&) = delete;
    PlaneSource& operator=(const PlaneSource&) = delete;
    virtual ~PlaneSource();

    /// Fills the destination, row-major without gaps; `bytes` is that of the whole plane.
    /// \throws RTE::Exception when the pixels cannot be had
    virtual void read(void* destination, unsigned long long bytes) const = 0;

protected:
    PlaneSource() = default;
};

/// A plane that reads its pixels at the first `GetData` or `ReleaseData`, once however many threads ask, and
/// lets go of the source then. A failed read raises to its caller and leaves the plane unread.
/// \throws RTE::InvalidArgumentError for an unsupported type or a size that overflows
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT std::unique_ptr<I_PlaneBase>
createLazyPlane(E_DataType type, unsigned int width, unsigned int height,
                std::shared_ptr<const PlaneSource> source);

/// True for a plane whose pixels are still in its source alone.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT bool isUnread(const I_PlaneBase& plane);

/// Copies a plane's pixels to the destination; a plane that is still unread stays so.
/// \throws RTE::VerificationFailed "Plane has no data" when its data was released
DATAOBJECTS_BUFFER_EXPORT void readPlane(const I_PlaneBase& plane, void* destination);

/// Bytes of all pixels of a plane. \throws RTE::InvalidArgumentError when the size overflows
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT unsigned long long planeBytes(E_DataType type, unsigned int width,
                                                                      unsigned int height);

} // namespace BufferApi
