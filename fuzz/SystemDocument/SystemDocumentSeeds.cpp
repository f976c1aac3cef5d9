// Writes the seeds of the fuzz target: the two documents that the schema makes, and some for each reader.

#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/FuzzSeeds.h"

#include <iterator>
#include <memory>
#include <string>
#include <vector>

namespace {

const std::string s_seeds[] = {
    "",
    "<ZSystem/>",
    "<ZSystem><System><Nodes/><Connections/></System></ZSystem>",
    "<ZSystem><System><Nodes><Node number='3' jtagId='0x2633'><Processor number='0' numThreads='010' "
    "numTimers='1' numChanEnds='-1'><MemoryController><Ram base='0x4000000000' size='-1'/><Ram base='1' "
    "size='2'/></MemoryController></Processor></Node></Nodes><Connections/></System></ZSystem>",
    "<ZSystem><System><Nodes><Node number='0'/><Node number='0'/></Nodes><Connections/></System></ZSystem>",
    "<ZSystem><System><TraceConfig value='true'><Trace name='TRACE_MEM' value='true'/><Trace name='X' "
    "value='1'/><Trace/><Other/></TraceConfig></System></ZSystem>",
    "<ZSystem><System><Nodes><Node number='0' jtagId='0x2731'><Switch sLinks='3'/><Processor number='0'/>"
    "<Processor number='1'><Ports><Port name='P' id='0x3f0000'/></Ports></Processor></Node></Nodes><Pins>"
    "<Pin name='A:X'><Port name='ZS1_PORT_1A' node='0' core='0' priority='0' bitNum='0'/><Port name='P' "
    "node='0' core='1' priority='1' bitNum='62'/><ZLink node='0' number='2' bitNum='3' dir='in'/></Pin>"
    "<Pin name='A:Y'><ZLink node='0' number='2' bitNum='3' dir='up'/></Pin><Pin name='Z'/></Pins></System>"
    "</ZSystem>",
    "<ZSystem><System><Nodes><Node number='0' jtagId='1'><Switch/><Switch sLinks='65536'/></Node></Nodes>"
    "</System></ZSystem>",
};

std::string printedAndDeleted(XmlNode* document) {
    return printed(*std::unique_ptr<const XmlNode>(document));
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> seeds(std::begin(s_seeds), std::end(s_seeds));
    seeds.push_back(printedAndDeleted(Configuration(nullptr).buildDefaultConfig()));
    seeds.push_back(printedAndDeleted(Configuration(nullptr).buildCompleteConfig()));
    return writeSeeds(argc, argv, seeds);
}
