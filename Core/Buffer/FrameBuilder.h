// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Frame.h"

#include <memory>
#include <optional>
#include <vector>

namespace BufferApi
{

enum class FrameKind
{
    Image,
    Rgb,
    Vector2C,
    Vector3C
};

[[nodiscard]] constexpr bool isVectorKind(FrameKind kind) noexcept
{
    return kind == FrameKind::Vector2C || kind == FrameKind::Vector3C;
}

/// What is fixed when a frame is made.
struct FrameShape
{
    FrameKind kind = FrameKind::Image;
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int depth = 0;
    /// Sets of vector components; 1 for frames with pixels.
    unsigned int choices = 1;

    friend bool operator==(const FrameShape&, const FrameShape&) = default;
};

/// What a component is made of.
struct ComponentParts
{
    std::string name;
    E_DataType type = DT_UNKNOWN;
    /// One per z of the frame, all of `type` and of one size, which need not be the frame's.
    std::vector<std::unique_ptr<I_PlaneBase>> planes;
    /// The component's own scale; for pixels it becomes the frame's I scale.
    std::optional<Zt::LinearScale> scale;
};

/// A frame that consists of exactly these components, in this order, for readers of files: planes may be
/// lazy, and nothing is added that is not given. Scales, grids and attributes follow through its interface.
/// \throws RTE::InvalidArgumentError for a name that is empty or twice there, or planes that do not fit
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT std::unique_ptr<I_Frame>
buildFrame(const FrameShape& shape, std::vector<ComponentParts> components);

/// A new frame with all components of its kind.
/// \param type of the pixels; vectors are `DT_FLOAT`
/// \param pixels empty, or an array for each z that the frame takes over if nothing is raised
[[nodiscard]] std::unique_ptr<I_Frame> createFrame(const FrameShape& shape, E_DataType type,
                                                   const std::vector<void*>& pixels);

/// The shape of any frame, which an exporter writes down. \throws RTE::LogicError "Unknown frame class"
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT FrameShape frameShape(const I_Frame& frame);

/// The name under which a frame holds a vector component of a choice: "U", "U1", "U2" …
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT std::string choiceComponentName(const std::string& name,
                                                                        unsigned int choice);

/// True for the names of U, V and, in a frame of three components, W of all its choices.
[[nodiscard]] DATAOBJECTS_BUFFER_EXPORT bool isVectorComponent(const FrameShape& shape,
                                                               const std::string& name);

} // namespace BufferApi
