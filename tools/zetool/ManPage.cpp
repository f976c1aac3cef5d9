#include "tools/zetool/ManPage.h"

#include "tools/zetool/HelpText.h"
#include "tools/zetool/Words.h"

namespace {

// A fixed date: equal sources make equal pages.
constexpr const char* s_date = "2026-11-21";

// Text as roff takes it for what it is.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else
            result += c;
    }
    if (!result.empty() && (result.front() == '.' || result.front() == '\''))
        result.insert(0, "\\&");
    return result;
}

void addText(std::string& page, std::string_view text) {
    for (const std::string& line : wrapped(text, 72))
        page += escaped(line) + "\n";
}

void addTagged(std::string& page, std::string_view tag, std::string_view text) {
    page += ".TP\n.B " + escaped(tag) + "\n";
    addText(page, text);
}

void addCommand(std::string& page, const NounRow& noun, const CommandRow& command) {
    page += ".SS \"zetool " + escaped(commandWords(&noun, &command)) + " " + escaped(usageWords(command)) +
            "\"\n";
    addText(page, command.text);
    for (const ArgumentRow& row : command.arguments)
        addTagged(page, row.name,
                  row.help + (row.choices.empty() ? std::string() : ": " + joined(row.choices, ", ")));
    for (const OptionRow& row : command.options)
        addTagged(page, optionWords(row),
                  row.help + (row.choices.empty() ? std::string() : ": " + joined(row.choices, ", ")));
    if (command.foundWrong)
        addTagged(page, "exit status 1", command.foundWrong);
}

void addExamples(std::string& page, const CommandRow& command) {
    for (const ExampleRow& row : command.examples)
        addTagged(page, row.line, row.help);
}

} // namespace

std::string manPage(std::span<const NounRow> nouns) {
    std::string page = std::string(".TH ZETOOL 1 ") + s_date + " \"zetool " ZELM_VERSION "\"\n";
    page += ".SH NAME\nzetool \\- look into, check and build what the wave plugin reads and writes\n";
    page += ".SH SYNOPSIS\n.B zetool\n.I COMMAND\\|.\\|.\\|.\\&\n.RI [ OPTION ]\\|.\\|.\\|.\\&\n"
            ".RI [ ARGUMENT ]\\|.\\|.\\|.\\&\n";
    page += ".SH DESCRIPTION\n";
    addText(page,
            "A command is a noun and a verb. A file named - is standard input, or standard output behind "
            "-o. The word -- ends the options. Nothing is overwritten without --force. Messages go to "
            "standard error, behind the name of the file and, where there is one, the line. With --json a "
            "command writes one JSON object in ASCII that begins with its type and version.");
    page += ".SH COMMANDS\n";
    for (const NounRow& noun : nouns)
        if (!noun.hidden)
            for (const CommandRow& command : noun.commands)
                addCommand(page, noun, command);
    page += ".SH OPTIONS\n";
    addTagged(page, "-h, --help", "show the help of this level and stop");
    addTagged(page, "--version", "show the version and stop");
    page += ".SH ENVIRONMENT\n";
    addTagged(page, "NO_COLOR", "when it is set and not empty, no colours and no progress on a terminal");
    page += ".SH EXIT STATUS\n";
    addTagged(page, "0", "fine");
    addTagged(page, "1", "something was found wrong in the input");
    addTagged(page, "2", "wrong usage, or an input that can't be read");
    page += ".SH EXAMPLES\n";
    for (const NounRow& noun : nouns)
        if (!noun.hidden)
            for (const CommandRow& command : noun.commands)
                addExamples(page, command);
    return page;
}
