// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DataObjectAttributeSink.h"

#include "Core/DataObjects/AttributeValueHeld.h"
#include "Core/DataObjects/Latin1.h"

namespace DataObjects
{

namespace
{

void copyList(RTE::I_AttributesSink& sink, const QString& name, const AttributeValue& value)
{
    Private::visitListKind(value.GetType(), [&]<typename T>(PixelTypes::Tag<T>) {
        const auto list = value.value<std::vector<T>>();
        sink.AddArray(name, list.size(), list.data());
    });
}

} // namespace

DataObjectAttributeSink::DataObjectAttributeSink(Attributes& attributes) : m_attributes(attributes) {}

DataObjectAttributeSink::~DataObjectAttributeSink() = default;

void DataObjectAttributeSink::Add(const QString& name, const QString& value)
{
    m_attributes.set(Private::toLatin1(name), value);
}

void DataObjectAttributeSink::AddArray(const QString& name, unsigned long long count, const double* data)
{
    addList(name, count, data);
}

void DataObjectAttributeSink::AddArray(const QString& name, unsigned long long count, const float* data)
{
    addList(name, count, data);
}

void DataObjectAttributeSink::AddArray(const QString& name, unsigned long long count, const int* data)
{
    addList(name, count, data);
}

void DataObjectAttributeSink::AddArray(const QString& name, unsigned long long count,
                                       const unsigned short* data)
{
    addList(name, count, data);
}

void DataObjectAttributeSink::copyTo(RTE::I_AttributesSink* attributesSink) const
{
    if (attributesSink == nullptr) {
        RTE::raise(RTE::PreconditionFailed(QStringLiteral("Precondition failed: attributesSink != nullptr")));
    }
    for (const auto& [name, value] : m_attributes.toStdVector()) {
        if (value.Count() == 0) {
            continue;
        }
        if (value.IsList()) {
            copyList(*attributesSink, Private::fromLatin1(name), value);
        } else {
            attributesSink->Add(Private::fromLatin1(name), value.toString());
        }
    }
}

template <typename T>
void DataObjectAttributeSink::addList(const QString& name, unsigned long long count, const T* data)
{
    m_attributes.set(Private::toLatin1(name), std::vector<T>(data, data + count));
}

} // namespace DataObjects
