// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/GlobalAndFrameAttributes.h"

#include "Core/DataObjects/BufferAttributes.h"
#include "Core/DataObjects/DeviceDataFromAttributes.h"
#include "Core/DataObjects/Latin1.h"

#include <algorithm>

namespace DataObjects
{

namespace
{

std::optional<Attribute> findAttribute(const AttributesContainer& attributes, const std::string& name)
{
    const AttributeValue* value = attributes.find(name);
    return value != nullptr ? std::optional(Attribute{name, *value}) : std::nullopt;
}

} // namespace

bool GlobalAndFrameAttributes::contains(const QString& name, AttributeScope scope) const
{
    switch (scope) {
    case AttributeScope::Global:
        return getGlobalAttribute(name).has_value();
    case AttributeScope::Frame: {
        const auto frames = getFrameAttributes(name);
        return std::any_of(frames.begin(), frames.end(), [](const auto& found) { return found.has_value(); });
    }
    case AttributeScope::DeviceData:
        return getDeviceData(name).has_value();
    case AttributeScope::CustomImageTag:
        return getCustomImageTag(name).has_value();
    case AttributeScope::None:
        break;
    }
    return false;
}

bool GlobalAndFrameAttributes::contains(const std::string& name, AttributeScope scope) const
{
    return contains(Private::fromLatin1(name), scope);
}

std::optional<Attribute> GlobalAndFrameAttributes::getGlobalAttribute(const QString& name) const
{
    return findAttribute(*this, Private::toLatin1(name));
}

std::vector<std::optional<Attribute>> GlobalAndFrameAttributes::getFrameAttributes(const QString& name) const
{
    const std::string stored = Private::toLatin1(name);
    std::vector<std::optional<Attribute>> found;
    found.reserve(frameAttributes.size());
    for (const AttributesContainer& frame : frameAttributes) {
        found.push_back(findAttribute(frame, stored));
    }
    return found;
}

std::optional<RTE::DeviceDataT<double>> GlobalAndFrameAttributes::getDeviceData(const QString& name) const
{
    const QString deviceName = name.split(QStringLiteral(" - ")).first();
    const auto devices = GetAllDevData(*this);
    const auto found = std::find_if(devices.begin(), devices.end(),
                                    [&](const auto& device) { return device.getName() == deviceName; });
    return found == devices.end() ? std::nullopt : std::optional(*found);
}

std::optional<CustomImageTag> GlobalAndFrameAttributes::getCustomImageTag(const QString& name) const
{
    const auto tags = getCustomImageTags(static_cast<const Attributes&>(*this));
    const auto value = DataObjects::getCustomImageTag(tags, name);
    return value ? std::optional(CustomImageTag{name, *value}) : std::nullopt;
}

std::unique_ptr<Attributes> GlobalAndFrameAttributes::clone() const
{
    return std::make_unique<GlobalAndFrameAttributes>(*this);
}

GlobalAndFrameAttributes GetBufferAttributes(const BufferApi::I_Buffer& buffer)
{
    GlobalAndFrameAttributes attributes;
    // The view is only read.
    static_cast<AttributesContainer&>(attributes) =
        AttributesContainer(BufferAttributes(const_cast<BufferApi::I_Buffer&>(buffer)));
    for (unsigned int i = 0; i < buffer.GetFrameCount(); ++i) {
        BufferApi::I_Frame& frame = *buffer.GetFrame(i);
        attributes.frameAttributes.emplace_back(BufferAttributes(frame));
        attributes.scalesX.push_back(frame.GetScaleX());
        attributes.scalesY.push_back(frame.GetScaleY());
        attributes.scalesZ.push_back(frame.GetScaleZ());
        attributes.scalesI.push_back(frame.GetScaleI());
    }
    return attributes;
}

bool containsAttribute(const GlobalAndFrameAttributes& attributes, const std::string& name)
{
    const auto& frames = attributes.frameAttributes;
    return attributes.contains(name) ||
           std::any_of(frames.begin(), frames.end(), [&](const auto& frame) { return frame.contains(name); });
}

QString getAttributeValue(const GlobalAndFrameAttributes& attributes, const std::string& name)
{
    const AttributeValue* value = attributes.find(name);
    for (const AttributesContainer& frame : attributes.frameAttributes) {
        value = value != nullptr ? value : frame.find(name);
    }
    return value != nullptr ? value->value<QString>() : QString();
}

} // namespace DataObjects
