// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/ZtPugi.h"

#include <QFile>
#include <QStringDecoder>

#include <pugixml.hpp>

namespace ZtPugi
{

namespace
{

pugi::xml_parse_result failed(pugi::xml_document& document, pugi::xml_parse_status status)
{
    document.reset();
    pugi::xml_parse_result result;
    result.status = status;
    return result;
}

} // namespace

QString attributeAsQString(const pugi::xml_node& node, const char* name)
{
    // QString::fromUtf8 would drop a first sign U+FEFF, which the value may hold.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(node.attribute(name).value());
}

pugi::xml_parse_result loadFromFile(pugi::xml_document& document, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return failed(document, pugi::status_file_not_found);
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return failed(document, pugi::status_io_error);
    }
    return document.load_buffer(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

} // namespace ZtPugi
