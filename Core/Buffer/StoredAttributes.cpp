// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/StoredAttributes.h"

#include "Core/Buffer/StoredPlane.h"

namespace BufferApi
{

namespace
{

class TextAttribute final : public I_Attribute<QString>
{
public:
    explicit TextAttribute(bool& modified) noexcept : m_modified(modified) {}

    [[nodiscard]] unsigned int GetKind() const override { return AT_STRING; }
    [[nodiscard]] QString GetValue() const override { return m_value; }
    void SetValue(const QString& value) override
    {
        m_value = value;
        m_modified = true;
    }

private:
    bool& m_modified;
    QString m_value;
};

class PlaneAttribute final : public I_AttributePlane
{
public:
    explicit PlaneAttribute(bool& modified) noexcept : m_modified(modified) {}

    [[nodiscard]] unsigned int GetKind() const override { return AT_PLANE; }
    [[nodiscard]] I_PlaneBase* GetPlane() const override { return m_plane.get(); }
    void SetPlane(I_PlaneBase* plane) override
    {
        if (plane == m_plane.get()) {
            return;
        }
        if (plane && !claimPlane(*plane)) {
            RTE::raise(RTE::InvalidArgumentError(
                QStringLiteral("Plane belongs to a frame or an attribute already")));
        }
        m_plane.reset(plane);
        m_modified = true;
    }

private:
    bool& m_modified;
    std::unique_ptr<I_PlaneBase> m_plane;
};

void checkName(const std::string& name, RTE::SourceLocation location = RTE::SourceLocation::current())
{
    if (name.empty()) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Empty name")), location);
    }
}

std::unique_ptr<I_AttributeBase> makeAttribute(E_AttributeKind kind, bool& modified)
{
    switch (kind) {
    case AT_STRING:
        return std::make_unique<TextAttribute>(modified);
    case AT_PLANE:
        return std::make_unique<PlaneAttribute>(modified);
    }
    RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Unsupported attribute type")));
}

} // namespace

I_AttributeBase* StoredAttributes::find(const std::string& name) const
{
    checkName(name);
    const auto found = m_map.find(name);
    return found == m_map.end() ? nullptr : found->second.get();
}

I_AttributeBase* StoredAttributes::create(const std::string& name, E_AttributeKind kind)
{
    checkName(name);
    auto& entry = m_map[name] = makeAttribute(kind, m_modified);
    m_modified = true;
    return entry.get();
}

void StoredAttributes::remove(const std::string& name)
{
    checkName(name);
    const std::size_t before = m_map.size();
    if (name.back() == '*') {
        const std::string prefix = name.substr(0, name.size() - 1);
        auto last = m_map.lower_bound(prefix);
        while (last != m_map.end() && last->first.starts_with(prefix)) {
            last = m_map.erase(last);
        }
    } else {
        m_map.erase(name);
    }
    m_modified = m_modified || m_map.size() != before;
}

void StoredAttributes::clear()
{
    m_modified = m_modified || !m_map.empty();
    m_map.clear();
}

} // namespace BufferApi
