// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonDocument>

namespace Qf
{

/// UTF-8 that every reader of JSON takes: what is no character, half a surrogate pair, becomes U+FFFD.
[[nodiscard]] QByteArray portableJson(const QJsonDocument& document,
                                      QJsonDocument::JsonFormat format = QJsonDocument::Indented);

} // namespace Qf
