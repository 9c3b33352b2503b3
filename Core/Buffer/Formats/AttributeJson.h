// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Json.h"
#include "Core/Buffer/I_Attribute.h"
#include "Core/Buffer/NameText.h"

#include <functional>
#include <string_view>

namespace BufferApi::Formats
{

/// Appends an attribute as name and typed value: "time":["f64",0.001], "pos":["f64[]",[1,2]] for a plane of
/// height 1, "grid":["u8[2,3]",[…]] for one of two rows and three columns, "label":["str","é"], and
/// "none":["plane",null] for a plane attribute without a plane. \throws RTE::NotImplemented for other kinds
void writeAttribute(JsonWriter& json, const std::string& name, const I_AttributeBase& attribute);

/// All attributes as one JSON object; empty bytes for none.
[[nodiscard]] QByteArray attributesToJson(const AttributeMap& attributes);

using CreateAttribute = std::function<I_AttributeBase*(const std::string& name, E_AttributeKind kind)>;

/// Creates the attributes of such an object; empty text has none. \param source names the text in errors
void attributesFromJson(std::string_view text, const QString& source, const CreateAttribute& create);

} // namespace BufferApi::Formats
