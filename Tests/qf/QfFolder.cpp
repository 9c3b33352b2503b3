// SPDX-License-Identifier: Apache-2.0
#include "Tests/qf/QfFolder.h"

#include "Tests/Support/Files.h"

#include "Core/Buffer/BufferApi.h"

#include <QDir>

void QfFolder::write(const QString& name, const QByteArray& bytes) const
{
    TestSupport::writeContent(path(name), bytes);
}

QByteArray QfFolder::read(const QString& name) const
{
    return TestSupport::contentOf(path(name));
}

std::string QfFolder::files() const
{
    const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    return QDir(m_folder.path()).entryList(all).join(' ').toStdString();
}

TestSupport::ProgramRun QfFolder::qf(const QString& arguments) const
{
    return TestSupport::runProgram(QF_PROGRAM, arguments.split(' ', Qt::SkipEmptyParts), m_folder.path());
}

TestSupport::ProgramRun QfFolder::succeed(const QString& arguments) const
{
    auto run = qf(arguments);
    EXPECT_EQ(run.exitCode, 0) << "qf " << arguments.toStdString() << ": " << run.err.toStdString();
    return run;
}

void QfFolder::expectRefusals(const std::vector<Case>& cases) const
{
    const std::string before = files();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.arguments);
        const auto run = qf(c.arguments);
        EXPECT_EQ(run.exitCode, c.exitCode);
        EXPECT_EQ(run.err.toStdString(), std::string(c.error) + '\n');
        EXPECT_EQ(run.out.toStdString(), "");
        EXPECT_EQ(files(), before);
    }
}

void QfFolder::store(const BufferApi::I_Buffer& buffer, const QString& name) const
{
    BufferApi::ExportBuffer(&buffer, path(name), {});
}

std::unique_ptr<BufferApi::I_Buffer> QfFolder::load(const QString& name) const
{
    return std::unique_ptr<BufferApi::I_Buffer>(BufferApi::ImportBuffer(path(name), {}));
}
