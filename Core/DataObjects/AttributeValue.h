// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Export.h"

#include <QString>
#include <QVariant>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace Storage
{
class Settings;
}

namespace DataObjects
{

namespace Private
{

template <typename T, typename... Types>
inline constexpr bool isOneOf = (std::is_same_v<T, Types> || ...);

} // namespace Private

/// The element types that a list of an attribute can have.
template <typename T>
concept AttributeListElement = Private::isOneOf<T, unsigned short, int, float, double>;

/// The types that AttributeValue::value reads.
template <typename T>
concept AttributeReadable =
    Private::isOneOf<T, signed char, unsigned char, short, unsigned short, int, unsigned int, long,
                     unsigned long, long long, unsigned long long, float, double, bool, std::string, QString,
                     std::vector<unsigned short>, std::vector<int>, std::vector<float>, std::vector<double>>;

/// The value of a named attribute: a text, a number, a list of numbers, or nothing (null).
///
/// A scalar turns into a number by way of its text, so "12.9" held as text reads as the integer 12, and a
/// `float` of 0.1 reads as the double 0.1. A text that is no number reads as 0 without an error. Lists are
/// read in their own element type; only a list of one element also reads as a number. Texts are Latin-1 and
/// numbers are written and read in the C locale.
///
/// \code
/// const AttributeValue dt(QStringLiteral("12.5"));
/// dt.value<double>();                                                // 12.5
/// dt.value<int>();                                                   // 12
/// AttributeValue(std::vector<float>{1.5F, 2.F}).toString();          // "1.5,2"
/// AttributeValue(std::vector<float>{1.5F}).value<unsigned short>();  // 1
/// \endcode
///
/// Copies are independent and share a large value until one of them changes. A value is not synchronised.
class DATAOBJECTS_DATAOBJECTS_EXPORT AttributeValue
{
public:
    /// What the value is. The numbers are persisted.
    enum Type : unsigned int
    {
        TypeNull = 0,
        TypeString = 1,
        TypeInt8 = 2,
        TypeInt16 = 3,
        TypeInt32 = 4,
        TypeInt64 = 5,
        TypeUInt8 = 6,
        TypeUInt16 = 7,
        TypeUInt32 = 8,
        TypeUInt64 = 9,
        TypeFloat = 10,
        TypeDouble = 11,
        TypeUInt16List = 12,
        TypeInt32List = 13,
        TypeFloatList = 14,
        TypeDoubleList = 15
    };

    /// \name Construction
    /// Implicit, so that a native value stands wherever an attribute's value is taken.
    /// @{
    AttributeValue() noexcept = default;
    AttributeValue(const signed char& value);
    AttributeValue(const unsigned char& value);
    AttributeValue(const short& value);
    AttributeValue(const unsigned short& value);
    AttributeValue(const int& value);
    AttributeValue(const unsigned int& value);
    AttributeValue(const long long& value);
    AttributeValue(const unsigned long long& value);
    AttributeValue(const float& value);
    AttributeValue(const double& value);
    AttributeValue(const QString& value);
    AttributeValue(const std::string& value);
    /// A text; a null pointer gives the empty text.
    AttributeValue(const char* value);
    AttributeValue(const std::vector<unsigned short>& value);
    AttributeValue(const std::vector<int>& value);
    AttributeValue(const std::vector<float>& value);
    AttributeValue(const std::vector<double>& value);

    AttributeValue(const AttributeValue& other) = default;
    /// Leaves `other` null.
    AttributeValue(AttributeValue&& other) noexcept;
    AttributeValue& operator=(const AttributeValue& other) = default;
    AttributeValue& operator=(AttributeValue&& other) noexcept;
    ~AttributeValue() = default;

    [[nodiscard]] std::unique_ptr<AttributeValue> Clone() const;
    /// @}

    /// \name Kind
    /// @{
    [[nodiscard]] Type GetType() const noexcept { return m_type; }
    [[nodiscard]] bool IsNull() const noexcept { return m_type == TypeNull; }
    /// True for a number or a text.
    [[nodiscard]] bool IsScalar() const noexcept { return m_type >= TypeString && m_type <= TypeDouble; }
    /// True for a list, and for a kind of an unknown number.
    [[nodiscard]] bool IsList() const noexcept { return m_type > TypeDouble; }
    /// True for the list of exactly this element type.
    template <AttributeListElement T>
    [[nodiscard]] bool IsList() const noexcept;
    /// True for `float`, `double` and lists of them.
    [[nodiscard]] bool isFloatingPoint() const noexcept;
    /// 1 for a scalar, the number of elements of a list, 0 for null and for a kind of an unknown number.
    [[nodiscard]] unsigned long long Count() const;
    /// @}

    /// \name Conversion
    /// @{

    /// The value as `T`.
    ///
    /// Numbers are truncated toward zero. They pass through `double`, so integers are exact up to 2^53. NaN
    /// reads as 0 where `T` is an integer.
    ///
    /// `bool` is true for anything not 0, NaN included; a text held as `std::string` counts only if it
    /// consists of zeros with a last "0" or "1".
    ///
    /// \throws RTE::InvalidArgumentError "Attribute value is null." unless `T` is a vector.
    /// \throws RTE::VerificationFailed "List is not convertible." for a number of a list that has not exactly
    ///     one element, and for `bool` of any list.
    /// \throws RTE::VerificationFailed "Not convertible" for a vector of anything but the list of exactly
    /// this
    ///     element type.
    /// \throws boost::numeric::negative_overflow, boost::numeric::positive_overflow (derived from
    ///     std::bad_cast) for a number outside the range of `T`. The largest `float` is written
    ///     as 3.4028235e+38, which is outside the range of `float`.
    template <AttributeReadable T>
    [[nodiscard]] T value() const;

    /// The text; the elements of a list joined by ",". Null gives the empty text. A text that was given as
    /// `std::string` ends at its first zero byte.
    [[nodiscard]] QString toString() const;
    /// As toString, with all bytes of a text that was given as `std::string`.
    [[nodiscard]] std::string toStdString() const;
    /// @}

    /// \name Persistence
    /// @{

    /// Writes the kind under "TypeId" and the text under "ValueId"; returns `settings`.
    Storage::Settings& SerializeTo(Storage::Settings& settings) const;
    /// Takes the kind, then the value from its text. A text that is no number of that kind leaves what was
    /// held before.
    void DeserializeFrom(const Storage::Settings& settings);
    /// @}

    /// Equal kinds with equal texts: NaN equals NaN, and 1 as `int` differs from 1 as `long long`.
    [[nodiscard]] bool operator==(const AttributeValue& other) const;

private:
    template <typename T>
    [[nodiscard]] T number() const;
    [[nodiscard]] bool truth() const;

    /// Takes the value of the present kind from a text.
    void fromString(const QString& text);

    QVariant m_value;
    Type m_type = TypeNull;
};

template <AttributeListElement T>
bool AttributeValue::IsList() const noexcept
{
    if constexpr (std::is_same_v<T, unsigned short>) {
        return m_type == TypeUInt16List;
    } else if constexpr (std::is_same_v<T, int>) {
        return m_type == TypeInt32List;
    } else if constexpr (std::is_same_v<T, float>) {
        return m_type == TypeFloatList;
    } else {
        return m_type == TypeDoubleList;
    }
}

} // namespace DataObjects
