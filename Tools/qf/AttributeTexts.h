// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Attribute.h"
#include "Core/Buffer/NameText.h"

#include <QString>

namespace Qf
{

/// Attributes as texts that are equal only if kind, type, sizes and each bit of the value are.
using AttributeTexts = std::map<std::string, QString>;

[[nodiscard]] AttributeTexts attributeTexts(const BufferApi::AttributeMap& attributes);

/// Calls `visit(name, text in a, text in b)` for each attribute that differs; the text is null where there is
/// none.
template <typename Visitor>
void forEachDifference(const AttributeTexts& a, const AttributeTexts& b, const Visitor& visit)
{
    const auto textIn = [](const AttributeTexts& texts, const std::string& name) {
        const auto found = texts.find(name);
        return found == texts.end() ? QString() : found->second;
    };
    for (const auto& [name, text] : a) {
        if (textIn(b, name) != text) {
            visit(BufferApi::nameToText(name), text, textIn(b, name));
        }
    }
    for (const auto& [name, text] : b) {
        if (a.count(name) == 0) {
            visit(BufferApi::nameToText(name), QString(), text);
        }
    }
}

} // namespace Qf
