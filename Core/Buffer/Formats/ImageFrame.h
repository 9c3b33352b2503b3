// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/OutputFile.h"
#include "Core/Buffer/I_Frame.h"
#include "Core/Buffer/LazyPlane.h"

#include <memory>
#include <vector>

namespace BufferApi::Formats
{

/// An image frame of depth 1 whose pixels, gray or `DT_RGB`, load from the source when they are asked for.
[[nodiscard]] std::unique_ptr<I_Frame> lazyImageFrame(E_DataType type, unsigned int width,
                                                      unsigned int height,
                                                      std::shared_ptr<const PlaneSource> pixels);

/// The pixels of a frame that has one plane of them and no other component. Raises RTE::FileWriteError for
/// any other frame: "PNG cannot hold vectors; a .qfi file can". \param format for people
[[nodiscard]] const I_PlaneBase& onlyPlane(const I_Frame& frame, const OutputFile& file,
                                           const QString& format);

/// The pixels of a plane for a writer; a plane that is unread stays so.
class PlanePixels
{
public:
    /// \param plane outlives this object
    explicit PlanePixels(const I_PlaneBase& plane);

    [[nodiscard]] const unsigned char* data() const noexcept { return m_data; }

private:
    std::vector<unsigned char> m_copy;
    const unsigned char* m_data;
};

} // namespace BufferApi::Formats
