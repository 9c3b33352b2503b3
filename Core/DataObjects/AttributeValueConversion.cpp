// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributeValueHeld.h"

#include <boost/lexical_cast/try_lexical_convert.hpp>
#include <boost/numeric/conversion/cast.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <system_error>

namespace DataObjects
{

namespace
{

/// ASCII comparison; `lower` is in lower case.
bool equalsIgnoringCase(std::string_view text, std::string_view lower)
{
    return std::equal(text.begin(), text.end(), lower.begin(), lower.end(), [](char a, char b) {
        return (a >= 'A' && a <= 'Z' ? static_cast<char>(a + ('a' - 'A')) : a) == b;
    });
}

/// "nan", alone or followed by anything in brackets.
bool isNan(std::string_view text)
{
    const std::string_view rest = text.substr(std::min<std::size_t>(3, text.size()));
    const bool bracketed = rest.starts_with('(') && rest.ends_with(')');
    return equalsIgnoringCase(text.substr(0, 3), "nan") && (rest.empty() || bracketed);
}

bool isInfinity(std::string_view text)
{
    return equalsIgnoringCase(text, "inf") || equalsIgnoringCase(text, "infinity");
}

/// The number that the whole text holds, as boost::lexical_cast reads it, without the allocation and the
/// locale of its stream; 0 if the text holds none.
double parsedNumber(std::string_view text)
{
    const bool hasSign = text.starts_with('+') || text.starts_with('-');
    const double sign = text.starts_with('-') ? -1.0 : 1.0;
    const std::string_view magnitude = text.substr(hasSign ? 1 : 0);
    if (isNan(magnitude)) {
        return std::copysign(std::numeric_limits<double>::quiet_NaN(), sign);
    }
    if (isInfinity(magnitude)) {
        return sign * std::numeric_limits<double>::infinity();
    }
    // from_chars takes a second sign and "inf" of its own.
    const bool startsNumber =
        !magnitude.empty() && (magnitude[0] == '.' || (magnitude[0] >= '0' && magnitude[0] <= '9'));
    if (!startsNumber) {
        return 0.0;
    }
    double number = 0.0;
    const char* end = magnitude.data() + magnitude.size();
    const auto [parsedEnd, error] = std::from_chars(magnitude.data(), end, number);
    if (error == std::errc::result_out_of_range) {
        // Too large is no number, too small is a zero with its sign; from_chars does not tell which.
        const bool isNumber = boost::conversion::try_lexical_convert(text, number);
        return isNumber ? number : 0.0;
    }
    return error == std::errc() && parsedEnd == end ? sign * number : 0.0;
}

/// The Latin-1 bytes of a text up to its first zero byte, read as a number.
double parsedNumber(const QString& text)
{
    char bytes[64];
    if (text.size() > static_cast<qsizetype>(sizeof bytes)) {
        return parsedNumber(std::string_view(text.toLatin1().constData()));
    }
    const auto end = std::find(text.begin(), text.end(), QChar(u'\0'));
    std::transform(text.begin(), end, bytes, [](QChar c) { return c.unicode() > 0xFF ? '?' : c.toLatin1(); });
    return parsedNumber(std::string_view(bytes, static_cast<std::size_t>(end - text.begin())));
}

/// A number that came out of its own text, which has neither the sign of zero nor that of NaN.
double withoutSignOfNothing(double value)
{
    return std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value + 0.0;
}

/// What the text of a scalar reads as. Numbers skip the text where it makes no difference.
double throughText(const QVariant& held)
{
    switch (held.typeId()) {
    case QMetaType::Int:
        return *Private::heldAs<int>(held);
    case QMetaType::UInt:
        return *Private::heldAs<unsigned int>(held);
    case QMetaType::LongLong:
        return static_cast<double>(*Private::heldAs<qlonglong>(held));
    case QMetaType::ULongLong:
        return static_cast<double>(*Private::heldAs<qulonglong>(held));
    case QMetaType::Float:
        return withoutSignOfNothing(Private::decimalOf(*Private::heldAs<float>(held)));
    case QMetaType::Double:
        return withoutSignOfNothing(*Private::heldAs<double>(held));
    case QMetaType::QString:
        return parsedNumber(*Private::heldAs<QString>(held));
    default:
        break;
    }
    const auto* text = Private::heldAs<std::string>(held);
    return text != nullptr ? parsedNumber(std::string_view(*text)) : parsedNumber(held.toString());
}

/// Truncates toward zero; overflow leaves as the exception of numeric_cast. NaN has no integer: it reads as
/// 0.
template <typename T, typename S>
T narrowed(S value)
{
    if constexpr (std::is_integral_v<T> && std::is_floating_point_v<S>) {
        if (std::isnan(value)) {
            return T(0);
        }
    }
    return boost::numeric_cast<T>(value);
}

} // namespace

template <typename T>
T AttributeValue::number() const
{
    if (IsScalar()) {
        return narrowed<T>(throughText(m_value));
    }
    RTE::verify(Count() == 1, "List is not convertible.");
    return Private::visitList(m_type, m_value, [](const auto& list) { return narrowed<T>(list.front()); });
}

bool AttributeValue::truth() const
{
    RTE::verify(IsScalar(), "List is not convertible.");
    if (!m_value.canConvert<bool>()) {
        bool isTrue = false;
        // The result has to be asked: a text such as "x1" fails and leaves true behind.
        return boost::conversion::try_lexical_convert(toStdString(), isTrue) && isTrue;
    }
    return m_value.toInt() != 0 || m_value.toFloat() != 0.0F;
}

template <AttributeReadable T>
T AttributeValue::value() const
{
    constexpr bool isScalar = std::is_arithmetic_v<T> || Private::isOneOf<T, QString, std::string>;
    if (isScalar && IsNull()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Attribute value is null.")));
    }
    if constexpr (std::is_same_v<T, QString>) {
        return toString();
    } else if constexpr (std::is_same_v<T, std::string>) {
        return toStdString();
    } else if constexpr (std::is_same_v<T, bool>) {
        return truth();
    } else if constexpr (std::is_arithmetic_v<T>) {
        return number<T>();
    } else {
        RTE::verify(IsList<typename T::value_type>(), "Not convertible");
        return m_value.value<T>();
    }
}

template signed char AttributeValue::value() const;
template unsigned char AttributeValue::value() const;
template short AttributeValue::value() const;
template unsigned short AttributeValue::value() const;
template int AttributeValue::value() const;
template unsigned int AttributeValue::value() const;
template long AttributeValue::value() const;
template unsigned long AttributeValue::value() const;
template long long AttributeValue::value() const;
template unsigned long long AttributeValue::value() const;
template float AttributeValue::value() const;
template double AttributeValue::value() const;
template bool AttributeValue::value() const;
template std::string AttributeValue::value() const;
template QString AttributeValue::value() const;
template std::vector<unsigned short> AttributeValue::value() const;
template std::vector<int> AttributeValue::value() const;
template std::vector<float> AttributeValue::value() const;
template std::vector<double> AttributeValue::value() const;

} // namespace DataObjects
