// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/BufferAttributes.h"

#include "Core/Buffer/Attributes.h"
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/C_BufferAttributes.h"
#include "Core/Buffer/C_FrameAttributes.h"
#include "Core/DataObjects/AttributeValueHeld.h"

#include <algorithm>

namespace DataObjects
{

namespace
{

/// The kinds that the store knows, see BufferApi::I_AttributeBase::GetKind.
constexpr unsigned int firstKind = 1;
constexpr unsigned int lastKind = 9;

[[noreturn]] void fail(const QString& text, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    RTE::raise(RTE::Exception(text), location);
}

[[nodiscard]] bool isKnownKind(unsigned int kind) noexcept
{
    return kind >= firstKind && kind <= lastKind;
}

/// The kind of attribute that is made for a value.
BufferApi::E_AttributeKind attributeKind(AttributeValue::Type type)
{
    if (type == AttributeValue::TypeNull) {
        fail(QStringLiteral("Cannot convert to null type"));
    }
    if (type > AttributeValue::TypeDoubleList) {
        fail(QStringLiteral("Unknown AttributeValue::type"));
    }
    return type <= AttributeValue::TypeDouble ? BufferApi::AT_STRING : BufferApi::AT_PLANE;
}

/// The type of the plane that is made for a list.
BufferApi::E_DataType planeType(AttributeValue::Type type)
{
    if (attributeKind(type) == BufferApi::AT_STRING) {
        fail(QStringLiteral("Cannot convert plane to string type"));
    }
    return Private::visitListKind(type,
                                  []<typename T>(PixelTypes::Tag<T>) { return BufferApi::GetDataType<T>(); });
}

/// Calls `visitor` with the PixelTypes::Tag of the plane's elements.
///
/// \param refusal says what cannot be done, with %1 for the type, when planes of this type hold no list
template <typename Visitor>
decltype(auto) visitListPlane(BufferApi::E_DataType type, const QString& refusal, Visitor&& visitor)
{
    switch (type) {
    case BufferApi::DT_WORD:
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<unsigned short>{});
    case BufferApi::DT_INT32:
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<int>{});
    case BufferApi::DT_FLOAT:
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<float>{});
    case BufferApi::DT_DOUBLE:
        return std::forward<Visitor>(visitor)(PixelTypes::Tag<double>{});
    case BufferApi::DT_UNKNOWN:
        fail(refusal.arg(QStringLiteral("DT_UNKNOWN")));
    case BufferApi::DT_BYTE:
        fail(refusal.arg(QStringLiteral("DT_BYTE")));
    case BufferApi::DT_RGB:
        fail(refusal.arg(QStringLiteral("DT_RGB")));
    default:
        fail(QStringLiteral("Unsupported plane type"));
    }
}

/// The elements of a plane; none where its shape is no list or its memory was released.
template <typename T>
std::vector<T> listOf(const BufferApi::I_PlaneBase& plane)
{
    const auto* data = plane.GetHeight() == 1 ? static_cast<const T*>(plane.GetData()) : nullptr;
    return data != nullptr ? std::vector<T>(data, data + plane.GetWidth()) : std::vector<T>();
}

AttributeValue listValue(const BufferApi::I_PlaneBase* plane)
{
    if (plane == nullptr) {
        // The store does not tell what the elements would be.
        return std::vector<double>();
    }
    return visitListPlane(plane->GetDataType(),
                          QStringLiteral("Can't create AttributeValue object from %1 plane."),
                          [&]<typename T>(PixelTypes::Tag<T>) { return AttributeValue(listOf<T>(*plane)); });
}

AttributeValue valueOf(const BufferApi::I_AttributeBase& attribute)
{
    switch (attribute.GetKind()) {
    case BufferApi::AT_STRING:
        return dynamic_cast<const BufferApi::I_Attribute<QString>&>(attribute).GetValue();
    case BufferApi::AT_PLANE:
        return listValue(dynamic_cast<const BufferApi::I_AttributePlane&>(attribute).GetPlane());
    default:
        break;
    }
    if (!isKnownKind(attribute.GetKind())) {
        fail(QStringLiteral("Unsupported attribute type"));
    }
    return {};
}

} // namespace

BufferAttributes::BufferAttributes(BufferApi::I_Buffer& buffer) : m_buffer(&buffer) {}

BufferAttributes::BufferAttributes(BufferApi::I_Frame& frame) : m_frame(&frame) {}

BufferAttributes::BufferAttributes(const BufferAttributes& other) = default;

BufferAttributes& BufferAttributes::operator=(const BufferAttributes& other)
{
    if (this != &other) {
        clear();
        for (const Attribute& attribute : other.toStdVector()) {
            if (contains(attribute.name)) {
                remove(attribute.name);
            }
            setAttribute(attribute);
        }
    }
    m_buffer = other.m_buffer;
    m_frame = other.m_frame;
    return *this;
}

BufferAttributes::~BufferAttributes() = default;

void BufferAttributes::setAttribute(const Attribute& attribute)
{
    setAV(attribute.name, attribute.value);
}

AttributeValue BufferAttributes::attributeValue(const std::string& name) const
{
    if (name.empty()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Empty name.")));
    }
    const BufferApi::I_AttributeBase* attribute = FindAttribute(name);
    return attribute != nullptr ? valueOf(*attribute) : AttributeValue();
}

Attribute BufferAttributes::attribute(const std::string& name) const
{
    return {name, attributeValue(name)};
}

void BufferAttributes::remove(const std::string& name)
{
    if (name.empty()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Empty name")));
    }
    for (const std::string& removed : {name, name + ".*"}) {
        if (m_buffer != nullptr) {
            BufferApi::C_BufferAttributes(m_buffer).Remove(removed);
        } else {
            BufferApi::C_FrameAttributes(m_frame).Remove(removed);
        }
    }
}

bool BufferAttributes::contains(const std::string& name) const
{
    return FindAttribute(name) != nullptr;
}

void BufferAttributes::clear()
{
    if (m_buffer != nullptr) {
        m_buffer->ClearAttributes();
    } else {
        m_frame->ClearAttributes();
    }
}

std::unique_ptr<Attributes> BufferAttributes::clone() const
{
    return std::make_unique<BufferAttributes>(*this);
}

bool BufferAttributes::isEmpty() const
{
    return map().empty();
}

std::vector<Attribute> BufferAttributes::toStdVector() const
{
    std::vector<std::string> names;
    std::vector<unsigned int> kinds;
    std::vector<BufferApi::I_AttributeBase*> stored;
    BufferApi::Attributes::GetList(map(), names, kinds, stored);
    std::vector<Attribute> attributes;
    attributes.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!names[i].empty()) {
            attributes.push_back({names[i], valueOf(*stored[i])});
        }
    }
    return attributes;
}

void BufferAttributes::setAV(const std::string& name, const AttributeValue& value)
{
    if (value.IsNull()) {
        remove(name);
        return;
    }
    BufferApi::I_AttributeBase* found = FindAttribute(name);
    AssignAttribute(found != nullptr ? *found : CreateAttribute(name, value.GetType()), value);
}

void BufferAttributes::replaceAV(const std::string& name, const AttributeValue& value)
{
    // The store drops the attribute that had the name, and nothing else.
    AssignAttribute(CreateAttribute(name, value.GetType()), value);
}

const BufferApi::AttributeMap& BufferAttributes::map() const
{
    return m_buffer != nullptr ? m_buffer->GetAttributeList() : m_frame->GetAttributeList();
}

BufferApi::I_AttributeBase* BufferAttributes::FindAttribute(const std::string& name) const
{
    return m_buffer != nullptr ? m_buffer->FindAttribute(name) : m_frame->FindAttribute(name);
}

BufferApi::I_AttributeBase& BufferAttributes::CreateAttribute(const std::string& name,
                                                              AttributeValue::Type type)
{
    const BufferApi::E_AttributeKind kind = attributeKind(type);
    return m_buffer != nullptr ? *m_buffer->CreateAttribute(name, kind)
                               : *m_frame->CreateAttribute(name, kind);
}

void BufferAttributes::AssignAttribute(BufferApi::I_AttributeBase& attribute, const AttributeValue& value)
{
    switch (attribute.GetKind()) {
    case BufferApi::AT_STRING:
        if (!value.IsScalar()) {
            fail(QStringLiteral("Can't assign list attribute to AT_STRING"));
        }
        dynamic_cast<BufferApi::I_Attribute<QString>&>(attribute).SetValue(value.value<QString>());
        return;
    case BufferApi::AT_PLANE:
        if (value.IsScalar()) {
            fail(QStringLiteral("Can't assign scalar attribute to AT_PLANE"));
        }
        AssignList(dynamic_cast<BufferApi::I_AttributePlane&>(attribute), value);
        return;
    default:
        break;
    }
    fail(isKnownKind(attribute.GetKind()) ? QStringLiteral("Can't assign to unsupported attribute types")
                                          : QStringLiteral("Unsupported attribute type"));
}

void BufferAttributes::AssignList(BufferApi::I_AttributePlane& attribute, const AttributeValue& value)
{
    const BufferApi::I_PlaneBase* plane = attribute.GetPlane();
    if (plane == nullptr) {
        plane = &CreatePlane(attribute, planeType(value.GetType()), value.Count());
    }
    const auto assign = [&]<typename T>(PixelTypes::Tag<T>) {
        RTE::verify(value.IsList<T>(), "Cannot convert attribute value to plane's type.");
        RTE::verify(plane->GetHeight() == 1, "Invalid plane y-size");
        const auto list = value.value<std::vector<T>>();
        if (plane->GetWidth() != list.size() || plane->GetData() == nullptr) {
            plane = &CreatePlane(attribute, BufferApi::GetDataType<T>(), list.size());
        }
        std::copy(list.begin(), list.end(), static_cast<T*>(plane->GetData()));
    };
    visitListPlane(plane->GetDataType(), QStringLiteral("Can't assign AttributeValue object to %1 plane."),
                   assign);
}

BufferApi::I_PlaneBase& BufferAttributes::CreatePlane(BufferApi::I_AttributePlane& attribute,
                                                      BufferApi::E_DataType type, unsigned long long count)
{
    RTE::verify(count <= 0xFFFFFFFFULL, "Invalid plane x-size");
    std::unique_ptr<BufferApi::I_PlaneBase> plane(
        BufferApi::CreatePlane(type, static_cast<unsigned int>(count), 1));
    attribute.SetPlane(plane.get());
    return *plane.release();
}

} // namespace DataObjects
