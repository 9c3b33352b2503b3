// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/Settings.h"

#include "Core/Common/Raise.h"

#include <QLoggingCategory>
#include <QPointF>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Storage
{

namespace
{

Q_LOGGING_CATEGORY(settingsLog, "storage.settings")

const QString& storable(const QString& text)
{
    if (text.contains(QChar(u'\0'))) {
        RTE::raise(RTE::InvalidArgumentError(QStringLiteral("Settings text holds the sign 0")));
    }
    return text;
}

} // namespace

namespace Private
{

QString toText(unsigned short value)
{
    return QString::number(value);
}

QString toText(int value)
{
    return QString::number(value);
}

QString toText(unsigned int value)
{
    return QString::number(value);
}

QString toText(double value)
{
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    return std::isnan(value) ? QStringLiteral("nan")
                             : QString::fromLatin1(text.data(), result.ptr - text.data());
}

QString toText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

bool fromText(const QString& text, unsigned short& value)
{
    bool ok = false;
    value = text.toUShort(&ok);
    return ok;
}

bool fromText(const QString& text, int& value)
{
    bool ok = false;
    value = text.toInt(&ok);
    return ok;
}

bool fromText(const QString& text, unsigned int& value)
{
    bool ok = false;
    value = text.toUInt(&ok);
    return ok;
}

bool fromText(const QString& text, double& value)
{
    bool ok = false;
    value = text.toDouble(&ok);
    return ok;
}

bool fromText(const QString& text, bool& value)
{
    value = text == QStringLiteral("true") || text == QStringLiteral("1");
    return value || text == QStringLiteral("false") || text == QStringLiteral("0");
}

} // namespace Private

I_SerializableSettings::~I_SerializableSettings() = default;

Settings::Settings(const Settings& other)
    : m_value(other.m_value), m_class(other.m_class), m_version(other.m_version)
{
    m_groups.reserve(other.m_groups.size());
    for (const Group& group : other.m_groups) {
        auto& nodes = m_groups.emplace_back(Group{group.key, {}}).nodes;
        for (const auto& node : group.nodes) {
            nodes.push_back(adopted(std::make_shared<Settings>(*node)));
        }
    }
}

Settings& Settings::operator=(const Settings& other)
{
    // Copied first: the other may be this node, its parent or its child.
    Settings copy(other);
    clear();
    std::swap(m_value, copy.m_value);
    std::swap(m_groups, copy.m_groups);
    m_class = copy.m_class;
    m_version = copy.m_version;
    for (const Group& group : m_groups) {
        for (const auto& node : group.nodes) {
            node->m_parent = this;
        }
    }
    changed();
    return *this;
}

Settings::~Settings()
{
    clear();
}

bool Settings::Contains(const QString& key) const
{
    return find(key) != nullptr;
}

bool Settings::HasValue(const QString& key) const
{
    const Group* group = find(key);
    return group != nullptr && group->nodes.size() == 1 && group->nodes.front()->HasValue();
}

void Settings::Remove(const QString& key)
{
    const auto group =
        std::find_if(m_groups.begin(), m_groups.end(), [&](const Group& g) { return g.key == key; });
    if (group == m_groups.end()) {
        return;
    }
    for (const auto& node : group->nodes) {
        node->m_parent = nullptr;
    }
    m_groups.erase(group);
    changed();
}

std::vector<QString> Settings::GetKeys() const
{
    std::vector<QString> keys;
    keys.reserve(m_groups.size());
    for (const Group& group : m_groups) {
        keys.push_back(group.key);
    }
    return keys;
}

std::shared_ptr<Settings> Settings::GetChild(const QString& key, unsigned long long index)
{
    const unsigned long long count = GetNextCollectionIndex(key);
    RTE::verifyIndex(index, count + 1, "index");
    if (index < count) {
        return nodesOf(key)[index];
    }
    m_value.reset();
    const auto child = adopted(std::make_shared<Settings>());
    nodesOf(storable(key)).push_back(child);
    changed();
    return child;
}

std::shared_ptr<const Settings> Settings::GetChild(const QString& key, unsigned long long index) const
{
    const Group* group = find(key);
    return group != nullptr && index < group->nodes.size() ? group->nodes[index] : nullptr;
}

unsigned long long Settings::GetNextCollectionIndex(const QString& key) const
{
    const Group* group = find(key);
    return group == nullptr ? 0 : group->nodes.size();
}

QString Settings::GetClass(const QString& key, unsigned long long index) const
{
    const auto child = GetChild(key, index);
    return child ? child->GetClass() : QString();
}

void Settings::SetClass(const QString& text)
{
    m_class = storable(text);
    changed();
}

void Settings::SetVersion(unsigned int version)
{
    m_version = version;
    changed();
}

QString Settings::GetPath() const
{
    if (m_parent == nullptr) {
        return treeName();
    }
    const QString above = m_parent->GetPath();
    const bool isTop = m_parent->m_parent == nullptr;
    const QString separator = above.isEmpty() ? QString()
                              : isTop         ? QStringLiteral(": ")
                                              : QStringLiteral("/");
    return above + separator + m_parent->nameOf(*this);
}

void Settings::ReportProblem(const QString& text) const
{
    const QString path = GetPath();
    qCWarning(settingsLog).noquote() << (path.isEmpty() ? text : QStringLiteral("%1: %2").arg(path, text));
}

const Settings::Group* Settings::find(const QString& key) const
{
    const auto group =
        std::find_if(m_groups.begin(), m_groups.end(), [&](const Group& g) { return g.key == key; });
    return group == m_groups.end() ? nullptr : &*group;
}

const Settings& Settings::existing(const QString& key) const
{
    if (!HasValue(key)) {
        RTE::raise(RTE::InvalidRequest(QStringLiteral("No settings value under the key '%1'").arg(key)));
    }
    return *find(key)->nodes.front();
}

QString Settings::nameOf(const Settings& child) const
{
    for (const Group& group : m_groups) {
        for (std::size_t i = 0; i < group.nodes.size(); ++i) {
            if (group.nodes[i].get() == &child) {
                return group.nodes.size() == 1 ? group.key
                                               : QStringLiteral("%1[%2]").arg(group.key, QString::number(i));
            }
        }
    }
    return {};
}

std::vector<std::shared_ptr<Settings>>& Settings::nodesOf(const QString& key)
{
    for (Group& group : m_groups) {
        if (group.key == key) {
            return group.nodes;
        }
    }
    return m_groups.emplace_back(Group{key, {}}).nodes;
}

std::shared_ptr<Settings> Settings::adopted(std::shared_ptr<Settings> child)
{
    child->m_parent = this;
    return child;
}

void Settings::setText(const QString& key, const QString& text)
{
    static_cast<void>(storable(text));
    auto& nodes = nodesOf(storable(key));
    m_value.reset();
    if (nodes.empty()) {
        nodes.push_back(adopted(std::make_shared<Settings>()));
    }
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        nodes[i]->m_parent = nullptr;
    }
    nodes.resize(1);
    nodes.front()->m_class.clear();
    nodes.front()->m_version = 0;
    nodes.front()->setOwnText(text);
}

void Settings::setOwnText(const QString& text)
{
    const QString value = storable(text);
    clear();
    m_value = value;
    changed();
}

void Settings::clear()
{
    m_value.reset();
    for (const Group& group : m_groups) {
        for (const auto& node : group.nodes) {
            node->m_parent = nullptr;
        }
    }
    m_groups.clear();
}

void Settings::changed()
{
    Settings* root = this;
    while (root->m_parent != nullptr) {
        root = root->m_parent;
    }
    root->treeChanged();
}

void Settings::failMissing() const
{
    RTE::raise(RTE::InvalidRequest(QStringLiteral("Settings node holds no value")));
}

void Settings::failUnreadable() const
{
    const QString name = m_parent == nullptr ? QString() : m_parent->nameOf(*this);
    RTE::raise(RTE::ParseError(
        QStringLiteral("Settings value '%1' under the key '%2' has another type").arg(*m_value, name)));
}

Settings& SerializeTo(const QPointF& point, Settings& settings)
{
    settings.Set(QStringLiteral("x"), point.x());
    settings.Set(QStringLiteral("y"), point.y());
    return settings;
}

void DeserializeFrom(QPointF& point, const Settings& settings)
{
    point = QPointF(settings.Get(QStringLiteral("x"), 0.0), settings.Get(QStringLiteral("y"), 0.0));
}

} // namespace Storage
