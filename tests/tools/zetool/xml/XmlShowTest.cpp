#include "tests/support/TemporaryFolder.h"
#include "tests/support/XmlText.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/DamagedInput.h"
#include "tests/tools/zetool/ZetoolProgram.h"
#include "tools/zetool/Commands.h"
#include "tools/zetool/Zetool.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace {

constexpr const char* s_document = "<?xml version='1.0'?>\n"
                                   "<System>\n"
                                   "  <Node Id='0' Note='a \"quoted\" &lt;word&gt;'/>\n"
                                   "  <!-- a comment -->\n"
                                   "  <Text>below 5 &lt; 8 &amp; x\n</Text>\n"
                                   "  <Both>text <Inner>\n<Leaf/></Inner></Both>\n"
                                   "</System>\n";

class XmlShow : public testing::Test {
protected:
    XmlShow() { m_folder.write("a.xml", s_document); }

    ChildResult show(const std::string& bytes, const std::string& options = "") const {
        m_folder.write("b.xml", bytes);
        return zetoolShell(m_folder.path(), "zetool xml show b.xml " + options);
    }

    TemporaryFolder m_folder;
};

TEST_F(XmlShow, ShowsWhatTheParserKeeps) {
    m_folder.write("backslash.xml", "<a b='\\");
    m_folder.write("comment.xml", "<a>x<!-- y");
    m_folder.write("cut.xml", "<a>\n<b>\n</c></a>");
    const char* const shown = "<System>\n"
                              "  <Node Id=\"0\" Note=\"a &quot;quoted&quot; &lt;word&gt;\"/>\n"
                              "  <Text>below 5 &lt; 8 &amp; x\n</Text>\n"
                              "  <Both>text \n"
                              "    <Inner>\n"
                              "      <Leaf/>\n"
                              "    </Inner>\n"
                              "  </Both>\n"
                              "</System>\n";
    const char* const raw = "<System>\n"
                            "  <Node Id=\"0\" Note=\"a \"quoted\" &lt;word&gt;\"/>\n"
                            "  <Text>below 5 &lt; 8 &amp; x\n</Text>\n"
                            "  <Both>text \n"
                            "    <Inner>\n"
                            "      <Leaf/>\n"
                            "    </Inner>\n"
                            "  </Both>\n"
                            "</System>\n";
    const auto object = [](const std::string& error) {
        return "{\n  \"type\": \"xml\",\n  \"version\": 1,\n  \"error\": \"" + error + "\"\n}\n";
    };
    const CommandCase cases[] = {
        {"zetool xml show a.xml", 0, shown},
        {"zetool xml show - <a.xml", 0, shown},
        {"zetool xml show --raw-entities a.xml", 0, raw},
        {"zetool xml show --raw-entities - <a.xml", 0, raw},
        {"zetool xml show a.xml -o a.xml", 2, "", "zetool: a.xml: exists; --force replaces it\n"},
        {"zetool xml show none.xml", 2, "", "zetool: none.xml: can't be opened: No such file or directory\n"},
        {"zetool xml show cut.xml", 1, "", "zetool: cut.xml:3: error: unexpected closing tag 'c'\n"},
        {"zetool xml show - <cut.xml", 1, "",
         "zetool: (standard input):3: error: unexpected closing tag 'c'\n"},
        {"zetool xml show comment.xml", 1, "", "zetool: comment.xml: the document ends inside a comment\n"},
        {"zetool xml show backslash.xml", 1, "", "zetool: backslash.xml: a tag ends behind a backslash\n"},
        {"zetool xml show --json none.xml", 1, object("none.xml: error: no such file or directory\\n")},
        {"zetool xml show --json ./cut.xml", 1, object("./cut.xml:3: error: unexpected closing tag 'c'\\n")},
        {"zetool xml show --json comment.xml", 1, object("basic_string::substr")},
        {"zetool xml show --json backslash.xml", 1,
         object("backslash.xml: a tag ends behind a backslash\\n")},
        {"zetool xml show --json a.xml", 0,
         "{\n"
         "  \"type\": \"xml\",\n"
         "  \"version\": 1,\n"
         "  \"tree\": {\"name\": \"System\", \"value\": \"\", \"line\": 2, \"attributes\": [], \"children\": "
         "[\n"
         "    {\"name\": \"Node\", \"value\": \"\", \"line\": 3, \"attributes\": [[\"Id\",\"0\"],"
         "[\"Note\",\"a \\\"quoted\\\" <word>\"]], \"children\": []},\n"
         "    {\"name\": \"Text\", \"value\": \"below 5 < 8 & x\\n\", \"line\": 5, \"attributes\": [], "
         "\"children\": []},\n"
         "    {\"name\": \"Both\", \"value\": \"text \", \"line\": 7, \"attributes\": [], \"children\": [\n"
         "      {\"name\": \"Inner\", \"value\": \"\", \"line\": 7, \"attributes\": [], \"children\": [\n"
         "        {\"name\": \"Leaf\", \"value\": \"\", \"line\": 8, \"attributes\": [], \"children\": []}\n"
         "      ]}\n"
         "    ]}\n"
         "  ]}\n"
         "}\n"},
    };
    expectCommands(m_folder.path(), cases);
}

TEST_F(XmlShow, RawEntitiesStayInJson) {
    const std::string expected = "{\n"
                                 "  \"type\": \"xml\",\n"
                                 "  \"version\": 1,\n"
                                 "  \"tree\": {\"name\": \"a\", \"value\": \"&amp;lt;\", \"line\": 1, "
                                 "\"attributes\": [[\"b\",\"&lt;\"]], \"children\": []}\n"
                                 "}\n";
    EXPECT_EQ(show("<a b='&lt;'>&amp;lt;</a>", "--json --raw-entities").output, expected);
    const ChildResult piped =
        zetoolShell(m_folder.path(), "cat b.xml | zetool xml show --json --raw-entities -");
    EXPECT_EQ(piped.output, expected);
}

// What a reader of real XML finds in the text is the same tree.
TEST_F(XmlShow, ItsTextIsWellFormed) {
    const ChildResult result = zetoolShell(m_folder.path(), "zetool xml show a.xml | xmllint --noout -");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.exitStatus, 0);
}

TEST_F(XmlShow, TakesAnyDepth) {
    const std::string text = nestedText(100000);
    for (const std::string options : {"", "--raw-entities", "--json"}) {
        const ChildResult result = show(text, options);
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_EQ(result.error, "");
        EXPECT_LT(result.output.size(), 50u << 20); // indentation ends somewhere
    }
}

TEST_F(XmlShow, ItsJsonHoldsToItsSchema) {
    EXPECT_EQ(schemaFaults("xml-show.schema.json", show(s_document, "--json").output), "");
    EXPECT_EQ(schemaFaults("xml-show.schema.json", show("<a", "--json").output), "");
    EXPECT_NE(schemaFaults("xml-show.schema.json", "{}"), "");
}

TEST_F(XmlShow, EveryDamagedDocumentHasAMessage) {
    EXPECT_EQ(damageFailures(m_folder, "a.xml", std::string(s_document) + "<a b='\\\\'/>",
                             {{"xml", "show", "a.xml"}, {"xml", "show", "--raw-entities", "a.xml"}}),
              "");
    // A backslash at any place is the last byte once.
    EXPECT_EQ(damageFailures(m_folder, "a.xml", "<a b='\\\\\\\\' c=\"\\\"\\\\\">\\</a>\\",
                             {{"xml", "show", "a.xml"}}),
              "");
}

TEST_F(XmlShow, EveryDamagedDocumentIsOneJsonObject) {
    const std::string bytes = s_document;
    const std::string output = m_folder.file("damaged.json");
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string flipped = bytes;
        flipped[at] = static_cast<char>(flipped[at] ^ 0x83);
        for (const std::string& damaged : {bytes.substr(0, at), flipped}) {
            const std::string input = m_folder.write("damaged.xml", damaged);
            const char* const words[] = {"xml", "show",         "--json",     "--force",
                                         "-o",  output.c_str(), input.c_str()};
            const int status = runZetool(allNouns(), words);
            const auto object = nlohmann::json::parse(readFile(output));
            EXPECT_EQ(status, object.contains("error") ? 1 : 0) << damaged;
            EXPECT_EQ(object.contains("tree"), status == 0) << damaged;
        }
    }
}

} // namespace
