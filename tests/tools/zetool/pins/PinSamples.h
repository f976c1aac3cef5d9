#pragma once

#include "tests/support/ImageBuilder.h"

#include <string>

// Two packages, on a node with two cores and four links: a pin with two ports, one with a link, one with
// both, and one with nothing.
inline const char* const s_pinDocument =
    "<ZSystem><System><Nodes><Node number='7' jtagId='0x2633'><Switch sLinks='4'/>\n"
    "<Processor number='0'><Ports><Port name='P1' id='0x10000'/><Port name='P4' id='0x40000'/></Ports>"
    "</Processor>\n"
    "<Processor number='1'><Ports><Port name='P1' id='0x10000'/></Ports></Processor></Node></Nodes>\n"
    "<Pins>\n"
    "<Pin name='A:X0'><Port name='P1' node='7' core='0' priority='0' bitNum='0'/>"
    "<Port name='P4' node='7' core='0' priority='1' bitNum='2'/></Pin>\n"
    "<Pin name='A:X1'><ZLink node='7' number='3' bitNum='0' dir='in'/></Pin>\n"
    "<Pin name='B:X0'><Port name='P1' node='7' core='1' priority='0' bitNum='0'/>"
    "<ZLink node='7' number='3' bitNum='1' dir='out'/></Pin>\n"
    "<Pin name='B:NC'/>\n"
    "</Pins></System></ZSystem>\n";

inline std::string pinImage(const std::string& document) {
    return ImageBuilder().config(document).zn("not read").end().bytes();
}
