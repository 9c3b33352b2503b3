// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributeValue.h"

#include "Core/Common/Settings.h"
#include "Core/DataObjects/AttributeValueHeld.h"

#include <utility>

namespace DataObjects
{

namespace
{

constexpr QLatin1String typeKey("TypeId");
constexpr QLatin1String valueKey("ValueId");

template <typename T>
QVariant registered(const T& value)
{
    Private::registerHeldTypes();
    return QVariant::fromValue(value);
}

} // namespace

void Private::registerHeldTypes()
{
    [[maybe_unused]] static const bool done = [] {
        qRegisterMetaType<std::string>("std::string");
        qRegisterMetaType<std::vector<unsigned short>>();
        qRegisterMetaType<std::vector<int>>();
        qRegisterMetaType<std::vector<float>>();
        qRegisterMetaType<std::vector<double>>();
        return true;
    }();
}

AttributeValue::AttributeValue(const signed char& value) : m_value(int{value}), m_type(TypeInt8) {}
AttributeValue::AttributeValue(const unsigned char& value) : m_value(int{value}), m_type(TypeUInt8) {}
AttributeValue::AttributeValue(const short& value) : m_value(int{value}), m_type(TypeInt16) {}
AttributeValue::AttributeValue(const unsigned short& value) : m_value(int{value}), m_type(TypeUInt16) {}
AttributeValue::AttributeValue(const int& value) : m_value(value), m_type(TypeInt32) {}
AttributeValue::AttributeValue(const unsigned int& value) : m_value(value), m_type(TypeUInt32) {}
AttributeValue::AttributeValue(const long long& value) : m_value(qlonglong{value}), m_type(TypeInt64) {}
AttributeValue::AttributeValue(const unsigned long long& value)
    : m_value(qulonglong{value}), m_type(TypeUInt64)
{
}
AttributeValue::AttributeValue(const float& value) : m_value(value), m_type(TypeFloat) {}
AttributeValue::AttributeValue(const double& value) : m_value(value), m_type(TypeDouble) {}
AttributeValue::AttributeValue(const QString& value) : m_value(value), m_type(TypeString) {}
AttributeValue::AttributeValue(const std::string& value) : m_value(registered(value)), m_type(TypeString) {}
AttributeValue::AttributeValue(const char* value)
    : AttributeValue(value == nullptr ? std::string() : std::string(value))
{
}
AttributeValue::AttributeValue(const std::vector<unsigned short>& value)
    : m_value(registered(value)), m_type(TypeUInt16List)
{
}
AttributeValue::AttributeValue(const std::vector<int>& value)
    : m_value(registered(value)), m_type(TypeInt32List)
{
}
AttributeValue::AttributeValue(const std::vector<float>& value)
    : m_value(registered(value)), m_type(TypeFloatList)
{
}
AttributeValue::AttributeValue(const std::vector<double>& value)
    : m_value(registered(value)), m_type(TypeDoubleList)
{
}

AttributeValue::AttributeValue(AttributeValue&& other) noexcept
    : m_value(std::move(other.m_value)), m_type(std::exchange(other.m_type, TypeNull))
{
}

AttributeValue& AttributeValue::operator=(AttributeValue&& other) noexcept
{
    m_value = std::move(other.m_value);
    m_type = std::exchange(other.m_type, TypeNull);
    return *this;
}

std::unique_ptr<AttributeValue> AttributeValue::Clone() const
{
    return std::make_unique<AttributeValue>(*this);
}

bool AttributeValue::isFloatingPoint() const noexcept
{
    return m_type == TypeFloat || m_type == TypeDouble || m_type == TypeFloatList || m_type == TypeDoubleList;
}

unsigned long long AttributeValue::Count() const
{
    if (IsNull() || m_type > TypeDoubleList) {
        return 0;
    }
    if (IsScalar()) {
        return 1;
    }
    return Private::visitList(m_type, m_value,
                              [](const auto& list) -> unsigned long long { return list.size(); });
}

Storage::Settings& AttributeValue::SerializeTo(Storage::Settings& settings) const
{
    settings.Set(typeKey, static_cast<unsigned int>(m_type));
    settings.Set(valueKey, toString());
    return settings;
}

void AttributeValue::DeserializeFrom(const Storage::Settings& settings)
{
    const auto type = settings.Get(typeKey, static_cast<unsigned int>(TypeNull));
    const auto text = settings.Get(valueKey, QString());
    m_type = static_cast<Type>(type);
    fromString(text);
}

bool AttributeValue::operator==(const AttributeValue& other) const
{
    return m_type == other.m_type && toString() == other.toString();
}

} // namespace DataObjects
