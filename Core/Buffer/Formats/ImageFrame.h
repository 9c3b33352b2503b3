// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/OutputFile.h"
#include "Core/Buffer/I_Frame.h"
#include "Core/Buffer/LazyPlane.h"

#include <memory>
#include <vector>

namespace BufferApi::Formats
{

/// An image frame whose planes of pixels, gray or `DT_RGB`, load from their sources when they are asked for.
[[nodiscard]] std::unique_ptr<I_Frame> lazyImageFrame(E_DataType type, unsigned int width,
                                                      unsigned int height,
                                                      std::vector<std::shared_ptr<const PlaneSource>> planes);

/// The pixels of an image frame that has no other component, all planes of the frame's size. Raises
/// RTE::FileWriteError for any other frame: "PNG cannot hold vectors; a .qfi file can".
/// \param format for people
[[nodiscard]] const I_Component& onlyPixels(const I_Frame& frame, const OutputFile& file,
                                            const QString& format);

/// Raises RTE::FileWriteError for a plane of packed colour whose fourth byte carries something: files of
/// three channels would lose it. \param pixels all those of the plane \param format for people
void refuseFourthByte(const I_PlaneBase& plane, const unsigned char* pixels, const OutputFile& file,
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
