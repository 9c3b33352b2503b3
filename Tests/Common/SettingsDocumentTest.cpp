// SPDX-License-Identifier: Apache-2.0
#include "Core/Common/SettingsDocument.h"
#include "Core/Common/Locations.h"
#include "Tests/Support/Raises.h"

#include <QDir>
#include <QStandardPaths>

#include <csignal>
#include <sys/resource.h>

namespace
{

using Storage::AutoSync;
using Storage::SettingsDocument;
using TestSupport::raises;

QString key(const char* text)
{
    return QString::fromUtf8(text);
}

class SettingsDocumentTest : public testing::Test
{
protected:
    [[nodiscard]] QString path(const char* name = "run.xml") const { return m_folder.filePath(key(name)); }
    [[nodiscard]] static QByteArray content(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void fill(const QString& path, const QByteArray& bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

private:
    QTemporaryDir m_folder;
};

/// Lets no file of the process grow beyond some bytes, as on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

TEST_F(SettingsDocumentTest, FileHoldsTheTree)
{
    {
        SettingsDocument document(path("new/folder/run.xml"), AutoSync::OnDestruction);
        document.SetClass(key("AddOffset"));
        document.SetVersion(1);
        document.Set(key("offset"), -5);
        const auto item = document.GetChild(key("a list"), 0);
        item->SetClass(key("<\"&é\""));
        item->Set(key("text"), QStringLiteral(" tab\t line\n\r end "));
        document.GetChild(key("a list"), 1)->Set(key("empty"), QString());
        EXPECT_FALSE(QFile::exists(path("new/folder/run.xml")));
    }
    EXPECT_STREQ(content(path("new/folder/run.xml")).constData(),
                 ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<settings class=\"AddOffset\" version=\"1\">\n"
                  "  <entry key=\"offset\" value=\"-5\" />\n"
                  "  <entry key=\"a list\" class=\"&lt;&quot;&amp;é&quot;\">\n"
                  "    <entry key=\"text\" value=\" tab&#09; line&#10;&#13; end \" />\n"
                  "  </entry>\n"
                  "  <entry key=\"a list\">\n"
                  "    <entry key=\"empty\" value=\"\" />\n"
                  "  </entry>\n"
                  "</settings>\n"));

    const SettingsDocument document(path("new/folder/run.xml"), AutoSync::Never);
    EXPECT_TRUE(document.IsClass(key("AddOffset")));
    EXPECT_EQ(document.GetVersion(), 1U);
    EXPECT_EQ(document.Get<int>(key("offset")), -5);
    const auto item = document.GetChild(key("a list"), 0);
    EXPECT_EQ(item->GetClass(), key("<\"&é\""));
    EXPECT_EQ(item->Get<QString>(key("text")), QStringLiteral(" tab\t line\n\r end "));
    EXPECT_TRUE(document.GetChild(key("a list"), 1)->HasValue(key("empty")));
    EXPECT_EQ(item->GetPath(), path("new/folder/run.xml") + QStringLiteral(": a list[0]"));
}

TEST_F(SettingsDocumentTest, AutoSyncTellsWhenItIsWritten)
{
    std::shared_ptr<Storage::Settings> node;
    {
        SettingsDocument document(path(), AutoSync::OnChange);
        node = document.GetChild(key("node"));
        node->Set(key("x"), 1);
        EXPECT_EQ(SettingsDocument(path(), AutoSync::Never).GetChild(key("node"))->Get<int>(key("x")), 1);
        document.GetChild(key("node"))->SetClass(key("c"));
        EXPECT_EQ(SettingsDocument(path(), AutoSync::Never).GetClass(key("node"), 0), key("c"));

        const auto removed = document.GetChild(key("removed"));
        document.Remove(key("removed"));
        QFile::remove(path());
        removed->Set(key("x"), 1);
        EXPECT_FALSE(QFile::exists(path())) << "written for a node that is gone";
        node->Set(key("x"), 1);
    }
    const QByteArray before = content(path());
    node->Set(key("x"), 2);
    {
        SettingsDocument document(path(), AutoSync::Never);
        document.Set(key("y"), 3);
        EXPECT_TRUE(raises<RTE::InvalidRequest>(
            QStringLiteral("Settings document %1 is only read").arg(path()), [&] { document.Save(); }));
    }
    EXPECT_EQ(content(path()), before);
    {
        SettingsDocument document(path(), AutoSync::OnDestruction);
        Storage::Settings other;
        other.Set(key("z"), 4);
        document = other;
        document.Save();
        EXPECT_TRUE(content(path()).contains("key=\"z\""));
        QFile::remove(path());
    }
    EXPECT_FALSE(QFile::exists(path())) << "written again without a change";
}

TEST_F(SettingsDocumentTest, ReadingChangesNothing)
{
    const QByteArray handmade = "<settings><!-- mine --><entry key='x' value='1'/></settings>";
    fill(path(), handmade);
    for (const AutoSync sync : {AutoSync::OnDestruction, AutoSync::OnChange, AutoSync::Never}) {
        EXPECT_EQ(SettingsDocument(path(), sync).Get<int>(key("x")), 1);
        EXPECT_EQ(content(path()), handmade);
    }
}

TEST_F(SettingsDocumentTest, RelativePathIsThatOfTheConstruction)
{
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QFileInfo(path()).absolutePath()));
    {
        SettingsDocument document(key("run.xml"), AutoSync::OnDestruction);
        document.Set(key("x"), 1);
        QDir::setCurrent(before);
    }
    EXPECT_TRUE(QFile::exists(path()));
}

TEST_F(SettingsDocumentTest, FailedWriteLosesNothing)
{
    {
        SettingsDocument(path(), AutoSync::OnChange).Set(key("x"), 1);
    }
    // The longer text does not fit into a buffer of Qt's.
    for (const int length : {1000, 100'000}) {
        SCOPED_TRACE(length);
        SettingsDocument document(path(), AutoSync::OnDestruction);
        document.Set(key("text"), QString(length, QLatin1Char('a')));
        const QByteArray before = content(path());
        const FullDisk disk(500);
        EXPECT_TRUE(raises<RTE::FileWriteError>(
            QStringLiteral("Settings document %1 could not be written: File too large").arg(path()),
            [&] { document.Save(); }));
        EXPECT_EQ(content(path()), before);
        document.Remove(key("text"));
        document.Set(key("x"), length);
    }
    EXPECT_EQ(SettingsDocument(path(), AutoSync::Never).Get<int>(key("x")), 100'000);
    EXPECT_EQ(QDir(QFileInfo(path()).absolutePath()).entryList(QDir::Files), QStringList(key("run.xml")));
}

TEST_F(SettingsDocumentTest, FailedWriteAtTheEndDoesNotTerminate)
{
    fill(path("file"), "x");
    SettingsDocument document(path("file/run.xml"), AutoSync::OnDestruction);
    document.Set(key("x"), 1);
    EXPECT_THROW(document.Save(), RTE::FileOpenError);
}

TEST_F(SettingsDocumentTest, DamagedFileIsNamedWithTheReason)
{
    const auto nested = [](int depth) {
        return "<settings>" + QByteArray("<entry key=\"k\">").repeated(depth) +
               QByteArray("</entry>").repeated(depth) + "</settings>";
    };
    const std::pair<QByteArray, const char*> cases[] = {
        {"", "No document element found (at byte 0)"},
        {"<settings><entry key=\"a\"></settings>", "Start-end tags mismatch (at byte 27)"},
        {"<transformers/>", "the root element is 'transformers'"},
        {"<settings><entry value=\"1\"/></settings>", "an entry has no key"},
        {"<settings version=\"one\"/>", "a version is not a number"},
        {nested(201), "entries are nested too deeply"},
    };
    for (const auto& [bytes, reason] : cases) {
        fill(path(), bytes);
        EXPECT_TRUE(raises<RTE::FileReadError>(
            QStringLiteral("Settings document %1 is damaged: %2").arg(path(), key(reason)),
            [&] { SettingsDocument(path(), AutoSync::OnDestruction); }));
        EXPECT_EQ(content(path()), bytes);
    }
    fill(path(), nested(200));
    EXPECT_TRUE(SettingsDocument(path(), AutoSync::Never).Contains(key("k")));
    EXPECT_TRUE(raises<RTE::FileOpenError>(
        QStringLiteral("Settings document %1 could not be opened").arg(QDir::tempPath()),
        [] { SettingsDocument(QDir::tempPath(), AutoSync::Never); }));
}

TEST_F(SettingsDocumentTest, RefusesToWriteWhatItCouldNotRead)
{
    const auto chain = [](Storage::Settings& root, int depth) {
        std::shared_ptr<Storage::Settings> node = root.GetChild(key("k"));
        for (int i = 1; i < depth; ++i) {
            node = node->GetChild(key("k"));
        }
    };
    {
        SettingsDocument document(path(), AutoSync::OnDestruction);
        chain(document, 200);
    }
    const QByteArray before = content(path());
    SettingsDocument document(path(), AutoSync::OnDestruction);
    chain(document, 201);
    EXPECT_TRUE(raises<RTE::InvalidRequest>(
        QStringLiteral("Settings document %1 could not be written: entries are nested too deeply")
            .arg(path()),
        [&] { document.Save(); }));
    EXPECT_EQ(content(path()), before);
}

TEST_F(SettingsDocumentTest, OddTextsComeBack)
{
    QStringList texts{QString(), key("%1"), key("]]>"), key("&#10;"), key("-->"), key("\U0001F4F7")};
    for (const char16_t sign : u"\u007F\u0085\u2028\uFEFF\uFFFD\uFFFF") {
        texts.append(QString(QChar(sign == 0 ? u' ' : sign)));
    }
    for (char16_t sign = 1; sign < 0x20; ++sign) {
        texts.append(QString(QChar(sign)));
    }
    {
        SettingsDocument document(path("%1 \"é\".xml"), AutoSync::OnDestruction);
        for (const QString& text : texts) {
            document.Set(text, text + text);
            document.GetChild(text)->SetClass(text);
        }
    }
    const SettingsDocument document(path("%1 \"é\".xml"), AutoSync::Never);
    ASSERT_EQ(document.GetKeys(), std::vector<QString>(texts.begin(), texts.end()));
    for (const QString& text : texts) {
        EXPECT_EQ(document.Get<QString>(text), text + text);
        EXPECT_EQ(document.GetClass(text, 0), text);
    }
}

TEST_F(SettingsDocumentTest, NoTruncationIsTakenForAWholeDocument)
{
    {
        SettingsDocument document(path(), AutoSync::OnDestruction);
        document.Set(key("a"), 1);
        document.GetChild(key("b"))->Set(key("c"), QStringLiteral("é"));
    }
    const QByteArray whole = content(path()).trimmed();
    for (qsizetype length = 0; length < whole.size(); ++length) {
        fill(path(), whole.left(length));
        EXPECT_THROW(SettingsDocument(path(), AutoSync::Never), RTE::FileReadError) << length;
    }
}

TEST_F(SettingsDocumentTest, ScopesLieInTheirFolders)
{
    QStandardPaths::setTestModeEnabled(true);
    RTE::Locations::setReadOnlySettingsPath(path("."));
    const QString name = key("SettingsDocumentTest");
    for (const auto scope : {Storage::Scope::Application, Storage::Scope::User}) {
        EXPECT_FALSE(SettingsDocument::DocumentExists(scope, name));
        {
            SettingsDocument(scope, name, AutoSync::OnDestruction).Set(key("x"), 1);
        }
        EXPECT_TRUE(SettingsDocument::DocumentExists(scope, name));
        EXPECT_TRUE(QFile::remove(SettingsDocument::GetFilePath(scope, name)));
    }
    {
        SettingsDocument(Storage::Scope::ReadOnly, name, AutoSync::OnDestruction).Set(key("x"), 1);
    }
    EXPECT_FALSE(SettingsDocument::DocumentExists(Storage::Scope::ReadOnly, name));
    fill(path("SettingsDocumentTest.xml"), "<settings/>");
    EXPECT_TRUE(SettingsDocument::DocumentExists(Storage::Scope::ReadOnly, name));
    RTE::Locations::setReadOnlySettingsPath(QString());
    QStandardPaths::setTestModeEnabled(false);
}

} // namespace
