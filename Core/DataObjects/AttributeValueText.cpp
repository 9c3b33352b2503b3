// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributeValueHeld.h"

#include <QLocale>
#include <QStringView>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace DataObjects
{

namespace
{

void append(std::string& text, int element)
{
    char digits[std::numeric_limits<int>::digits10 + 3];
    text.append(digits, std::to_chars(std::begin(digits), std::end(digits), element).ptr);
}

/// The element without its fraction, as a 32-bit integer holds it; the lowest one for all that it cannot
/// hold.
template <typename T>
T truncated(T element)
{
    constexpr int lowest = std::numeric_limits<int>::lowest();
    const bool holds = std::abs(element) < -static_cast<T>(lowest);
    return static_cast<T>(holds ? static_cast<int>(element) : lowest);
}

/// Number of decimals that a list writes for an element: the length of its fraction's text in general
/// notation with six significant digits, less two for "0.". The exponent of a small fraction is counted
/// along: files depend on it.
template <typename T>
int decimals(T element)
{
    char text[32];
    const double fraction = std::abs(element - truncated(element));
    const auto end =
        std::to_chars(std::begin(text), std::end(text), fraction, std::chars_format::general, 6).ptr;
    return std::max(0, static_cast<int>(end - text) - 2);
}

template <std::floating_point T>
void append(std::string& text, T element)
{
    char digits[std::numeric_limits<double>::max_exponent10 + 32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), static_cast<double>(element),
                                   std::chars_format::fixed, decimals(element));
    text.append(digits, end.ptr);
}

template <typename T>
std::string joined(const std::vector<T>& list)
{
    std::string text;
    for (const T& element : list) {
        if (&element != list.data()) {
            text += ',';
        }
        append(text, element);
    }
    return text;
}

/// The text of a list kind; empty for a kind of an unknown number.
std::string listText(AttributeValue::Type type, const QVariant& held)
{
    if (type > AttributeValue::TypeDoubleList) {
        return {};
    }
    return Private::visitList(type, held, [](const auto& list) { return joined(list); });
}

/// The number that a text holds for a scalar kind, as the variant holds it; invalid if it is none.
QVariant parsedScalar(AttributeValue::Type type, const QString& text)
{
    bool ok = false;
    QVariant parsed;
    switch (type) {
    case AttributeValue::TypeInt8:
        parsed = int{static_cast<signed char>(text.toInt(&ok))};
        break;
    case AttributeValue::TypeInt16:
        parsed = int{static_cast<short>(text.toInt(&ok))};
        break;
    case AttributeValue::TypeInt32:
        parsed = static_cast<int>(text.toLong(&ok));
        break;
    case AttributeValue::TypeInt64:
        parsed = text.toLongLong(&ok);
        break;
    case AttributeValue::TypeUInt8:
        parsed = static_cast<int>(std::min(text.toUInt(&ok), 255U));
        break;
    case AttributeValue::TypeUInt16:
        parsed = static_cast<int>(std::min(text.toUInt(&ok), 65535U));
        break;
    case AttributeValue::TypeUInt32:
        parsed = static_cast<unsigned int>(text.toULong(&ok));
        break;
    case AttributeValue::TypeUInt64:
        parsed = text.toULongLong(&ok);
        break;
    case AttributeValue::TypeFloat:
        parsed = text.toFloat(&ok);
        break;
    case AttributeValue::TypeDouble:
        parsed = text.toDouble(&ok);
        break;
    default:
        break;
    }
    return ok ? parsed : QVariant();
}

/// The element that a text holds; 0 if it is none.
template <typename T>
T parsedElement(QStringView text)
{
    bool ok = false;
    T element{};
    if constexpr (std::is_same_v<T, unsigned short>) {
        element = static_cast<unsigned short>(text.toUInt(&ok));
    } else if constexpr (std::is_same_v<T, int>) {
        element = text.toInt(&ok);
    } else if constexpr (std::is_same_v<T, float>) {
        element = text.toFloat(&ok);
    } else {
        element = text.toDouble(&ok);
    }
    return ok ? element : T{};
}

template <typename T>
std::vector<T> parsedList(const QString& text)
{
    std::vector<T> list;
    for (const QStringView part : QStringView(text).split(u',')) {
        list.push_back(parsedElement<T>(part));
    }
    return list;
}

} // namespace

double Private::decimalOf(float value)
{
    char text[32];
    const auto end = std::to_chars(std::begin(text), std::end(text), value).ptr;
    double decimal = value;
    std::from_chars(text, end, decimal);
    return decimal;
}

QString Private::scalarText(const QVariant& held)
{
    if (const auto* text = heldAs<std::string>(held)) {
        return QString::fromLatin1(text->c_str());
    }
    if (const auto* value = heldAs<float>(held)) {
        return QString::number(decimalOf(*value), 'g', QLocale::FloatingPointShortest);
    }
    return held.toString();
}

QString AttributeValue::toString() const
{
    if (IsNull()) {
        return {};
    }
    return IsScalar() ? Private::scalarText(m_value) : QString::fromLatin1(listText(m_type, m_value));
}

std::string AttributeValue::toStdString() const
{
    if (IsNull()) {
        return {};
    }
    if (IsList()) {
        return listText(m_type, m_value);
    }
    const auto* text = Private::heldAs<std::string>(m_value);
    return text != nullptr ? *text : Private::scalarText(m_value).toLatin1().toStdString();
}

void AttributeValue::fromString(const QString& text)
{
    if (m_type == TypeString) {
        m_value = text;
    } else if (IsScalar()) {
        if (const QVariant parsed = parsedScalar(m_type, text); parsed.isValid()) {
            m_value = parsed;
        }
    } else if (IsList() && m_type <= TypeDoubleList) {
        Private::registerHeldTypes();
        // setValue assigns in place where the list is not shared with a copy.
        Private::visitListKind(
            m_type, [&]<typename T>(PixelTypes::Tag<T>) { m_value.setValue(parsedList<T>(text)); });
    }
}

} // namespace DataObjects
