#include "tools/zetool/Completions.h"

#include "tools/zetool/HelpText.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view s_commonWords = "-h --help --version";

bool isWholeCommand(const NounRow& noun) {
    return std::ranges::any_of(noun.commands, [](const CommandRow& row) { return *row.name == '\0'; });
}

std::vector<const NounRow*> shownNouns(std::span<const NounRow> nouns) {
    std::vector<const NounRow*> shown;
    for (const NounRow& noun : nouns)
        if (!noun.hidden)
            shown.push_back(&noun);
    return shown;
}

// Text within single quotes; `quote` stands for a single quote, `special` are characters that the shell's
// completion system gives a meaning, escaped by a backslash.
std::string quoted(std::string_view text, std::string_view quote, std::string_view special = "") {
    std::string result = "'";
    for (const char c : text) {
        if (c == '\'') {
            result += quote;
            continue;
        }
        if (special.find(c) != std::string_view::npos)
            result += '\\';
        result += c;
    }
    return result + "'";
}

std::string bashQuoted(std::string_view text) {
    return quoted(text, "'\\''");
}

std::string zshQuoted(std::string_view text) {
    return quoted(text, "'\\''", ":[]\\");
}

std::string fishQuoted(std::string_view text) {
    return quoted(text, "\\'", "\\");
}

std::string optionNames(const CommandRow& command) {
    std::string names;
    for (const OptionRow& option : command.options) {
        if (option.letter)
            names += std::string{'-', option.letter, ' '};
        names += std::string("--") + option.name + " ";
    }
    return names + std::string(s_commonWords);
}

void addBashCommand(std::string& script, const NounRow& noun, const CommandRow& command) {
    const std::string words = commandWords(&noun, &command);
    script += "    " + (*command.name ? "\"" + words + "\"" : "\"" + words + " \"*") + ")\n";
    script += "        options=" + bashQuoted(optionNames(command)) + "\n";
    script += "        case $before in\n";
    for (const OptionRow& option : command.options) {
        if (option.choices.empty())
            continue;
        script += std::string("        --") + option.name +
                  ") values=" + bashQuoted(joined(option.choices, " ")) + " ;;\n";
    }
    script += "        esac\n";
    for (const ArgumentRow& argument : command.arguments)
        if (!argument.choices.empty())
            script += "        options+=" + bashQuoted(" " + joined(argument.choices, " ")) + "\n";
    script += "        ;;\n";
}

// "name:help", as _describe takes it.
std::string zshCommand(std::string_view name, std::string_view help) {
    return zshQuoted(name) + ":" + zshQuoted(help);
}

// What completes a value: its choices, or files.
std::string zshAction(std::span<const char* const> choices) {
    return choices.empty() ? "_files" : "(" + joined(choices, " ") + ")";
}

std::string zshOption(const OptionRow& option) {
    const std::string longName = std::string("--") + option.name;
    std::string names = option.many ? "'*'" : "";
    if (option.letter) {
        const std::string letter = std::string{'-', option.letter};
        if (!option.many)
            names = "'(" + letter + " " + longName + ")'";
        names += "{" + letter + "," + longName + "}";
    } else {
        names += longName;
    }
    std::string rest = zshQuoted(option.help);
    rest.insert(1, "[");
    rest.insert(rest.size() - 1, "]");
    if (option.value)
        rest.insert(rest.size() - 1, std::string(":") + option.value + ":" + zshAction(option.choices));
    return names + rest;
}

std::string zshArgument(const ArgumentRow& argument) {
    return std::string("'") + (argument.count == Count::Many ? "*" : "") + ":" + argument.name + ":" +
           zshAction(argument.choices) + "'";
}

void addZshCommand(std::string& script, const CommandRow& command, std::string_view indent) {
    script += std::string(indent) + "_arguments -s \\\n";
    for (const OptionRow& option : command.options)
        script += std::string(indent) + "    " + zshOption(option) + " \\\n";
    for (const ArgumentRow& argument : command.arguments)
        script += std::string(indent) + "    " + zshArgument(argument) + " \\\n";
    script += std::string(indent) + "    '(-h --help)'{-h,--help}'[show this help]' \\\n";
    script += std::string(indent) + "    --version'[show the version]'\n";
}

std::string fishLine(std::string_view condition, std::string_view rest, std::string_view help) {
    return "complete -c zetool -n '" + std::string(condition) + "' " + std::string(rest) + " -d " +
           fishQuoted(help) + "\n";
}

void addFishCommand(std::string& script, const NounRow& noun, const CommandRow& command) {
    std::string condition = std::string("__fish_seen_subcommand_from ") + noun.name;
    if (*command.name)
        condition += std::string("; and __fish_seen_subcommand_from ") + command.name;
    for (const OptionRow& option : command.options) {
        std::string rest = option.letter ? std::string("-s ") + option.letter + " " : "";
        rest += std::string("-l ") + option.name;
        if (option.value)
            rest += option.choices.empty() ? " -r -F" : " -x -a " + fishQuoted(joined(option.choices, " "));
        script += fishLine(condition, rest, option.help);
    }
    for (const ArgumentRow& argument : command.arguments) {
        const std::string rest =
            argument.choices.empty() ? "-F" : "-a " + fishQuoted(joined(argument.choices, " "));
        script += fishLine(condition, rest, argument.help);
    }
}

} // namespace

std::string bashCompletion(std::span<const NounRow> nouns) {
    std::string script = "# Completion of zetool for bash.\n"
                         "_zetool() {\n"
                         "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}\n"
                         "    local options='" +
                         std::string(s_commonWords) +
                         "' values='' commands=''\n"
                         "    case $COMP_CWORD in\n"
                         "    1) commands='";
    const auto shown = shownNouns(nouns);
    for (const NounRow* noun : shown)
        script += (noun == shown.front() ? "" : " ") + std::string(noun->name);
    script += "' ;;\n"
              "    2)\n"
              "        case ${COMP_WORDS[1]} in\n";
    for (const NounRow* noun : shown) {
        std::string verbs;
        for (const CommandRow& command : noun->commands)
            verbs += (verbs.empty() ? "" : " ") + std::string(command.name);
        script += std::string("        ") + noun->name + ") commands='" + verbs + "' ;;\n";
    }
    script += "        esac ;;\n"
              "    esac\n"
              "    case \"${COMP_WORDS[1]} ${COMP_WORDS[2]}\" in\n";
    for (const NounRow* noun : shown)
        for (const CommandRow& command : noun->commands)
            addBashCommand(script, *noun, command);
    script += "    esac\n"
              "    if [ -n \"$values\" ]; then\n"
              "        COMPREPLY=($(compgen -W \"$values\" -- \"$word\"))\n"
              "    elif [[ $word == -* ]]; then\n"
              "        COMPREPLY=($(compgen -W \"$options\" -- \"$word\"))\n"
              "    elif [ -n \"$commands\" ]; then\n"
              "        COMPREPLY=($(compgen -W \"$commands\" -- \"$word\"))\n"
              "    else\n"
              "        COMPREPLY=($(compgen -W \"$options\" -- \"$word\") $(compgen -f -- \"$word\"))\n"
              "    fi\n"
              "}\n"
              "complete -o filenames -F _zetool zetool\n";
    return script;
}

std::string zshCompletion(std::span<const NounRow> nouns) {
    std::string script = "#compdef zetool\n"
                         "# Completion of zetool for zsh.\n"
                         "_zetool() {\n"
                         "    local -a commands\n"
                         "    if (( CURRENT == 2 )); then\n"
                         "        commands=(\n";
    const auto shown = shownNouns(nouns);
    for (const NounRow* noun : shown)
        script += "            " + zshCommand(noun->name, noun->help) + "\n";
    script += "        )\n"
              "        _describe command commands\n"
              "        return\n"
              "    fi\n"
              "    case $words[2] in\n";
    for (const NounRow* noun : shown) {
        script += std::string("    ") + noun->name + ")\n";
        if (isWholeCommand(*noun)) {
            script += "        shift words\n        (( CURRENT -= 1 ))\n";
            addZshCommand(script, noun->commands.front(), "        ");
            script += "        ;;\n";
            continue;
        }
        script += "        if (( CURRENT == 3 )); then\n"
                  "            commands=(\n";
        for (const CommandRow& command : noun->commands)
            script += "                " + zshCommand(command.name, command.help) + "\n";
        script += "            )\n"
                  "            _describe command commands\n"
                  "            return\n"
                  "        fi\n"
                  "        case $words[3] in\n";
        for (const CommandRow& command : noun->commands) {
            script += std::string("        ") + command.name + ")\n";
            script += "            shift 2 words\n            (( CURRENT -= 2 ))\n";
            addZshCommand(script, command, "            ");
            script += "            ;;\n";
        }
        script += "        esac\n        ;;\n";
    }
    script += "    esac\n"
              "}\n"
              "_zetool \"$@\"\n";
    return script;
}

std::string fishCompletion(std::span<const NounRow> nouns) {
    std::string script = "# Completion of zetool for fish.\n"
                         "complete -c zetool -f\n"
                         "complete -c zetool -s h -l help -d 'show this help'\n"
                         "complete -c zetool -l version -d 'show the version'\n";
    for (const NounRow* noun : shownNouns(nouns)) {
        script += fishLine("__fish_use_subcommand", "-a " + std::string(noun->name), noun->help);
        std::string verbs;
        for (const CommandRow& command : noun->commands)
            verbs += " " + std::string(command.name);
        const std::string condition = std::string("__fish_seen_subcommand_from ") + noun->name +
                                      "; and not __fish_seen_subcommand_from" + verbs;
        for (const CommandRow& command : noun->commands) {
            if (*command.name)
                script += fishLine(condition, "-a " + std::string(command.name), command.help);
            addFishCommand(script, *noun, command);
        }
    }
    return script;
}
