// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Tests/Support/RunProgram.h"

#include "Core/Buffer/I_Buffer.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

/// Runs qf in a folder of its own.
class QfFolder : public testing::Test
{
protected:
    struct Case
    {
        const char* arguments;
        int exitCode;
        /// All of stderr, or a part of it.
        const char* error;
    };

    void write(const QString& name, const QByteArray& bytes) const;
    [[nodiscard]] QByteArray read(const QString& name) const;
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    /// All names in the folder, hidden ones too.
    [[nodiscard]] std::string files() const;

    /// Runs one line of arguments that are separated by spaces.
    [[nodiscard]] TestSupport::ProgramRun qf(const QString& arguments) const;
    /// The same, which must succeed.
    TestSupport::ProgramRun succeed(const QString& arguments) const;
    /// Runs each line and expects its exit code, exactly its text on stderr, nothing on stdout, and the
    /// folder as it was.
    void expectRefusals(const std::vector<Case>& cases) const;

    void store(const BufferApi::I_Buffer& buffer, const QString& name) const;
    [[nodiscard]] std::unique_ptr<BufferApi::I_Buffer> load(const QString& name) const;

private:
    QTemporaryDir m_folder;
};
