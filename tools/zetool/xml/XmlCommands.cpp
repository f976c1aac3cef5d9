#include "tools/zetool/xml/XmlCommands.h"

#include "tools/zetool/xml/XmlShow.h"

namespace {

constexpr ArgumentRow s_file[] = {{"FILE", "an XML document, or - for standard input"}};

constexpr OptionRow s_showDocumentOptions[] = {
    s_jsonOption,
    {"raw-entities", 0, nullptr, "leave &lt; &gt; and &amp; as they are written"},
    s_outputOption,
    s_forceOption,
};

constexpr ExampleRow s_showExamples[] = {
    {"zetool xml show system.xml", "Shows what the parser makes of system.xml."},
};

constexpr CommandRow s_commands[] = {
    {"show", "a document as the parser sees it",
     "Shows the elements of a document, indented, with the attributes and the one text that the parser of "
     "networks and configurations keeps of each: its language is a subset of XML with rules of its own. A "
     "text stands right behind its start tag. What is nested deeper than 50 elements isn't indented further. "
     "With --json each element has its line too, and a document that can't be read, or opened, gives an "
     "object with the error.",
     s_file, s_showDocumentOptions, "the document has a fault", xmlShow, s_showExamples},
};

} // namespace

std::span<const CommandRow> xmlCommands() {
    return s_commands;
}
