// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

namespace pugi
{
class xml_document;
class xml_node;
struct xml_parse_result;
} // namespace pugi

/// pugixml with `QString` paths and values. Callers include <pugixml.hpp> themselves.
namespace ZtPugi
{

/// The value of the node's attribute; empty when there is no such attribute or node.
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT QString attributeAsQString(const pugi::xml_node& node,
                                                                   const char* name);

/// Loads the file in the encoding that it declares. A file that cannot be opened gives
/// `pugi::status_file_not_found`, one that cannot be read `pugi::status_io_error`; the document is then
/// empty.
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT pugi::xml_parse_result loadFromFile(pugi::xml_document& document,
                                                                            const QString& path);

} // namespace ZtPugi
