#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/image/LargeImage.h"
#include "tests/tools/zetool/pins/PinSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

TEST(PinsList, ShowsPinsPortsAndLinks) {
    const TemporaryFolder folder;
    folder.write("a.ze", pinImage(s_pinDocument));
    folder.write("none.ze", pinImage("<ZSystem><System><Nodes><Node number='0' jtagId='0x2633'/></Nodes>"
                                     "</System></ZSystem>"));
    const std::string pins = "pad  package  pin  node  core  port or link  bit  priority  direction\n"
                             "  0  A        X0      7     0  P1              0         0\n"
                             "  0  A        X0      7     0  P4              2         1\n"
                             "  1  A        X1      7        link3           0            in\n"
                             "  2  B        X0      7     1  P1              0         0\n"
                             "  2  B        X0      7        link3           1            out\n"
                             "  3  B        NC\n";
    const CommandCase cases[] = {
        {"zetool pins list a.ze", 0, pins},
        {"cat a.ze | zetool pins list --by pin -", 0, pins},
        {"zetool pins list --by port a.ze", 0,
         "node  core  port  width  pads by bit\n"
         "   7     0  P1        1  0:0\n"
         "   7     0  P4        4  2:0\n"
         "   7     1  P1        1  0:2\n"},
        {"zetool pins list --by link a.ze", 0,
         "node  link   pads in, by bit  pads out, by bit\n"
         "   7  link3  0:1              1:2\n"},
        {"zetool pins list none.ze", 0,
         "pad  package  pin  node  core  port or link  bit  priority  direction\n"},
        {"zetool pins list --by core none.ze", 2, "",
         "zetool: pins list: --by can be pin or port or link, not 'core'\n"
         "zetool: 'zetool pins list --help' shows what there is\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(PinsList, SaysWhatIsWrongWithTheImage) {
    const TemporaryFolder folder;
    const std::string document = s_pinDocument;
    const auto changed = [&](const std::string& from, const std::string& to) {
        std::string text = document;
        return pinImage(text.replace(text.find(from), from.size(), to));
    };
    folder.write("cut.ze", pinImage(document).substr(0, 100));
    folder.write("crc.ze", ImageBuilder().config(s_pinDocument).flipBit(100, 0).bytes());
    folder.write("two.ze", ImageBuilder().config(s_pinDocument).config(s_pinDocument).bytes());
    folder.write("zero.ze", ImageBuilder().end().bytes());
    folder.write("text.ze", "no image");
    folder.write("root.ze", pinImage("<System/>"));
    folder.write("system.ze", pinImage("<ZSystem/>"));
    folder.write("nodes.ze", pinImage("<ZSystem><System><Nodes></Nodes></System></ZSystem>"));
    folder.write("open.ze", pinImage("<ZSystem>"));
    folder.write("comment.ze", pinImage("<ZSystem>text<!-- "));
    folder.write("backslash.ze", pinImage("<ZSystem a='\\"));
    folder.write("colon.ze", changed("A:X1", "X1"));
    folder.write("port.ze", changed("'P4' node='7' core='0'", "'P4' node='7' core='1'"));
    folder.write("links.ze", changed("sLinks='4'", "sLinks='4294967295'"));
    const CommandCase cases[] = {
        {"zetool pins list cut.ze", 1, "",
         "zetool: cut.ze: sector 0 at offset 8: Not enough space in the buffer to hold the data: it claims "
         "704 bytes, but the file has 92 of them\n"},
        {"zetool pins list crc.ze 2>all", 1, ""},
        {"cut -c 1-59 all", 0, "zetool: crc.ze: sector 0 at offset 8: Detected crc error: 0\n"},
        {"zetool pins list two.ze", 1, "",
         "zetool: two.ze: sector 1 at offset 712: another configuration; there can be only one\n"},
        {"zetool pins list zero.ze", 1, "", "zetool: zero.ze: there is no configuration\n"},
        {"zetool pins list text.ze", 1, "", "zetool: text.ze: Header tag incorrect\n"},
        {"zetool pins list root.ze", 1, "",
         "zetool: root.ze: ERROR: Root of XML config file must be 'ZSystem', not System\n"},
        {"zetool pins list system.ze", 1, "",
         "zetool: system.ze: ERROR: No 'System' node defined in XML file\n"},
        {"zetool pins list nodes.ze", 1, "", "zetool: nodes.ze: ERROR: No 'Node' in 'Nodes' node\n"},
        {"zetool pins list open.ze", 1, "", "zetool: open.ze: ERROR: No 'System' node defined in XML file\n"},
        {"zetool pins list comment.ze", 1, "",
         "zetool: comment.ze: ZEconfiguration: the document ends inside a comment\n"},
        {"zetool pins list backslash.ze", 1, "",
         "zetool: backslash.ze: ZEconfiguration: a tag ends behind a backslash\n"},
        {"zetool pins list colon.ze", 1, "", "zetool: colon.ze: ERROR: Invalid pin name format: X1\n"},
        {"zetool pins list port.ze", 1, "", "zetool: port.ze: ERROR: No port 'P4' found on node 7 core 1\n"},
        {"zetool pins list links.ze", 1, "",
         "zetool: links.ze: ERROR: Too many ZLinks (4294967295) for switch on node 7\n"},
        {"zetool pins list absent.ze", 2, "",
         "zetool: absent.ze: can't be opened: No such file or directory\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(PinsList, WritesOneJsonObject) {
    const TemporaryFolder folder;
    folder.write("a.ze", pinImage(s_pinDocument));
    std::string flat = writtenJson(folder.path(), "zetool pins list --json a.ze", "pins-list.schema.json");
    std::erase_if(flat, [](char c) { return c == ' ' || c == '\n'; }); // the indentation
    EXPECT_EQ(
        flat,
        "{\"type\":\"pinsList\",\"version\":1,\"connections\":["
        "{\"pad\":0,\"package\":\"A\",\"pin\":\"X0\","
        "\"port\":{\"node\":7,\"core\":0,\"name\":\"P1\",\"bit\":0,\"priority\":0},\"link\":null},"
        "{\"pad\":0,\"package\":\"A\",\"pin\":\"X0\","
        "\"port\":{\"node\":7,\"core\":0,\"name\":\"P4\",\"bit\":2,\"priority\":1},\"link\":null},"
        "{\"pad\":1,\"package\":\"A\",\"pin\":\"X1\",\"port\":null,"
        "\"link\":{\"node\":7,\"number\":3,\"bit\":0,\"direction\":\"in\"}},"
        "{\"pad\":2,\"package\":\"B\",\"pin\":\"X0\","
        "\"port\":{\"node\":7,\"core\":1,\"name\":\"P1\",\"bit\":0,\"priority\":0},\"link\":null},"
        "{\"pad\":2,\"package\":\"B\",\"pin\":\"X0\",\"port\":null,"
        "\"link\":{\"node\":7,\"number\":3,\"bit\":1,\"direction\":\"out\"}},"
        "{\"pad\":3,\"package\":\"B\",\"pin\":\"NC\",\"port\":null,\"link\":null}],"
        "\"ports\":["
        "{\"node\":7,\"core\":0,\"name\":\"P1\",\"id\":65536,\"width\":1,\"pads\":[{\"bit\":0,\"pad\":0}]},"
        "{\"node\":7,\"core\":0,\"name\":\"P4\",\"id\":262144,\"width\":4,\"pads\":[{\"bit\":2,\"pad\":0}]},"
        "{\"node\":7,\"core\":1,\"name\":\"P1\",\"id\":65536,\"width\":1,\"pads\":[{\"bit\":0,\"pad\":2}]}],"
        "\"links\":[{\"node\":7,\"number\":3,\"padsIn\":[{\"bit\":0,\"pad\":1}],"
        "\"padsOut\":[{\"bit\":1,\"pad\":2}]}]}");
}

TEST(PinsList, NeedsLittleMemoryForALargeFile) {
    const TemporaryFolder folder;
    writeLargeImage(folder.file("large.ze"));
    std::ofstream(folder.file("large.ze"), std::ios::binary | std::ios::app)
        << ImageBuilder().config(s_pinDocument).bytes().substr(8);
    const ChildResult result =
        zetoolShell(folder.path(), s_littleMemory + "zetool pins list --by link large.ze");
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(result.output, "node  link   pads in, by bit  pads out, by bit\n"
                             "   7  link3  0:1              1:2\n");
}

} // namespace
