// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributeKeyValuePairs.h"

#include "Core/Common/FileNameOps.h"
#include "Core/DataObjects/DeviceDataFromAttributes.h"
#include "Core/DataObjects/Latin1.h"

#include <QRegularExpression>

namespace DataObjects
{

namespace
{

using Pairs = std::map<QString, QString>;

const QString attributePrefix = QStringLiteral("attr:");
const QString devicePrefix = QStringLiteral("device:");
const QString tagPrefix = QStringLiteral("tag:");

/// Tags and device data consist of attributes that mean nothing one by one.
bool isPartOfRecord(const std::string& name)
{
    return name.find("CustomImageTag") != std::string::npos || name.find("DevData") != std::string::npos;
}

void addAttributes(Pairs& pairs, const AttributesContainer& attributes)
{
    for (const auto& [name, value] : attributes) {
        if (!isPartOfRecord(name)) {
            pairs[attributePrefix + Private::fromLatin1(name)] = value->value<QString>();
        }
    }
}

QString replacementOf(const QString& key, const Pairs& pairs, bool forFileName)
{
    const auto pair = pairs.find(key);
    if (pair == pairs.end()) {
        return QStringLiteral("_");
    }
    return forFileName ? RTE::FileNameOps::MakeValidFileName(pair->second, '_', true) : pair->second;
}

} // namespace

Pairs GetKeyValuePairsFromAttributes(const GlobalAndFrameAttributes& attributes, bool withCustomImageTags,
                                     bool withDeviceData)
{
    Pairs pairs;
    addAttributes(pairs, attributes);
    for (const AttributesContainer& frame : attributes.frameAttributes) {
        addAttributes(pairs, frame);
    }
    if (withCustomImageTags) {
        for (const CustomImageTag& tag : getCustomImageTags(attributes)) {
            pairs[tagPrefix + tag.name] = tag.value;
        }
    }
    if (withDeviceData) {
        for (const auto& device : GetAllDevData(attributes)) {
            pairs[devicePrefix + device.getAlias()] = QString::number(device.getAverage(), 'g', 6);
        }
    }
    return pairs;
}

QString resolveAttributes(const QString& text, const GlobalAndFrameAttributes& attributes, bool forFileName)
{
    const Pairs pairs = GetKeyValuePairsFromAttributes(attributes, true, true);
    QString resolved = text;
    for (const QString& prefix : {attributePrefix, devicePrefix, tagPrefix}) {
        // The look-ahead finds a placeholder that begins within another.
        const QRegularExpression placeholder(QStringLiteral("(?=(<(%1.*?)>))").arg(prefix));
        for (const auto& match : placeholder.globalMatch(text)) {
            resolved.replace(match.captured(1), replacementOf(match.captured(2), pairs, forFileName));
        }
    }
    return resolved;
}

} // namespace DataObjects
