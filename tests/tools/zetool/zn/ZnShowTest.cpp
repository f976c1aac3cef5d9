#include "tests/tools/zetool/DamagedInput.h"
#include "tests/tools/zetool/zn/ZnSamples.h"
#include "tools/zetool/Commands.h"
#include "tools/zetool/Zetool.h"

#include <nlohmann/json.hpp>

namespace {

constexpr const char* s_twoText = R"--(name                Two nodes
board id            b-2
version             1.1
type                Board
architecture        L1
topology            hypercube
order of nodes      a b
scan chain          b a
behind the chain    devices: 1, bits: 4
chain's highest Hz  10000000

package  type     file           nodes
p        Package  ./Package.pkg  0=a 1=b 2=d

node  kind    type            routing id  position  boots from        boots  flags
a     proc    L1              0x0         0         flash             b:0
b     proc    proc:L1         0x4000      1         link, from flash
d     device  device:display  0x0                                            postboot

clocks of  oscillator  driven by  system Hz       made  reference Hz       made  PLL register  divider register
a            25000000             400000000  400000000                100000000        0x1f00               0x3
b            25000000                        412500000                103125000        0x2000               0x3

core      node  number   RAM at  bytes  threads  timers  channel ends
left      a          0  0x10000  65536        8      10            32
right[3]  b          0  0x10000  65536        8      10            32

port         core  name      mods
ZS1_PORT_1A  left  PORT_LED  out

service  at        prototype                     channel ends  flags
7        right[3]  void f(chanend x, chanend y)  x=4 y=517

device  type   class     node  core  attributes
flash   4Mbit  spiflash  a        0  PageSize=256

link  from  to           wires  delays   flags  users
   0  a:2   b:13             5  3,5 9,9             2
   1  b:4   d:chanend 2      2  1,1 1,1  sod        2

users of link 0
  a > b
  b > a

users of link 1
  d > b
  b > d
)--";

constexpr const char* s_switchText = R"--(architecture        L1
topology            hypercube
order of nodes      a
scan chain          a z

package  type     file           nodes
p        Package  ./Package.pkg  0=a 1=z

node  kind  type           routing id  position  boots from  boots  flags
a     proc  L1             0x0
z     zssc  periph:ZS1-SU  0x1

clocks of  oscillator  driven by  system Hz       made  reference Hz       made  PLL register  divider register
a            25000000  z          400000000  400000000                100000000        0x1f00               0x3
z               25MHz

core  node  number   RAM at  bytes  threads  timers  channel ends
a     a          0  0x10000  65536        8      10            32

service  at  prototype         channel ends  flags
1        z   int g(chanend c)  c=3>513       sod

link  from  to   wires  delays   flags        users
   0  a:2   z:0      5  1,1 1,1  noinit zssc      0
)--";

// Of two.zn.
constexpr const char* s_twoJson = R"--({
  "type": "zn",
  "version": 1,
  "name": "Two nodes",
  "boardId": "b-2",
  "znVersion": "1.1",
  "type": "Board",
  "typeKind": "board",
  "switchArch": 2,
  "topology": "hypercube",
  "positions": {
    "a": "0",
    "b": "1"
  },
  "declarations": [
    {
      "text": "core left",
      "kind": "core",
      "name": "left",
      "array": false,
      "size": null,
      "line": 7
    },
    {
      "text": "core right[4]",
      "kind": "core",
      "name": "right",
      "array": true,
      "size": 4,
      "line": 8
    }
  ],
  "packages": [
    {
      "id": "p",
      "type": "Package",
      "file": "./Package.pkg",
      "line": 11,
      "nodes": {
        "0": "a",
        "1": "b",
        "2": "d"
      }
    }
  ],
  "nodes": [
    {
      "id": "a",
      "kind": "proc",
      "type": "L1",
      "shortType": "L1",
      "line": 13,
      "routingId": 0,
      "boot": {
        "kind": "spi",
        "deviceName": "flash",
        "default": false,
        "device": "flash"
      },
      "inPackageId": "0",
      "bootees": [
        {
          "nodeId": "b",
          "coreText": "",
          "node": "b",
          "core": 0
        }
      ],
      "oscillatorHz": 25000000,
      "oscillatorSource": "",
      "oscillatorNode": null,
      "systemFrequencyHz": 400000000,
      "referenceFrequencyHz": 0,
      "achievedSystemHz": 400000000,
      "achievedReferenceHz": 100000000,
      "pll": {
        "fromDividers": false,
        "inputDiv": 0,
        "feedbackDivTimes2": 0,
        "outputDiv": 0,
        "refDiv": 0,
        "feedbackDivMinTimes2": 0
      },
      "pllValues": [
        7936,
        3
      ],
      "config": {
        "file": "./config_L1.xml",
        "number": 0,
        "jtagId": 9779,
        "userId": 0,
        "cores": [
          {
            "number": 0,
            "ramBase": 65536,
            "ramSize": 65536,
            "numThreads": 8,
            "numTimers": 10,
            "numChanEnds": 32
          }
        ]
      },
      "cores": [
        {
          "number": 0,
          "reference": "left",
          "referenceBase": "left",
          "referenceIndex": null,
          "line": 18,
          "ports": [
            {
              "name": "PORT_LED",
              "location": "ZS1_PORT_1A",
              "mods": "out"
            }
          ],
          "services": []
        }
      ]
    },
    {
      "id": "b",
      "kind": "proc",
      "type": "proc:L1",
      "shortType": "L1",
      "line": 23,
      "routingId": 16384,
      "boot": {
        "kind": "link",
        "device": "flash"
      },
      "inPackageId": "1",
      "bootees": [],
      "oscillatorHz": 25000000,
      "oscillatorSource": "",
      "oscillatorNode": null,
      "systemFrequencyHz": 0,
      "referenceFrequencyHz": 0,
      "achievedSystemHz": 412500000,
      "achievedReferenceHz": 103125000,
      "pll": {
        "fromDividers": true,
        "inputDiv": 1,
        "feedbackDivTimes2": 33,
        "outputDiv": 1,
        "refDiv": 4,
        "feedbackDivMinTimes2": 0
      },
      "pllValues": [
        8192,
        3
      ],
      "config": {
        "file": "./config_L1.xml",
        "number": 0,
        "jtagId": 9779,
        "userId": 0,
        "cores": [
          {
            "number": 0,
            "ramBase": 65536,
            "ramSize": 65536,
            "numThreads": 8,
            "numTimers": 10,
            "numChanEnds": 32
          }
        ]
      },
      "cores": [
        {
          "number": 0,
          "reference": "right[3]",
          "referenceBase": "right",
          "referenceIndex": 3,
          "line": 24,
          "ports": [],
          "services": [
            {
              "id": "7",
              "proto": "void f(chanend x, chanend y)",
              "name": "void f",
              "signature": "fS{0}(chd,chd)",
              "sod": false,
              "chanends": [
                {
                  "identifier": "x",
                  "endText": "4",
                  "end": 4,
                  "endHasNode": false,
                  "endHasNumber": true,
                  "remoteText": "",
                  "remote": 0,
                  "remoteHasNode": false,
                  "remoteHasNumber": false
                },
                {
                  "identifier": "y",
                  "endText": "2:5",
                  "end": 517,
                  "endHasNode": true,
                  "endHasNumber": true,
                  "remoteText": "",
                  "remote": 0,
                  "remoteHasNode": false,
                  "remoteHasNumber": false
                }
              ]
            }
          ]
        }
      ]
    },
    {
      "id": "d",
      "kind": "device",
      "type": "device:display",
      "shortType": "display",
      "line": 36,
      "routingId": 0,
      "boot": {
        "kind": "spi",
        "deviceName": "",
        "default": true,
        "device": null
      },
      "flags": [
        "postboot"
      ],
      "services": []
    }
  ],
  "links": [
    {
      "encoding": "5wire",
      "wires": 5,
      "delays": "5clk,6CLK",
      "flags": [],
      "line": 39,
      "ends": [
        {
          "kind": "normal",
          "node": "a",
          "delays": "",
          "link": "Z0LA",
          "linkNumber": 2,
          "interTokenDelay": 3,
          "intraTokenDelay": 5
        },
        {
          "kind": "normal",
          "node": "b",
          "delays": "9",
          "link": "Z3LD",
          "linkNumber": 13,
          "interTokenDelay": 9,
          "intraTokenDelay": 9
        }
      ],
      "userCount": 2,
      "users": [
        ["a", "b"],
        ["b", "a"]
      ]
    },
    {
      "encoding": "2wire",
      "wires": 2,
      "delays": "",
      "flags": [
        "sod"
      ],
      "line": 43,
      "ends": [
        {
          "kind": "normal",
          "node": "b",
          "delays": "",
          "link": "4",
          "linkNumber": 4,
          "interTokenDelay": 1,
          "intraTokenDelay": 1
        },
        {
          "kind": "sod",
          "node": "d",
          "delays": "",
          "routingId": 16,
          "chanend": 2,
          "interTokenDelay": 1,
          "intraTokenDelay": 1
        }
      ],
      "userCount": 2,
      "users": [
        ["d", "b"],
        ["b", "d"]
      ]
    }
  ],
  "jtagChain": {
    "maxFrequencyHz": 10000000,
    "preDevices": 0,
    "preBits": 0,
    "postDevices": 1,
    "postBits": 4,
    "nodes": [
      "b",
      "a"
    ]
  },
  "nodeOrder": [
    "a",
    "b"
  ],
  "devices": [
    {
      "name": "flash",
      "type": "4Mbit",
      "class": "spiflash",
      "node": "a",
      "core": 0,
      "line": 54,
      "attributes": [
        {
          "name": "PageSize",
          "value": "256"
        }
      ]
    }
  ],
  "warnings": []
}
)--";

// The text without its lists of users, which stand last in each link, and with these sums in their place.
std::string withSums(std::string text, std::initializer_list<const char*> sums) {
    for (const char* sum : sums) {
        const auto from = text.find("\"users\"");
        const auto to = text.find("\n      ]", from) + 8;
        text.replace(from, to - from, std::string("\"userCrc32\": ") + sum);
    }
    return text;
}

class ZnShow : public ZnCommands {
protected:
    // The object of a network that is damaged, whatever the damage, with the exit status of its command.
    struct Shown {
        int status;
        nlohmann::json object;
    };

    Shown show(const std::string& bytes) const {
        const std::string input = folder().write("damaged.zn", bytes);
        const std::string output = folder().file("damaged.json");
        const char* const words[] = {"zn", "show", "--json", "--force", "-o", output.c_str(), input.c_str()};
        const int status = runZetool(allNouns(), words);
        return {status, nlohmann::json::parse(readFile(output))};
    }
};

TEST_F(ZnShow, ShowsTheNetworkThatTheLoaderMakes) {
    const std::string badMessages =
        "zetool: bad.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\n"
        "zetool: bad.zn: Error: ZN11038 JTAG scan chain not specified.\n";
    const CommandCase cases[] = {
        {"zetool zn show two.zn", 0, s_twoText, s_chainLine},
        {"zetool zn show - <two.zn", 0, s_twoText, s_chainLine},
        {"zetool zn show --no-users switch.zn", 0, s_switchText, s_lanksWarning},
        {"zetool zn show bad.zn", 1, "", badMessages},
        {"zetool zn show none.zn", 2, "", "zetool: none.zn: can't be opened: No such file or directory\n"},
        {"zetool zn show --json two.zn", 0, s_twoJson, s_chainLine},
        {"zetool zn show --json - <two.zn", 0, s_twoJson, s_chainLine},
        {"zetool zn show --json --no-users two.zn", 0, withSums(s_twoJson, {"3787078544", "3559768497"}),
         s_chainLine},
    };
    expectCommands(folder().path(), cases);
}

// With --json a failure is a result, and standard error stays free.
TEST_F(ZnShow, ItsJsonHoldsTheFailureOfANetworkThatDoesNotLoad) {
    folder().write("backslash.zn", "<Network a='\\");
    folder().write("comment.zn", "<Network>x<!-- y");
    folder().write("bytes.zn", "<N\xe9/>");
    folder().write("root.zn", "<Net b='\xc3\xa9'/>");
    const auto object = [](const std::string& error, const std::string& warnings = "[]") {
        return "{\n  \"type\": \"zn\",\n  \"version\": 1,\n  \"error\": \"" + error +
               "\",\n  \"warnings\": " + warnings + "\n}\n";
    };
    const CommandCase cases[] = {
        {"zetool zn show --json ./bad.zn", 1,
         object("./bad.zn: Error: ZN11038 JTAG scan chain not specified.\\n",
                "[\n    \"./bad.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\"\n  ]")},
        {"zetool zn show --json --no-users - <bad.zn", 1,
         object("-: Error: ZN11038 JTAG scan chain not specified.\\n",
                "[\n    \"-:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\"\n  ]")},
        {"zetool zn show --json none.zn", 1, object("Error: ZN11043 Error opening file 'none.zn'.\\n")},
        {"zetool zn show --json root.zn", 1,
         object("root.zn:1 Error: ZN11001 Root node is not <Network>\\n")},
        {"zetool zn show --json bytes.zn", 1, object("bytes.zn: error: non ASCII character in file\\n")},
        {"zetool zn show --json comment.zn", 1, object("basic_string::substr")},
        {"zetool zn show --json backslash.zn", 1,
         object("backslash.zn: a tag ends behind a backslash, here or in a file that the network names\\n")},
        {"zetool zn show --json", 2, "",
         "zetool: zn show: FILE is missing\n"
         "zetool: 'zetool zn show --help' shows what there is\n"},
    };
    expectCommands(folder().path(), cases);
}

TEST_F(ZnShow, ItsJsonHasWhatASwitchNodeIs) {
    const auto object = nlohmann::json::parse(run("zetool zn show --json switch.zn").output);
    EXPECT_EQ(object["nodes"][1], nlohmann::json::parse(R"--({
      "id": "z", "kind": "zssc", "type": "periph:ZS1-SU", "shortType": "ZS1-SU", "line": 9, "routingId": 1,
      "boot": {"kind": "spi", "deviceName": "", "default": true, "device": null},
      "inPackageId": "1", "referenceBase": "su", "referenceIndex": 1, "oscillator": "25MHz", "oscillatorMHz": 25,
      "services": [{
        "id": "1", "proto": "int g(chanend c)", "name": "int g", "signature": "fS{0}(chd)", "sod": true,
        "chanends": [{
          "identifier": "c", "endText": "3", "end": 3, "endHasNode": false, "endHasNumber": true,
          "remoteText": "2:1", "remote": 513, "remoteHasNode": true, "remoteHasNumber": true}]}]})--"));
    EXPECT_EQ(object["nodes"][0]["oscillatorSource"], "z");
    EXPECT_EQ(object["nodes"][0]["oscillatorNode"], "z");
    EXPECT_EQ(object["links"][0]["flags"], nlohmann::json::parse(R"--(["noinit", "zssc"])--"));
    EXPECT_EQ(object["positions"], nlohmann::json::parse(R"--({"a": ""})--"));
    EXPECT_EQ(object["warnings"][0],
              "switch.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.");
}

TEST_F(ZnShow, APileHasNoPositions) {
    NetworkBuilder network;
    network.processor("n0")
        .processor("n1")
        .processor("n2")
        .link("n0", "0", "n1", "1")
        .link("n1", "0", "n2", "1");
    folder().write("pile.zn", network.text());
    const auto object = nlohmann::json::parse(run("zetool zn show --json pile.zn").output);
    EXPECT_EQ(object["topology"], "pile");
    EXPECT_EQ(object["positions"], nullptr);
}

TEST_F(ZnShow, TextsThatAreNoUtf8StayApart) {
    std::string text = s_twoNodes;
    text.replace(text.find("Two nodes"), 9, "\xe9\x01");
    folder().write("bytes.zn", text);
    EXPECT_THAT(run("zetool zn show --json bytes.zn").output,
                testing::HasSubstr("  \"name\": \"\\uf7e9\\u0001\",\n"));
}

// Nodes whose ids are the byte e9, the same letter in UTF-8, and the character that stands for the byte.
TEST_F(ZnShow, KeysThatAreNoUtf8StayApart) {
    folder().write(
        "keys.zn",
        "<Network><Declarations><Declaration>core c[3]</Declaration></Declarations>"
        "<Packages><Package Id='p' Type='Package'><Nodes>"
        "<Node Id='\xe9' InPackageId='\xe9' Type='L1'><Core Reference='c[0]'/></Node>"
        "<Node Id='\xc3\xa9' InPackageId='\xc3\xa9' Type='L1'><Core Reference='c[1]'/></Node></Nodes>"
        "<Component NodeId='\xef\x9f\xa9' InPackage='\xef\x9f\xa9'/></Package></Packages>"
        "<Nodes><Node Id='\xef\x9f\xa9' Type='device:'/></Nodes>"
        "<Links><Link Encoding='2wire'><LinkEndpoint NodeId='\xe9' Link='1'/>"
        "<LinkEndpoint NodeId='\xc3\xa9' Link='1'/></Link></Links>"
        "<JTAGChain><JTAGDevice NodeId='\xe9'/><JTAGDevice NodeId='\xc3\xa9'/></JTAGChain></Network>");
    const std::string output = run("zetool zn show --json keys.zn").output;
    EXPECT_THAT(output, testing::HasSubstr("  \"positions\": {\n"
                                           "    \"\\u00e9\": \"1\",\n"
                                           "    \"\\uf7e9\": \"0\"\n"
                                           "  },\n"));
    EXPECT_THAT(output, testing::HasSubstr("      \"nodes\": {\n"
                                           "        \"\\u00e9\": \"\\u00e9\",\n"
                                           "        \"\\uf7e9\": \"\\uf7e9\",\n"
                                           "        \"\\uf7ef\\uf79f\\uf7a9\": \"\\uf7ef\\uf79f\\uf7a9\"\n"
                                           "      }\n"));
    EXPECT_THAT(output, testing::HasSubstr("\"\\uf7e9\", \"\\u00e9\"]"));
}

TEST_F(ZnShow, TellsWarningsByLinesInItsJson) {
    folder().write("lines.zn",
                   "<Network><ExternalDevices><Device Class='x\ny'/></ExternalDevices></Network>");
    EXPECT_THAT(run("zetool zn show --json lines.zn").output,
                testing::HasSubstr("  \"warnings\": [\n"
                                   "    \"lines.zn:2 Warning: ZN11058 Unrecognised device class \\\"x\",\n"
                                   "    \"y\\\"; ignoring.\"\n"
                                   "  ]\n"));
}

TEST_F(ZnShow, ItsJsonHoldsToItsSchema) {
    for (const std::string words : {"two.zn", "switch.zn", "--no-users two.zn", "bad.zn", "none.zn"})
        EXPECT_EQ(schemaFaults("zn-show.schema.json", run("zetool zn show --json " + words).output), "")
            << words;
    EXPECT_NE(schemaFaults("zn-show.schema.json", "{}"), "");
}

// The sums of a network with many routes are those of the lists.
TEST_F(ZnShow, SumsAndListsTellTheSame) {
    folder().write("cube.zn", NetworkBuilder::hypercube(4).text());
    const auto listed = nlohmann::json::parse(run("zetool zn show --json cube.zn").output);
    const auto summed = nlohmann::json::parse(run("zetool zn show --json --no-users cube.zn").output);
    ASSERT_EQ(listed["links"].size(), 32u);
    for (std::size_t link = 0; link < 32; ++link) {
        EXPECT_EQ(listed["links"][link]["users"].size(), 16u);
        EXPECT_EQ(summed["links"][link]["userCount"], 16u);
        EXPECT_FALSE(summed["links"][link].contains("users"));
        std::uint32_t sum = 0xffffffff; // bit by bit
        for (const auto& user : listed["links"][link]["users"])
            for (const char c : user[0].get<std::string>() + "\t" + user[1].get<std::string>() + "\n") {
                sum ^= static_cast<unsigned char>(c);
                for (int bit = 0; bit < 8; ++bit)
                    sum = (sum & 1) != 0 ? sum >> 1 ^ 0xedb88320 : sum >> 1;
            }
        EXPECT_EQ(summed["links"][link]["userCrc32"], ~sum);
    }
}

TEST_F(ZnShow, EveryDamagedNetworkHasAMessage) {
    const std::vector<std::vector<const char*>> commands = {{"zn", "show", "a.zn"}, {"zn", "check", "a.zn"}};
    EXPECT_EQ(damageFailures(folder(), "a.zn", s_switchNode, commands), "");
    EXPECT_EQ(damageFailures(folder(), "a.zn", s_twoNodes,
                             {{"zn", "show", "a.zn"}, {"zn", "names", "a.zn"}, {"zn", "graph", "a.zn"}}, 5),
              "");
}

TEST_F(ZnShow, EveryDamagedFileOfANodeTypeHasAMessage) {
    const std::string config = folder().read("config_L1.xml");
    EXPECT_EQ(damageFailures(folder(), "config_L1.xml", config, {{"zn", "check", "two.zn"}}), "");
    folder().write("config_L1.xml", config);
    EXPECT_EQ(damageFailures(folder(), "Package.pkg", "<Package a='b'/>", {{"zn", "check", "two.zn"}}), "");
}

TEST_F(ZnShow, EveryDamagedNetworkIsOneJsonObject) {
    const std::string bytes = s_twoNodes;
    for (std::size_t at = 0; at < bytes.size(); at += 7) {
        std::string flipped = bytes;
        flipped[at] = static_cast<char>(flipped[at] ^ 0x83);
        for (const std::string& damaged : {bytes.substr(0, at), flipped}) {
            const Shown shown = show(damaged);
            EXPECT_EQ(shown.status, shown.object.contains("error") ? 1 : 0) << damaged;
            EXPECT_EQ(shown.object.contains("nodes"), shown.status == 0) << damaged;
        }
    }
}

} // namespace
