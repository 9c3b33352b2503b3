// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Point.h"

#include "Core/Common/Settings.h"

#include <array>
#include <charconv>
#include <ostream>
#include <string_view>
#include <type_traits>

namespace Math
{

namespace
{

void write(std::ostream& stream, float value)
{
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    stream << std::string_view(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
}

/// Fractions are stored as `double`, which every T fits in.
template <typename T>
using Stored = std::conditional_t<std::is_floating_point_v<T>, double, T>;

template <typename Pair>
Storage::Settings& serialize(const Pair& pair, Storage::Settings& settings)
{
    settings.Set(QStringLiteral("x"), Stored<decltype(pair.x)>{pair.x});
    settings.Set(QStringLiteral("y"), Stored<decltype(pair.y)>{pair.y});
    return settings;
}

template <typename T>
T component(const Storage::Settings& settings, const QString& key)
{
    return static_cast<T>(settings.Get(key, Stored<T>{}));
}

} // namespace

template <typename T>
Storage::Settings& Point2T<T>::SerializeTo(Storage::Settings& settings) const
{
    return serialize(*this, settings);
}

template <typename T>
void Point2T<T>::DeserializeFrom(const Storage::Settings& settings)
{
    x = component<T>(settings, QStringLiteral("x"));
    y = component<T>(settings, QStringLiteral("y"));
}

template <typename T>
Storage::Settings& Vector2T<T>::SerializeTo(Storage::Settings& settings) const
{
    return serialize(*this, settings);
}

template <typename T>
void Vector2T<T>::DeserializeFrom(const Storage::Settings& settings)
{
    x = component<T>(settings, QStringLiteral("x"));
    y = component<T>(settings, QStringLiteral("y"));
}

#define DATAOBJECTS_SERIALIZED(Pair)                                                                         \
    template Storage::Settings& Pair::SerializeTo(Storage::Settings&) const;                                 \
    template void Pair::DeserializeFrom(const Storage::Settings&);
DATAOBJECTS_SERIALIZED(Point2T<unsigned int>)
DATAOBJECTS_SERIALIZED(Point2T<int>)
DATAOBJECTS_SERIALIZED(Point2T<float>)
DATAOBJECTS_SERIALIZED(Point2T<double>)
DATAOBJECTS_SERIALIZED(Vector2T<float>)
DATAOBJECTS_SERIALIZED(Vector2T<double>)
#undef DATAOBJECTS_SERIALIZED

std::ostream& operator<<(std::ostream& stream, const Point3T<float>& point)
{
    stream << '(';
    write(stream, point.x);
    stream << ", ";
    write(stream, point.y);
    stream << ", ";
    write(stream, point.z);
    return stream << ')';
}

} // namespace Math
