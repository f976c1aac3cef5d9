#include "tools/zetool/config/ConfigCommands.h"

#include "tools/zetool/config/ConfigCheck.h"
#include "tools/zetool/config/ConfigDocuments.h"
#include "tools/zetool/config/ConfigGet.h"

namespace {

constexpr OptionRow s_documentOptions[] = {s_outputOption, s_forceOption};

constexpr ExampleRow s_defaultExamples[] = {
    {"zetool config default -o new.xml", "Writes the smallest valid system to new.xml, to begin with."},
};

constexpr ArgumentRow s_completeArguments[] = {
    {"FILE", "a configuration, or - for standard input; without it, all that there is", Count::Optional},
};
constexpr ExampleRow s_completeExamples[] = {
    {"zetool config complete system.xml", "Shows system.xml with every default spelled out."},
};

constexpr ExampleRow s_templateExamples[] = {
    {"zetool config template", "Shows every element and attribute with default and help."},
};

constexpr ArgumentRow s_file[] = {{"FILE", "a configuration, or - for standard input"}};
constexpr OptionRow s_checkOptions[] = {
    {"node", 'n', nullptr, "as the configuration of a node type too"},
    s_jsonOption,
    s_outputOption,
    s_forceOption,
};
constexpr ExampleRow s_checkExamples[] = {
    {"zetool config check system.xml", "Names what system.xml has and no configuration can have."},
};

constexpr ArgumentRow s_getArguments[] = {
    {"FILE", "a configuration, or - for standard input"},
    {"PATH", "element names with / between, each with [attribute=value] where wanted, and @attribute last",
     Count::Many},
};
constexpr OptionRow s_getOptions[] = {
    {"default", 'd', nullptr, "the schema's default where the element lacks the attribute"},
    s_jsonOption,
    s_outputOption,
    s_forceOption,
};
constexpr ExampleRow s_getExamples[] = {
    {"zetool config get system.xml 'Node[number=0]/Processor[number=0]/@numThreads'",
     "Shows how many threads core 0 of node 0 has."},
};

constexpr CommandRow s_commands[] = {
    {"default",
     "the smallest valid configuration",
     "Writes the default document: a system of one node with one processor, which a configuration can begin "
     "with.",
     {},
     s_documentOptions,
     nullptr,
     configDefault,
     s_defaultExamples},
    {"complete", "a configuration with all defaults spelled out",
     "Writes the document with each attribute that its elements could have and don't, in its default. "
     "Attributes that are there stay as they are, and so does the number of elements: no node, link or "
     "plugin is added. Comments aren't kept. Without a file, writes the complete document, which holds every "
     "element and attribute that there is.",
     s_completeArguments, s_documentOptions, "the document isn't a valid configuration", configComplete,
     s_completeExamples},
    {"template",
     "every element and attribute, with defaults and help",
     "Writes the complete document as a template, with what attributes mean as comments.",
     {},
     s_documentOptions,
     nullptr,
     configTemplate,
     s_templateExamples},
    {"check", "what a configuration can't have",
     "Names each element and each attribute that a configuration can't have at its place. Names are all that "
     "is checked: no values, counts, order or presence. With --node the document is also read as the "
     "configuration of a node type, config_TYPE.xml on the device path, which has rules of its own; the "
     "first fault ends that reading.",
     s_file, s_checkOptions, "the document isn't a valid configuration", configCheck, s_checkExamples},
    {"get", "elements and values of a configuration",
     "Looks up each path in the document: @attribute gives the value, an element alone the whole element. "
     "Each name of a path finds the first element of that name, at any depth below the one before it. "
     "A value in brackets must be equal to the document's as a text or as a number: [number=16] finds "
     "number=\"0x10\" too. With --default, an attribute that its element lacks gives its default.",
     s_getArguments, s_getOptions, "there is no such element or attribute", configGet, s_getExamples},
};

} // namespace

std::span<const CommandRow> configCommands() {
    return s_commands;
}
