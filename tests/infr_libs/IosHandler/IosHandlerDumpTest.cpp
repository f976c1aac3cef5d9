#include "tests/infr_libs/IosHandler/IosTestSupport.h"

#include <gtest/gtest.h>

namespace {

constexpr char s_system[] =
    "<Nodes>"
    "<Node number='2'><Processor number='0'><Ports><Port name='P4' id='0x40100'/></Ports></Processor></Node>"
    "<Node number='1'><Switch sLinks='2'/>"
    "<Processor number='3'><Ports><Port name='P1' id='0x10000'/></Ports></Processor>"
    "<Processor number='1'><Ports><Port name='Q1' id='0x10100'/><Port name='Q0' id='0'/></Ports></Processor>"
    "</Node></Nodes>"
    "<Pins>"
    "<Pin name='A:X'><Port name='P4' node='2' core='0' priority='7' bitNum='2'/>"
    "<Port name='Q1' node='1' core='1' priority='0' bitNum='0'/>"
    "<ZLink node='1' number='1' bitNum='4' dir='out'/></Pin>"
    "<Pin name='B:Y'><ZLink node='1' number='1' bitNum='3' dir='in'/></Pin>"
    "<Pin name='B:Z'><ZLink node='1' number='1' bitNum='1' dir='in'/></Pin>"
    "</Pins>";

const std::string s_ports = "PORTS:\n"
                            "  NODE 1:\n"
                            "    CORE 1:\n"
                            "      Q1: ID = 0x00010100\n"
                            "        Bit 0: pin (0) name: 'X', package: 'A'\n"
                            "      Q0: ID = 0x00000000\n"
                            "    CORE 3:\n"
                            "      P1: ID = 0x00010000\n"
                            "        Bit 0: not connected\n"
                            "  NODE 2:\n"
                            "    CORE 0:\n"
                            "      P4: ID = 0x00040100\n"
                            "        Bit 0: not connected\n"
                            "        Bit 1: not connected\n"
                            "        Bit 2: pin (0) name: 'X', package: 'A'\n"
                            "        Bit 3: not connected\n";

const std::string s_zLinks = "ZLINKS:\n"
                             "  NODE 1:\n"
                             "      0:\n"
                             "      1:\n"
                             "        Input bit 1: pin (2) name: 'Z', package: 'B'\n"
                             "        Input bit 3: pin (1) name: 'Y', package: 'B'\n"
                             "        Output bit 4: pin (0) name: 'X', package: 'A'\n";

const std::string s_pins = "PINS:\n"
                           "      X: package = A, id = 0.\n"
                           "        zLink: 1, bit 4, direction out\n"
                           "        Port P4: bit 2, priority 7\n"
                           "        Port Q1: bit 0, priority 0\n"
                           "      Y: package = B, id = 1.\n"
                           "        zLink: 1, bit 3, direction in\n"
                           "      Z: package = B, id = 2.\n"
                           "        zLink: 1, bit 1, direction in\n";

} // namespace

TEST(IosHandler, DumpsPortsLinksAndPins) {
    const BuiltMap<> map(s_system);
    EXPECT_EQ(written([&](FILE* file) { map->dumpPorts(file); }), s_ports);
    EXPECT_EQ(written([&](FILE* file) { map->dumpZLinks(file); }), s_zLinks);
    EXPECT_EQ(written([&](FILE* file) { map->dumpPins(file); }), s_pins);
    EXPECT_EQ(written([&](FILE* file) { map->dump(file); }), s_ports + s_zLinks + s_pins);
}

TEST(IosHandler, DumpsAnEmptyMap) {
    const BuiltMap<> map("");
    EXPECT_EQ(written([&](FILE* file) { map->dump(file); }), "PORTS:\nZLINKS:\nPINS:\n");
}
