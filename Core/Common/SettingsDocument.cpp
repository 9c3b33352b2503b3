// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/SettingsDocument.h"

#include "Core/Common/Locations.h"
#include "Core/Common/Raise.h"
#include "Core/Common/ZtPugi.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <pugixml.hpp>

#include <string_view>

namespace Storage
{

namespace
{

constexpr const char* rootElement = "settings";
constexpr const char* entryElement = "entry";
/// Deeper nesting is damage, and would exhaust the stack; it is not written either.
constexpr int maximalDepth = 200;
constexpr const char* tooDeep = "entries are nested too deeply";

class ByteWriter : public pugi::xml_writer
{
public:
    void write(const void* data, std::size_t size) override
    {
        m_bytes.append(static_cast<const char*>(data), static_cast<qsizetype>(size));
    }
    [[nodiscard]] const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

void setAttribute(pugi::xml_node element, const char* name, const QString& value)
{
    element.append_attribute(name).set_value(value.toUtf8().constData());
}

/// False if the tree is nested too deeply.
[[nodiscard]] bool write(const Settings& node, pugi::xml_node element, int depth)
{
    if (depth > maximalDepth) {
        return false;
    }
    if (!node.GetClass().isEmpty()) {
        setAttribute(element, "class", node.GetClass());
    }
    if (node.GetVersion() != 0) {
        setAttribute(element, "version", QString::number(node.GetVersion()));
    }
    if (node.HasValue()) {
        setAttribute(element, "value", node.GetValue<QString>());
    }
    for (const QString& key : node.GetKeys()) {
        const unsigned long long count = node.GetNextCollectionIndex(key);
        for (unsigned long long i = 0; i < count; ++i) {
            pugi::xml_node entry = element.append_child(entryElement);
            setAttribute(entry, "key", key);
            if (!write(*node.GetChild(key, i), entry, depth + 1)) {
                return false;
            }
        }
    }
    return true;
}

QByteArray toXml(const SettingsDocument& settings)
{
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    setAttribute(declaration, "version", QStringLiteral("1.0"));
    setAttribute(declaration, "encoding", QStringLiteral("UTF-8"));
    if (!write(settings, document.append_child(rootElement), 0)) {
        RTE::raise(RTE::InvalidRequest(QStringLiteral("Settings document %1 could not be written: %2")
                                           .arg(settings.GetFilePath(), QString::fromLatin1(tooDeep))));
    }
    ByteWriter writer;
    document.save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
    return writer.bytes();
}

/// A disk that gets full takes a part first; only the next write tells why.
bool writeAll(QIODevice& device, const QByteArray& bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 written = device.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0) {
            return false;
        }
        done += written;
    }
    return true;
}

[[noreturn]] void failDamaged(const QString& path, const QString& reason)
{
    RTE::raise(RTE::FileReadError(QStringLiteral("Settings document %1 is damaged: %2").arg(path, reason)));
}

/// Reads one file; all that it says of damage names the file.
class Reader
{
public:
    explicit Reader(const QString& path) : m_path(path) {}

    void read(const pugi::xml_node& element, Settings& node, int depth) const
    {
        if (depth > maximalDepth) {
            failDamaged(m_path, QString::fromLatin1(tooDeep));
        }
        node.SetClass(ZtPugi::attributeAsQString(element, "class"));
        node.SetVersion(version(element));
        if (!element.attribute("value").empty()) {
            node.SetValue(ZtPugi::attributeAsQString(element, "value"));
        }
        for (const pugi::xml_node& entry : element.children(entryElement)) {
            if (entry.attribute("key").empty()) {
                failDamaged(m_path, QStringLiteral("an entry has no key"));
            }
            const QString key = ZtPugi::attributeAsQString(entry, "key");
            read(entry, *node.GetChild(key, node.GetNextCollectionIndex(key)), depth + 1);
        }
    }

private:
    [[nodiscard]] unsigned int version(const pugi::xml_node& element) const
    {
        bool ok = true;
        const pugi::xml_attribute attribute = element.attribute("version");
        const unsigned int number = attribute.empty() ? 0 : QString::fromUtf8(attribute.value()).toUInt(&ok);
        if (!ok) {
            failDamaged(m_path, QStringLiteral("a version is not a number"));
        }
        return number;
    }

    QString m_path;
};

QString folder(Scope scope)
{
    switch (scope) {
    case Scope::Application:
        return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
               QStringLiteral("/DataObjects");
    case Scope::User:
        return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
               QStringLiteral("/DataObjects/shared");
    case Scope::ReadOnly:
        break;
    }
    return RTE::Locations::getReadOnlySettingsPath();
}

} // namespace

SettingsDocument::SettingsDocument(const QString& path, AutoSync sync)
    : m_path(QFileInfo(path).absoluteFilePath()), m_sync(sync)
{
    load();
}

SettingsDocument::SettingsDocument(Scope scope, const QString& name, AutoSync sync)
    : SettingsDocument(GetFilePath(scope, name), scope == Scope::ReadOnly ? AutoSync::Never : sync)
{
}

SettingsDocument::~SettingsDocument()
{
    if (m_sync != AutoSync::OnDestruction) {
        return;
    }
    try {
        Save();
    } catch (const std::exception& failure) {
        ReportProblem(QStringLiteral("changes are lost: %1").arg(QString::fromUtf8(failure.what())));
    }
}

bool SettingsDocument::DocumentExists(Scope scope, const QString& name)
{
    return QFileInfo::exists(GetFilePath(scope, name));
}

QString SettingsDocument::GetFilePath(Scope scope, const QString& name)
{
    return QStringLiteral("%1/%2.xml").arg(folder(scope), name);
}

void SettingsDocument::Save()
{
    if (m_sync == AutoSync::Never) {
        RTE::raise(RTE::InvalidRequest(QStringLiteral("Settings document %1 is only read").arg(m_path)));
    }
    if (!m_isChanged) {
        return;
    }
    const QByteArray xml = toXml(*this);
    // A folder that cannot be made shows when the file is opened.
    static_cast<void>(QDir().mkpath(QFileInfo(m_path).absolutePath()));
    QSaveFile file(m_path);
    // What fails to leave Qt's buffer at the end, it does not tell.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        RTE::raise(RTE::FileOpenError(
            QStringLiteral("Settings document %1 could not be written: %2").arg(m_path, file.errorString())));
    }
    if (!writeAll(file, xml) || !file.commit()) {
        RTE::raise(RTE::FileWriteError(
            file, QStringLiteral("Settings document %1 could not be written").arg(m_path)));
    }
    m_isChanged = false;
}

void SettingsDocument::treeChanged()
{
    if (m_isLoading) {
        return;
    }
    m_isChanged = true;
    if (m_sync == AutoSync::OnChange) {
        Save();
    }
}

void SettingsDocument::load()
{
    if (!QFileInfo::exists(m_path)) {
        return;
    }
    pugi::xml_document document;
    const pugi::xml_parse_result result = ZtPugi::loadFromFile(document, m_path);
    if (result.status == pugi::status_file_not_found) {
        RTE::raise(
            RTE::FileOpenError(QStringLiteral("Settings document %1 could not be opened").arg(m_path)));
    }
    if (!result) {
        failDamaged(m_path, QStringLiteral("%1 (at byte %2)")
                                .arg(QString::fromUtf8(result.description()))
                                .arg(static_cast<qlonglong>(result.offset)));
    }
    const pugi::xml_node root = document.document_element();
    if (root.name() != std::string_view(rootElement)) {
        failDamaged(m_path, QStringLiteral("the root element is '%1'").arg(QString::fromUtf8(root.name())));
    }
    m_isLoading = true;
    Reader(m_path).read(root, *this, 0);
    m_isLoading = false;
}

} // namespace Storage
