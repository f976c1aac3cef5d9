#include "tools/zetool/HelpText.h"

#include "tools/zetool/Words.h"

namespace {

constexpr std::size_t s_width = 78;
constexpr std::size_t s_helpColumn = 28; // where the right-hand column begins

class HelpWriter {
public:
    explicit HelpWriter(bool colours) : m_colours(colours) {}

    void heading(std::string_view text) {
        m_text += '\n';
        m_text += m_colours ? "\x1b[1m" : "";
        m_text += text;
        m_text += m_colours ? "\x1b[0m" : "";
        m_text += '\n';
    }

    void line(std::string_view text) {
        m_text += text;
        m_text += '\n';
    }

    void paragraph(std::string_view text) {
        m_text += '\n';
        for (const std::string& part : wrapped(text, s_width))
            line(part);
    }

    void row(std::string_view left, std::string_view right) {
        std::string start = "  " + std::string(left);
        for (const std::string& part : wrapped(right, s_width - s_helpColumn)) {
            if (start.size() + 2 > s_helpColumn) {
                line(start);
                start.clear();
            }
            start.resize(s_helpColumn, ' ');
            line(start + part);
            start.clear();
        }
    }

    std::string take() { return std::move(m_text); }

private:
    std::string m_text;
    bool m_colours;
};

std::string withChoices(std::string_view help, std::span<const char* const> choices) {
    return std::string(help) + (choices.empty() ? "" : ": " + joined(choices, ", "));
}

void commonOptions(HelpWriter& writer) {
    writer.row("-h, --help", "show this help");
    writer.row("    --version", "show the version");
}

std::string commandHelp(const NounRow& noun, const CommandRow& command, bool colours) {
    HelpWriter writer(colours);
    writer.line("usage: zetool " + commandWords(&noun, &command) + " " + usageWords(command));
    writer.paragraph(command.text);
    if (!command.arguments.empty())
        writer.heading("arguments");
    for (const ArgumentRow& row : command.arguments)
        writer.row(row.name, withChoices(row.help, row.choices));
    writer.heading("options");
    for (const OptionRow& row : command.options)
        writer.row((row.letter ? "" : "    ") + optionWords(row), withChoices(row.help, row.choices));
    commonOptions(writer);
    writer.heading("exit status");
    writer.row("0", "fine");
    if (command.foundWrong)
        writer.row("1", command.foundWrong);
    writer.row("2", "wrong usage, or an input that can't be read");
    return writer.take();
}

std::string nounHelp(const NounRow& noun, bool colours) {
    HelpWriter writer(colours);
    writer.line("usage: zetool " + std::string(noun.name) + " COMMAND [OPTION]... [ARGUMENT]...");
    writer.paragraph(noun.help);
    writer.heading("commands");
    for (const CommandRow& command : noun.commands)
        writer.row(command.name, command.help);
    writer.heading("options");
    commonOptions(writer);
    return writer.take();
}

std::string toolHelp(std::span<const NounRow> nouns, bool colours) {
    HelpWriter writer(colours);
    writer.line("usage: zetool COMMAND... [OPTION]... [ARGUMENT]...");
    writer.paragraph("Looks into, checks and builds what the wave plugin reads and writes.");
    writer.heading("commands");
    for (const NounRow& noun : nouns) {
        if (noun.hidden)
            continue;
        for (const CommandRow& command : noun.commands)
            writer.row(commandWords(&noun, &command), command.help);
    }
    writer.heading("options");
    commonOptions(writer);
    writer.paragraph("'zetool COMMAND --help' shows a command's own options.");
    return writer.take();
}

} // namespace

std::string commandWords(const NounRow* noun, const CommandRow* command) {
    std::string words = noun ? noun->name : "";
    if (command && *command->name != '\0')
        words += std::string(" ") + command->name;
    return words;
}

std::string optionWords(const OptionRow& option) {
    std::string words;
    if (option.letter)
        words = std::string{'-', option.letter} + ", ";
    words += std::string("--") + option.name;
    if (option.value)
        words += std::string(" ") + option.value;
    return words;
}

std::string usageWords(const CommandRow& command) {
    std::string words = "[OPTION]...";
    for (const ArgumentRow& row : command.arguments) {
        const std::string name = row.name;
        words += row.count == Count::Optional ? " [" + name + "]" : " " + name;
        words += row.count == Count::Many ? "..." : "";
    }
    return words;
}

std::string helpText(std::span<const NounRow> nouns, const NounRow* noun, const CommandRow* command,
                     bool colours) {
    if (command)
        return commandHelp(*noun, *command, colours);
    return noun ? nounHelp(*noun, colours) : toolHelp(nouns, colours);
}
