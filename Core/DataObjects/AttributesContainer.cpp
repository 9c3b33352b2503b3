// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/AttributesContainer.h"

#include "Core/Common/AttributeNames.h"
#include "Core/Common/Raise.h"

#include <utility>

namespace DataObjects
{

namespace
{

AttributesContainer::Map cloned(const AttributesContainer::Map& map)
{
    AttributesContainer::Map result;
    for (const auto& [name, value] : map) {
        result.emplace_hint(result.end(), name, value->Clone());
    }
    return result;
}

} // namespace

AttributesContainer::AttributesContainer(const AttributesContainer& other)
    : Attributes(other), m_map(cloned(other.m_map))
{
}

AttributesContainer::AttributesContainer(AttributesContainer&& other) noexcept
    : m_map(std::exchange(other.m_map, {}))
{
}

AttributesContainer::AttributesContainer(const std::vector<Attribute>& attributes)
{
    for (const auto& [name, value] : attributes) {
        // A name with a star that nobody holds is a name like any other, no pattern.
        if (name.find('*') == std::string::npos || find(name) != nullptr) {
            removeGroup(name);
        }
        if (!value.IsNull()) {
            insert(name, value);
        }
    }
}

AttributesContainer::AttributesContainer(const Attributes& attributes)
    : AttributesContainer(attributes.toStdVector())
{
}

AttributesContainer& AttributesContainer::operator=(const AttributesContainer& other)
{
    if (this != &other) {
        m_map = cloned(other.m_map);
    }
    return *this;
}

AttributesContainer& AttributesContainer::operator=(AttributesContainer&& other) noexcept
{
    if (this != &other) {
        m_map = std::exchange(other.m_map, {});
    }
    return *this;
}

AttributesContainer::~AttributesContainer() = default;

void AttributesContainer::setAttribute(const Attribute& attribute)
{
    setAV(attribute.name, attribute.value);
}

AttributeValue AttributesContainer::attributeValue(const std::string& name) const
{
    if (name.empty()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Empty name.")));
    }
    const AttributeValue* value = find(name);
    return value != nullptr ? *value : AttributeValue();
}

Attribute AttributesContainer::attribute(const std::string& name) const
{
    return {name, attributeValue(name)};
}

void AttributesContainer::remove(const std::string& name)
{
    const std::lock_guard lock(m_mutex);
    removeGroup(name);
}

bool AttributesContainer::contains(const std::string& name) const
{
    return find(name) != nullptr;
}

void AttributesContainer::clear()
{
    m_map.clear();
}

std::unique_ptr<Attributes> AttributesContainer::clone() const
{
    return std::make_unique<AttributesContainer>(*this);
}

bool AttributesContainer::isEmpty() const
{
    return m_map.empty();
}

std::vector<Attribute> AttributesContainer::toStdVector() const
{
    std::vector<Attribute> attributes;
    attributes.reserve(m_map.size());
    for (const auto& [name, value] : m_map) {
        attributes.push_back({name, *value});
    }
    return attributes;
}

const AttributeValue* AttributesContainer::find(const std::string& name) const
{
    const auto found = m_map.find(name);
    return found == m_map.end() ? nullptr : found->second.get();
}

void AttributesContainer::setAV(const std::string& name, const AttributeValue& value)
{
    if (value.IsNull()) {
        // Before the lock, which is not recursive.
        remove(name);
        return;
    }
    const std::lock_guard lock(m_mutex);
    insert(name, value);
}

void AttributesContainer::insert(const std::string& name, const AttributeValue& value)
{
    const auto place = m_map.lower_bound(name);
    if (place != m_map.end() && place->first == name) {
        *place->second = value;
    } else {
        m_map.emplace_hint(place, name, value.Clone());
    }
}

void AttributesContainer::removeGroup(const std::string& name)
{
    const std::size_t star = name.find('*');
    if (star != std::string::npos) {
        removePrefix(name.substr(0, star));
        return;
    }
    removePrefix(name + '.');
    // Last, as the name may be that of the entry itself.
    m_map.erase(name);
}

void AttributesContainer::removePrefix(const std::string& prefix)
{
    auto entry = m_map.lower_bound(prefix);
    while (entry != m_map.end() && entry->first.starts_with(prefix)) {
        entry = m_map.erase(entry);
    }
}

std::optional<RTE::TimeStamp> getTimeStampFromAttributes(const AttributesContainer& attributes)
{
    const AttributeValue* timestamp = attributes.find(Attr::timestamp);
    return timestamp != nullptr
               ? std::optional(RTE::TimeStamp::FromISO8601String(timestamp->value<QString>()))
               : std::nullopt;
}

} // namespace DataObjects
