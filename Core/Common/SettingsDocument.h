// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Common/Settings.h"

namespace Storage
{

/// When a document is written to its file.
enum class AutoSync
{
    OnDestruction = 0, ///< once, when the document is destroyed, if it was changed
    OnChange = 1,      ///< after each change
    Never = 2          ///< the document is only read; changes stay in memory
};

/// Where a document without a path lies.
enum class Scope
{
    Application = 0, ///< this user's, for this application (QStandardPaths::AppConfigLocation)
    User = 1,        ///< this user's, for all applications (QStandardPaths::GenericConfigLocation)
    ReadOnly = 2     ///< comes with the software (RTE::Locations::getReadOnlySettingsPath); never written
};

/// Settings in a small XML file: a root "settings" and nested elements "entry" with the attributes "key",
/// "value", "class" and "version".
///
/// The file is replaced at once and as a whole: a write that fails leaves the former one. Missing folders are
/// made. A path is made absolute when the document is constructed. Documents on one path do not know of each
/// other: the file holds the one that was written last.
class DATAOBJECTS_COMMON_EXPORT SettingsDocument : public Settings
{
public:
    /// Reads the file; without a file the document is empty.
    /// \throws RTE::FileOpenError if the file is there but cannot be opened
    /// \throws RTE::FileReadError if it cannot be read or is damaged; the message names the file and the
    /// reason
    SettingsDocument(const QString& path, AutoSync sync);
    /// The document `name` of a scope. One of Scope::ReadOnly is never written.
    SettingsDocument(Scope scope, const QString& name, AutoSync sync);
    SettingsDocument(const SettingsDocument&) = delete;
    SettingsDocument& operator=(const SettingsDocument&) = delete;
    /// Takes over the content of other settings.
    using Settings::operator=;
    /// Writes with AutoSync::OnDestruction. A failure only goes to the log: call Save to learn of it.
    ~SettingsDocument() override;

    [[nodiscard]] static bool DocumentExists(Scope scope, const QString& name);
    /// The file of a document of a scope.
    [[nodiscard]] static QString GetFilePath(Scope scope, const QString& name);
    [[nodiscard]] QString GetFilePath() const { return m_path; }

    /// Writes now, if the document was changed since it was read or written.
    /// \throws RTE::InvalidRequest if the document is only read, or nests more than 200 entries
    /// \throws RTE::FileOpenError if the file cannot be made
    /// \throws RTE::FileWriteError if it cannot be written
    void Save();

protected:
    void treeChanged() override;
    [[nodiscard]] QString treeName() const override { return m_path; }

private:
    void load();

    QString m_path;
    AutoSync m_sync;
    bool m_isLoading = false;
    bool m_isChanged = false;
};

} // namespace Storage
