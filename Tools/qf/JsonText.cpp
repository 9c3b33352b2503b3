// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/JsonText.h"

namespace Qf
{

QByteArray portableJson(const QJsonDocument& document, QJsonDocument::JsonFormat format)
{
    QByteArray text = document.toJson(format);
    // Of characters beyond ASCII, Qt escapes halves of pairs alone; an escape takes two bytes at least.
    for (qsizetype at = text.indexOf('\\'); at >= 0; at = text.indexOf('\\', at + 2)) {
        if (text.mid(at, 3) == "\\ud") {
            text.replace(at, 6, "\\ufffd");
        }
    }
    return text;
}

} // namespace Qf
