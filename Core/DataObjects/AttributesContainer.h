// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/TimeStamp.h"
#include "Core/DataObjects/Attributes.h"

#include <map>
#include <mutex>
#include <optional>

namespace DataObjects
{

/// Attributes in memory, sorted by the bytes of their names. It owns its values.
///
/// `set` and `remove` may be called from several threads at once. Everything else must not run beside a
/// change.
class DATAOBJECTS_DATAOBJECTS_EXPORT AttributesContainer : public Attributes
{
public:
    using Map = std::map<std::string, std::unique_ptr<AttributeValue>>;

    AttributesContainer() = default;
    AttributesContainer(const AttributesContainer& other);
    AttributesContainer(AttributesContainer&& other) noexcept;
    /// Sets the attributes in their order. Each first removes what stands under its name with its group:
    /// "A.B" before "A" is lost, behind it stays.
    explicit AttributesContainer(const std::vector<Attribute>& attributes);
    explicit AttributesContainer(const Attributes& attributes);
    AttributesContainer& operator=(const AttributesContainer& other);
    AttributesContainer& operator=(AttributesContainer&& other) noexcept;
    ~AttributesContainer() override;

    void setAttribute(const Attribute& attribute) override;
    [[nodiscard]] AttributeValue attributeValue(const std::string& name) const override;
    [[nodiscard]] Attribute attribute(const std::string& name) const override;
    void remove(const std::string& name) override;
    /// False for the empty name, unless it was set.
    [[nodiscard]] bool contains(const std::string& name) const override;
    void clear() override;
    [[nodiscard]] std::unique_ptr<Attributes> clone() const override;
    [[nodiscard]] bool isEmpty() const override;
    [[nodiscard]] std::vector<Attribute> toStdVector() const override;

    /// The value itself, valid until it is removed; null if the name is absent.
    [[nodiscard]] const AttributeValue* find(const std::string& name) const;

    [[nodiscard]] Map::iterator begin() noexcept { return m_map.begin(); }
    [[nodiscard]] Map::iterator end() noexcept { return m_map.end(); }
    [[nodiscard]] Map::const_iterator begin() const noexcept { return m_map.begin(); }
    [[nodiscard]] Map::const_iterator end() const noexcept { return m_map.end(); }
    [[nodiscard]] Map::const_iterator cbegin() const noexcept { return m_map.cbegin(); }
    [[nodiscard]] Map::const_iterator cend() const noexcept { return m_map.cend(); }

protected:
    void setAV(const std::string& name, const AttributeValue& value) override;

private:
    void insert(const std::string& name, const AttributeValue& value);
    void removeGroup(const std::string& name);
    void removePrefix(const std::string& prefix);

    Map m_map;
    std::mutex m_mutex;
};

/// The time stamp of a recording; empty if there is none. \throws RTE::ParseError if it is no ISO 8601 text
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT std::optional<RTE::TimeStamp>
getTimeStampFromAttributes(const AttributesContainer& attributes);

} // namespace DataObjects
