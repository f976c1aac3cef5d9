// Writes the seeds of the fuzz target: a document of each kind that the parser's rules tell apart.

#include "tests/support/FuzzSeeds.h"
#include "tests/support/XmlText.h"

#include <string>

namespace {

const std::string s_seeds[] = {
    configurationText(1000),
    nestedText(50),
    "",
    "<!-- a comment alone -->",
    "<a></a>",
    "<a/ >",
    "<a b = \"1\"/>",
    "<a b= \"1\"/>",
    "<a b=\"1\"c='2'/>",
    "<a b=\"c\\\"d\"/>",
    "<a b=\"x>y\"/>",
    "<a\n b=\"1\"\n c=\"2\">\n</a>",
    "<a>  x\n</a>",
    "<a>x<b/>y</a>",
    "<a>x<!-- y -->z</a>",
    "<a>x<? y ?>z</a>",
    "<a>x<!-- y",
    "<a><!-- c -->text</a>",
    "<a><b>",
    "<a></a",
    "<a></b>",
    "</a>",
    "<a><![CDATA[x]]></a>",
    "<!DOCTYPE a><a/>",
    "<a b=\"&lt;&amp;amp;&amp;lt;\">&gt;&quot;</a>",
    "<\xc3\xa9/>",
    "<a b=\"\xc3\xa9\">\xc3\xa9</a>",
    std::string("<a\0b c=\"\0\">\0</a\0>", 18),
    "<a x=\"1\" x=\"2\" y=\"-0x10\" z=\"True\" w=\"1e400\"/>",
};

} // namespace

int main(int argc, char** argv) {
    return writeSeeds(argc, argv, s_seeds);
}
