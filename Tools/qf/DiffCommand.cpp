// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/DiffCommand.h"

#include "Tools/qf/Arguments.h"
#include "Tools/qf/BufferDifference.h"
#include "Tools/qf/FrameSlice.h"
#include "Tools/qf/JsonText.h"
#include "Tools/qf/ProgressBar.h"
#include "Tools/qf/ReadAhead.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <CLI/CLI.hpp>

#include <cmath>

namespace Qf
{

namespace
{

/// As programs that compare use to tell it: 1 is a difference, so trouble is 2.
enum DiffExitCode
{
    Same = 0,
    Different = 1,
    DiffTrouble = 2
};

struct DiffOptions
{
    std::string a;
    std::string b;
    std::optional<FrameSlice> frames;
    DiffRules rules;
    unsigned int jobs = 1;
    bool brief = false;
    bool json = false;
};

QJsonObject jsonOf(const Difference& difference)
{
    QJsonObject object{{QStringLiteral("what"), difference.what},
                       {QStringLiteral("a"), difference.a},
                       {QStringLiteral("b"), difference.b}};
    if (difference.frame) {
        object.insert(QStringLiteral("frame"), static_cast<qint64>(*difference.frame));
    }
    if (!difference.component.isEmpty()) {
        object.insert(QStringLiteral("component"), difference.component);
    }
    if (difference.z) {
        object.insert(QStringLiteral("z"), static_cast<qint64>(*difference.z));
    }
    if (difference.pixels) {
        object.insert(QStringLiteral("count"), static_cast<qint64>(difference.pixels->count));
        object.insert(QStringLiteral("total"), static_cast<qint64>(difference.pixels->total));
        object.insert(QStringLiteral("largest"), difference.pixels->largest);
        object.insert(QStringLiteral("x"), static_cast<qint64>(difference.pixels->x));
        object.insert(QStringLiteral("y"), static_cast<qint64>(difference.pixels->y));
    }
    return object;
}

class FileComparison
{
public:
    FileComparison(const DiffOptions& options, Session& session)
        : m_options(options), m_session(session), m_pathA(QString::fromStdString(options.a)),
          m_pathB(QString::fromStdString(options.b))
    {
    }

    /// \returns true when nothing differs
    bool run()
    {
        m_session.workOn(m_pathA);
        const FrameInputs a({m_pathA});
        const std::vector<unsigned int> numbersA = selectedFrames(m_options.frames, a.frameCount());
        m_session.workOn(m_pathB);
        const FrameInputs b({m_pathB});
        const std::vector<unsigned int> numbersB = selectedFrames(m_options.frames, b.frameCount());
        m_session.workOn({});
        const DifferenceSink sink = [this](const Difference& difference) { report(difference); };
        compareBuffers(a.first(), b.first(), m_options.rules, sink);
        if (numbersA.size() != numbersB.size()) {
            sink({{},
                  {},
                  {},
                  QStringLiteral("frames"),
                  QString::number(numbersA.size()),
                  QString::number(numbersB.size()),
                  {}});
        }
        compareAll(a, numbersA, b, numbersB, sink);
        finish(std::min(numbersA.size(), numbersB.size()));
        return !m_isDifferent;
    }

private:
    void compareAll(const FrameInputs& a, const std::vector<unsigned int>& numbersA, const FrameInputs& b,
                    const std::vector<unsigned int>& numbersB, const DifferenceSink& sink) const
    {
        const unsigned int jobs = (m_options.jobs + 1) / 2;
        ReadAhead framesA(a, numbersA, jobs);
        ReadAhead framesB(b, numbersB, jobs);
        const std::size_t count = std::min(numbersA.size(), numbersB.size());
        ProgressBar progress(QStringLiteral("comparing"), count);
        for (std::size_t i = 0; i < count && !(m_options.brief && m_isDifferent); ++i) {
            Session::stopIfRequested();
            progress.advanceTo(i);
            compareFrames(numbersA[i], framesA.take(i), framesB.take(i), m_options.rules, sink);
        }
    }

    void report(const Difference& difference)
    {
        m_isDifferent = true;
        if (m_options.json) {
            m_differences.append(jsonOf(difference));
        } else if (!m_options.brief) {
            Session::print(printable(lineOf(difference)) + QLatin1Char('\n'));
        }
    }

    void finish(std::size_t frameCount) const
    {
        if (m_options.json) {
            Session::print(QString::fromUtf8(
                portableJson(QJsonDocument(QJsonObject{{QStringLiteral("a"), m_pathA},
                                                       {QStringLiteral("b"), m_pathB},
                                                       {QStringLiteral("same"), !m_isDifferent},
                                                       {QStringLiteral("differences"), m_differences}}))));
        } else if (m_options.brief && m_isDifferent) {
            Session::print(QStringLiteral("%1 and %2 differ\n").arg(printable(m_pathA), printable(m_pathB)));
        } else if (!m_isDifferent) {
            Session::remark(QStringLiteral("%1 and %2 agree in %3\n")
                                .arg(printable(m_pathA), printable(m_pathB),
                                     counted(frameCount, QStringLiteral("frame"))));
        }
    }

    const DiffOptions& m_options;
    Session& m_session;
    QString m_pathA;
    QString m_pathB;
    QJsonArray m_differences;
    bool m_isDifferent = false;
};

int diff(const DiffOptions& options, Session& session)
{
    bool isSame = false;
    const int code = session.attempt([&] {
        isSame = FileComparison(options, session).run();
        return Success;
    });
    if (code == Trouble) {
        return DiffTrouble;
    }
    return code == Success && !isSame ? Different : code;
}

void addTolerance(CLI::App& command, const std::string& name, std::optional<double>& value,
                  const std::string& description)
{
    const auto read = [&value](const std::string& text) {
        return readWhole(text, value.emplace()) && *value >= 0 && std::isfinite(*value)
                   ? std::string()
                   : "'" + text + "' is no distance; write a number from 0 on, such as 1e-6";
    };
    addParsed(command, name, description, read, "NUMBER");
}

} // namespace

void addDiffCommand(CLI::App& app, Session& session, Job& job)
{
    auto options = std::make_shared<DiffOptions>();
    CLI::App* command =
        app.add_subcommand("diff", "Tell what differs between two files: 0 nothing, 1 something, 2 trouble.");
    command->footer("Examples:\n"
                    "  qf diff run.qfi copy.tif\n"
                    "  qf diff --tolerance 1e-6 --ignore attributes,name before.qfv after.qfv\n"
                    "  qf diff --brief a.qfi b.qfi && echo same\n\n");
    command->add_option("A", options->a, "A file")->required()->type_name("");
    command->add_option("B", options->b, "The file that it is compared with; its format may be another")
        ->required()
        ->type_name("");
    addFrames(*command, options->frames);
    addTolerance(*command, "--tolerance", options->rules.tolerance,
                 "How far apart stored values may be (default: equal bit by bit)");
    addTolerance(*command, "--relative", options->rules.relative,
                 "The same as a fraction of the larger magnitude; both given, they add up");
    command
        ->add_option_function<std::vector<std::string>>(
            "--ignore",
            [options](const std::vector<std::string>& aspects) {
                options->rules.ignored.insert(aspects.begin(), aspects.end());
            },
            "What does not count, separated by commas; without type, values of different types are compared")
        ->delimiter(',')
        ->type_name("WHAT")
        ->check(CLI::IsMember(ignorableAspects()));
    command->add_flag("--brief", options->brief,
                      "Only whether the files differ; stops at the first difference");
    addJson(*command, options->json);
    addJobs(*command, options->jobs);
    addQuiet(*command);
    command->callback(
        [options, &session, &job] { job = [options, &session] { return diff(*options, session); }; });
}

} // namespace Qf
