// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/Common/DeviceData.h"
#include "Core/Common/LinearScale.h"
#include "Core/DataObjects/AttributeScope.h"
#include "Core/DataObjects/AttributesContainer.h"
#include "Core/DataObjects/CustomImageTag.h"

namespace DataObjects
{

/// The attributes of a whole buffer: the global ones, which are those of this container, and those of each
/// frame with its scales.
struct DATAOBJECTS_DATAOBJECTS_EXPORT GlobalAndFrameAttributes : AttributesContainer
{
    std::vector<AttributesContainer> frameAttributes; ///< one for each frame
    std::vector<Zt::LinearScale> scalesX;             ///< one for each frame, and so on
    std::vector<Zt::LinearScale> scalesY;
    std::vector<Zt::LinearScale> scalesZ;
    std::vector<Zt::LinearScale> scalesI;

    using AttributesContainer::contains;
    /// Whether the lookup of this scope, as below, finds the name. `Frame` asks for any frame that has it.
    [[nodiscard]] bool contains(const QString& name, AttributeScope scope) const;
    [[nodiscard]] bool contains(const std::string& name, AttributeScope scope) const;

    [[nodiscard]] std::optional<Attribute> getGlobalAttribute(const QString& name) const;
    /// One entry for each frame; empty where that frame lacks the name.
    [[nodiscard]] std::vector<std::optional<Attribute>> getFrameAttributes(const QString& name) const;
    /// The first device of this name among the global attributes. What follows " - " is not looked at, so
    /// that the text "Name - Alias" of a display finds its device.
    [[nodiscard]] std::optional<RTE::DeviceDataT<double>> getDeviceData(const QString& name) const;
    /// The first tag of this name among the global attributes.
    [[nodiscard]] std::optional<CustomImageTag> getCustomImageTag(const QString& name) const;

    /// Copies the frames too.
    [[nodiscard]] std::unique_ptr<Attributes> clone() const override;
};

/// Copies of all attributes and scales of a buffer.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT GlobalAndFrameAttributes
GetBufferAttributes(const BufferApi::I_Buffer& buffer);

/// Whether the name is a global attribute or one of any frame.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool
containsAttribute(const GlobalAndFrameAttributes& attributes, const std::string& name);

/// The text of the global attribute, else that of the first frame that has the name, else the empty text.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT QString
getAttributeValue(const GlobalAndFrameAttributes& attributes, const std::string& name);

} // namespace DataObjects
