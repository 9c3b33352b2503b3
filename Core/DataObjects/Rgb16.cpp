// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/Rgb16.h"

#include "Core/Common/Settings.h"

#include <type_traits>

namespace DataObjects
{

static_assert(std::is_trivial_v<Rgb16> && sizeof(Rgb16) == 6, "Rows of pixels are read as rows of words.");

Storage::Settings& Rgb16::SerializeTo(Storage::Settings& settings) const
{
    settings.SetClass(QStringLiteral("Rgb16"));
    settings.SetVersion(1);
    settings.Set(QStringLiteral("red"), red);
    settings.Set(QStringLiteral("green"), green);
    settings.Set(QStringLiteral("blue"), blue);
    return settings;
}

void Rgb16::DeserializeFrom(const Storage::Settings& settings)
{
    constexpr unsigned short absent = 0;
    *this = Rgb16(settings.Get(QStringLiteral("red"), absent), settings.Get(QStringLiteral("green"), absent),
                  settings.Get(QStringLiteral("blue"), absent));
}

} // namespace DataObjects
