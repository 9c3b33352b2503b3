// SPDX-License-Identifier: Apache-2.0
#include "Tools/qf/HelpText.h"

#include <CLI/CLI.hpp>

namespace Qf
{

namespace
{

/// Breaks at blanks.
std::string wrapped(const std::string& text, std::size_t width)
{
    std::string result;
    std::size_t column = 0;
    std::istringstream words(text);
    for (std::string word; words >> word; column += word.size()) {
        if (column > 0) {
            const bool fits = column + 1 + word.size() <= width;
            result.append(fits ? " " : "\n");
            column = fits ? column + 1 : 0;
        }
        result.append(word);
    }
    return result;
}

class HelpFormatter : public CLI::Formatter
{
public:
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override
    {
        if (mode == CLI::AppFormatMode::Sub) {
            return make_expanded(app);
        }
        std::string text = app->get_footer() + make_description(app) + make_usage(app, name) +
                           make_positionals(app) + make_groups(app, mode) + make_subcommands(app, mode);
        return text.append(text.ends_with('\n') ? "" : "\n");
    }

    std::string make_option_desc(const CLI::Option* option) const override
    {
        const std::size_t descriptionWidth = 70;
        return wrapped(CLI::Formatter::make_option_desc(option), descriptionWidth);
    }
};

std::vector<const CLI::App*> commandsOf(const CLI::App& app)
{
    return app.get_subcommands([](const CLI::App* command) { return !command->get_name().empty(); });
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& app, bool arePositional)
{
    return app.get_options(
        [=](const CLI::Option* option) { return option->get_positional() == arePositional; });
}

/// "-f" and "--format".
std::vector<std::string> spellings(const CLI::Option& option)
{
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) {
        names.push_back(std::string("-").append(name));
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back(std::string("--").append(name));
    }
    return names;
}

bool takesValue(const CLI::Option& option)
{
    return option.get_items_expected_max() > 0;
}

/// The parser shows a fixed set of values as "NAME:{gray,viridis}".
std::vector<std::string> knownValues(const CLI::Option& option)
{
    const std::string type = option.get_type_name();
    const std::size_t open = type.find('{');
    const std::size_t close = type.find('}');
    return open == std::string::npos || close == std::string::npos
               ? std::vector<std::string>()
               : CLI::detail::split(type.substr(open + 1, close - open - 1), ',');
}

std::string valueName(const CLI::Option& option)
{
    const std::string type = option.get_type_name();
    return type.substr(0, type.find(':'));
}

/// Text for troff: its own signs, and the minus that a terminal can paste.
std::string escaped(const std::string& text)
{
    std::string result;
    for (const char sign : text) {
        const bool begins = result.empty() || result.back() == '\n';
        if (begins && (sign == '.' || sign == '\'')) {
            result.append("\\&");
        }
        result.append(sign == '\\' ? "\\e" : sign == '-' ? "\\-" : std::string(1, sign));
    }
    return result;
}

std::string manualOption(const CLI::Option& option)
{
    std::string names;
    for (const std::string& name : spellings(option)) {
        names.append(names.empty() ? "\\fB" : ", \\fB").append(escaped(name)).append("\\fR");
    }
    if (option.get_positional()) {
        names = std::string("\\fI").append(escaped(option.get_name(true))).append("\\fR");
    } else if (takesValue(option)) {
        names.append(" \\fI").append(escaped(valueName(option))).append("\\fR");
    }
    std::string text =
        std::string(".TP\n").append(names).append("\n").append(escaped(option.get_description()));
    const std::vector<std::string> values = knownValues(option);
    if (!values.empty()) {
        text.append("; one of ").append(escaped(CLI::detail::join(values, ", ")));
    }
    return text.append(option.get_required() ? " (required)\n" : "\n");
}

std::string manualOptions(const CLI::App& app)
{
    std::string text;
    for (const bool arePositional : {true, false}) {
        for (const CLI::Option* option : optionsOf(app, arePositional)) {
            text.append(manualOption(*option));
        }
    }
    return text;
}

/// The lines of the footer behind its heading.
std::string manualExamples(const CLI::App& app)
{
    std::istringstream lines(app.get_footer());
    std::string text(".nf\n");
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  ")) {
            text.append(escaped(line.substr(2))).append("\n");
        }
    }
    return text.append(".fi\n");
}

std::string manualCommand(const CLI::App& command)
{
    return std::string(".SS qf ")
        .append(escaped(command.get_name()))
        .append("\n")
        .append(escaped(command.get_description()))
        .append("\n.PP\n")
        .append(manualExamples(command))
        .append(manualOptions(command));
}

std::string allSpellings(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::Option* option : optionsOf(app, false)) {
        const std::vector<std::string> more = spellings(*option);
        names.insert(names.end(), more.begin(), more.end());
    }
    return CLI::detail::join(names, " ");
}

std::string commandNames(const CLI::App& app, const std::string& separator)
{
    std::vector<std::string> names;
    for (const CLI::App* command : commandsOf(app)) {
        names.push_back(command->get_name());
    }
    return CLI::detail::join(names, separator);
}

/// A branch of `case "$command $previous"` for each option with known values, and one for those with others,
/// where the shell offers files.
std::string completionOfValues(const CLI::App& command)
{
    std::string text;
    for (const CLI::Option* option : optionsOf(command, false)) {
        std::vector<std::string> patterns;
        for (const std::string& name : spellings(*option)) {
            patterns.push_back(
                std::string("'").append(command.get_name()).append(" ").append(name).append("'"));
        }
        if (takesValue(*option)) {
            text.append("        ")
                .append(CLI::detail::join(patterns, "|"))
                .append(") words='")
                .append(CLI::detail::join(knownValues(*option), " "))
                .append("' ;;\n");
        }
    }
    return text;
}

} // namespace

std::shared_ptr<CLI::FormatterBase> helpFormatter()
{
    return std::make_shared<HelpFormatter>();
}

std::string manualPage(const CLI::App& app)
{
    std::string text(".\\\" Made by 'qf manual'.\n.TH QF 1 \"\" \"qf " DATAOBJECTS_VERSION
                     "\" \"User Commands\"\n"
                     ".SH NAME\nqf \\- ");
    text.append(escaped(app.get_description()))
        .append("\n.SH SYNOPSIS\n.B qf\n.I COMMAND\n[\\fIOPTIONS\\fR] \\fIFILE\\fR...\n.SH EXAMPLES\n")
        .append(manualExamples(app))
        .append(".SH COMMANDS\n");
    for (const CLI::App* command : commandsOf(app)) {
        text.append(manualCommand(*command));
    }
    return text.append(".SH OPTIONS\n")
        .append(manualOptions(app))
        .append(".SH EXIT STATUS\n"
                ".TP\n0\nAll went well.\n"
                ".TP\n1\nA file or its data is at fault; for \\fBdiff\\fR, the files differ.\n"
                ".TP\n2\nThe command line makes no sense; for \\fBdiff\\fR, any trouble.\n"
                ".TP\n130\nInterrupted.\n"
                ".TP\n141\nNobody reads the results any more.\n");
}

std::string bashCompletion(const CLI::App& app)
{
    std::string values;
    std::string options;
    for (const CLI::App* command : commandsOf(app)) {
        values.append(completionOfValues(*command));
        options.append("            ")
            .append(command->get_name())
            .append(") words='")
            .append(allSpellings(*command))
            .append("' ;;\n");
    }
    return std::string("# bash completion for qf, made by 'qf completion'\n"
                       "_qf()\n"
                       "{\n"
                       "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}\n"
                       "    local command='' word words=''\n"
                       "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
                       "        case $word in ")
        .append(commandNames(app, "|"))
        .append(") command=$word; break ;; esac\n"
                "    done\n"
                "    case \"$command $previous\" in\n")
        .append(values)
        .append("        *)\n"
                "            case $command$current in\n")
        .append("            -*) words='")
        .append(allSpellings(app))
        .append("' ;;\n"
                "            *) [[ $command ]] || words='")
        .append(commandNames(app, " "))
        .append("' ;;\n"
                "            esac\n"
                "            [[ $command && $current == -* ]] && case $command in\n")
        .append(options)
        .append("            esac ;;\n"
                "    esac\n"
                "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
                "}\n"
                "complete -o default -F _qf qf\n");
}

} // namespace Qf
