// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Export.h"

#include <QString>

#include <concepts>
#include <memory>
#include <optional>
#include <vector>

class QPointF;

namespace Storage
{

class Settings;

/// The types that a settings value is written and read as.
template <typename T>
concept SettingsValue = std::same_as<T, QString> || std::same_as<T, unsigned short> || std::same_as<T, int> ||
    std::same_as<T, unsigned int> || std::same_as<T, double> || std::same_as<T, bool>;

namespace Private
{

[[nodiscard]] inline QString toText(const QString& value)
{
    return value;
}
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT QString toText(unsigned short value);
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT QString toText(int value);
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT QString toText(unsigned int value);
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT QString toText(double value);
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT QString toText(bool value);

/// False if the text is no such value.
[[nodiscard]] inline bool fromText(const QString& text, QString& value)
{
    value = text;
    return true;
}
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT bool fromText(const QString& text, unsigned short& value);
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT bool fromText(const QString& text, int& value);
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT bool fromText(const QString& text, unsigned int& value);
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT bool fromText(const QString& text, double& value);
[[nodiscard]] DATAOBJECTS_COMMON_EXPORT bool fromText(const QString& text, bool& value);

} // namespace Private

/// Objects that are written to and read from Settings.
class DATAOBJECTS_COMMON_EXPORT I_SerializableSettings
{
public:
    virtual ~I_SerializableSettings();

    /// Writes the object into the node and returns the node.
    virtual Settings& SerializeTo(Settings& settings) const = 0;
    virtual void DeserializeFrom(const Settings& settings) = 0;

protected:
    I_SerializableSettings() = default;
    I_SerializableSettings(const I_SerializableSettings&) = default;
    I_SerializableSettings& operator=(const I_SerializableSettings&) = default;
};

/// A node of a tree of named values. A node holds a value, or children under keys, and may carry a class text
/// and a version number that tell what it describes.
///
/// A key holds one child, or a collection: several children in order, counted from 0. Keys come in the order
/// of their first use. Values are kept as text, numbers in the C locale, a `double` so that it reads back the
/// same.
///
/// Copies are deep. A child stays usable when it is removed or its tree is gone; it is then a tree of its
/// own. For one thread at a time. Texts must not hold the sign 0, which no document can store
/// (RTE::InvalidArgumentError).
class DATAOBJECTS_COMMON_EXPORT Settings
{
public:
    Settings() = default;
    Settings(const Settings& other);
    /// Takes over value, children, class and version; the node keeps its own place in its tree.
    Settings& operator=(const Settings& other);
    virtual ~Settings();

    /// \name Values under keys
    /// \{

    /// Makes `value` the only thing that stands under the key, without class and version.
    template <SettingsValue T>
    void Set(const QString& key, const T& value)
    {
        setText(key, Private::toText(value));
    }
    /// The value under the key.
    /// \throws RTE::InvalidRequest if there is none
    /// \throws RTE::ParseError if its text is no T
    template <SettingsValue T>
    [[nodiscard]] T Get(const QString& key) const
    {
        return existing(key).template GetValue<T>();
    }
    /// The value under the key, or `fallback` if there is none.
    /// \throws RTE::ParseError if its text is no T
    template <SettingsValue T>
    [[nodiscard]] T Get(const QString& key, const T& fallback) const
    {
        return HasValue(key) ? Get<T>(key) : fallback;
    }
    [[nodiscard]] bool Contains(const QString& key) const;
    /// True when a single value stands under the key.
    [[nodiscard]] bool HasValue(const QString& key) const;
    /// Removes all that stands under the key.
    void Remove(const QString& key);
    [[nodiscard]] std::vector<QString> GetKeys() const;

    /// \}
    /// \name The node's own value
    /// \{

    [[nodiscard]] bool HasValue() const noexcept { return m_value.has_value(); }
    /// Replaces value and children; class and version stay.
    template <SettingsValue T>
    void SetValue(const T& value)
    {
        setOwnText(Private::toText(value));
    }
    /// \throws RTE::InvalidRequest if the node holds no value
    /// \throws RTE::ParseError if its text is no T
    template <SettingsValue T>
    [[nodiscard]] T GetValue() const
    {
        T value{};
        if (!m_value) {
            failMissing();
        }
        if (!Private::fromText(*m_value, value)) {
            failUnreadable();
        }
        return value;
    }

    /// \}
    /// \name Child nodes and collections
    /// \{

    /// The child under the key, made if there is none. A value that this node held is dropped then.
    std::shared_ptr<Settings> GetChild(const QString& key) { return GetChild(key, 0); }
    /// The child under the key; null if there is none.
    [[nodiscard]] std::shared_ptr<const Settings> GetChild(const QString& key) const
    {
        return GetChild(key, 0);
    }
    /// The entry of a collection; the next free index makes a new one.
    /// \throws RTE::OutOfRangeError "index" beyond that
    std::shared_ptr<Settings> GetChild(const QString& key, unsigned long long index);
    /// The entry of a collection; null beyond the end.
    [[nodiscard]] std::shared_ptr<const Settings> GetChild(const QString& key,
                                                           unsigned long long index) const;
    /// The number of entries under the key, which is the index of the next one.
    [[nodiscard]] unsigned long long GetNextCollectionIndex(const QString& key) const;

    /// \}
    /// \name Class and version
    /// \{

    [[nodiscard]] QString GetClass() const { return m_class; }
    /// The class of an entry of a collection; empty beyond the end.
    [[nodiscard]] QString GetClass(const QString& key, unsigned long long index) const;
    [[nodiscard]] bool IsClass(const QString& text) const { return m_class == text; }
    void SetClass(const QString& text);
    /// 0 where none was set.
    [[nodiscard]] unsigned int GetVersion() const noexcept { return m_version; }
    void SetVersion(unsigned int version);

    /// \}

    /// Where the node stands, such as "/home/me/run.xml: Shapes/Shape[2]"; empty for a free node.
    [[nodiscard]] QString GetPath() const;
    /// Tells of something in this node that could not be used and was passed over: a warning in the log,
    /// category "storage.settings", with the path.
    void ReportProblem(const QString& text) const;

protected:
    /// Called on the root after each change in its tree.
    virtual void treeChanged() {}
    /// Names the tree in paths.
    [[nodiscard]] virtual QString treeName() const { return {}; }

private:
    struct Group
    {
        QString key;
        std::vector<std::shared_ptr<Settings>> nodes;
    };

    [[nodiscard]] const Group* find(const QString& key) const;
    [[nodiscard]] const Settings& existing(const QString& key) const;
    [[nodiscard]] QString nameOf(const Settings& child) const;
    std::vector<std::shared_ptr<Settings>>& nodesOf(const QString& key);
    std::shared_ptr<Settings> adopted(std::shared_ptr<Settings> child);
    void setText(const QString& key, const QString& text);
    void setOwnText(const QString& text);
    void clear();
    void changed();
    [[noreturn]] void failMissing() const;
    [[noreturn]] void failUnreadable() const;

    Settings* m_parent = nullptr;
    std::optional<QString> m_value;
    QString m_class;
    unsigned int m_version = 0;
    std::vector<Group> m_groups;
};

/// Writes the values "x" and "y" into the node and returns it.
DATAOBJECTS_COMMON_EXPORT Settings& SerializeTo(const QPointF& point, Settings& settings);
/// Reads what SerializeTo wrote; a value that is not there becomes 0.
DATAOBJECTS_COMMON_EXPORT void DeserializeFrom(QPointF& point, const Settings& settings);

} // namespace Storage
