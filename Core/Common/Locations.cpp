// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Locations.h"

#include <QStandardPaths>

#include <mutex>

namespace RTE::Locations
{

namespace
{

struct ReadOnlySettings
{
    std::mutex mutex;
    QString path;
};

ReadOnlySettings& readOnlySettings()
{
    static ReadOnlySettings instance;
    return instance;
}

QString standardPath()
{
    const QString folder = QStringLiteral("DataObjects/settings");
    const QString found =
        QStandardPaths::locate(QStandardPaths::GenericDataLocation, folder, QStandardPaths::LocateDirectory);
    return found.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                                 QLatin1Char('/') + folder
                           : found;
}

} // namespace

QString getReadOnlySettingsPath()
{
    ReadOnlySettings& settings = readOnlySettings();
    const std::scoped_lock lock(settings.mutex);
    return settings.path.isEmpty() ? standardPath() : settings.path;
}

void setReadOnlySettingsPath(const QString& path)
{
    ReadOnlySettings& settings = readOnlySettings();
    const std::scoped_lock lock(settings.mutex);
    settings.path = path;
}

} // namespace RTE::Locations
