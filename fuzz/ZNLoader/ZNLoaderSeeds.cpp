// Writes the seeds of the fuzz target: networks of every shape and of every kind of element.

#include "tests/support/FuzzSeeds.h"
#include "tests/support/NetworkBuilder.h"

#include <string>

namespace {

NetworkBuilder line(unsigned numNodes) {
    NetworkBuilder network;
    for (unsigned node = 0; node < numNodes; ++node)
        network.processor("n" + std::to_string(node));
    for (unsigned node = 1; node < numNodes; ++node)
        network.link("n" + std::to_string(node - 1), "ZLA", "n" + std::to_string(node), "ZLB");
    return network;
}

NetworkBuilder ring(unsigned numNodes) {
    return line(numNodes).link("n" + std::to_string(numNodes - 1), "ZLC", "n0", "ZLD");
}

NetworkBuilder clocks(const std::string& attributes) {
    return NetworkBuilder()
        .processor("a", "L1", 1, attributes)
        .processor("b", "L1", 1, attributes)
        .link("a", "Z0LA", "b", "Z3LD", "Delays='5clk,6CLK' Flags='noinit'");
}

// Every element that a document can have.
NetworkBuilder everything() {
    return NetworkBuilder()
        .coreChildren("<Port Location='ZS1_PORT_1A' Name='PORT_LED' Mods='out'/>")
        .processor("a", "L1x2", 2, "OscillatorSrc='z' SystemFrequency='400MHz' RoutingId='0x10'",
                   "<Boot><Source Location='spi:flash'/><Bootee NodeId='d' Core='0'/></Boot>")
        .device("d", "Flags='postboot' RoutingId='3'",
                "<Service Id='1' Proto='void f(chanend x, chanend y)' Flags='SOD'>"
                "<Chanend Identifier='y' End='0:2' Remote='1'/><Chanend Identifier='x' End=':3'/></Service>")
        .add("<Nodes><Node Id='z' Type='periph:ZS1-SU' Reference='usb[0]' Oscillator='24MHz'>"
             "<Service Proto='f()'/></Node></Nodes>")
        .add("<JTAGChain MaxFrequency='10MHz'><JTAGSpace Devices='1' BitLength='4'/>"
             "<JTAGDevice NodeId='z' Position='9'/></JTAGChain>")
        .add("<Links><Link Encoding='2wire'><LinkEndpoint NodeId='a' Link='1'/><LinkEndpoint NodeId='z' "
             "Link='2'/></Link><Link Encoding='5wire' Flags='sod'><LinkEndpoint NodeId='a' Link='3'/>"
             "<LinkEndpoint RoutingId='5' Chanend='2' NodeId='d'/></Link></Links>")
        .add("<ExternalDevices><Device NodeId='a' Core='0' Class='SPIFlash' Name='flash' Type='x'>"
             "<Attribute Name='size' Value='8'/></Device></ExternalDevices>")
        .add("<Type>Board</Type><Name>name</Name><ZNVersion>1</ZNVersion><BoardId>2</BoardId>")
        .add("<Declarations><Declaration>core x</Declaration></Declarations>");
}

const std::string s_seeds[] = {
    "",
    "<Network/>",
    everything().text(),
    line(2).text(),
    line(5).text(),
    ring(3).text(),
    ring(4).text(),
    NetworkBuilder::hypercube(0).text(),
    NetworkBuilder::hypercube(1, "G4").text(),
    NetworkBuilder::hypercube(3, "G4x2", 2).text(),
    NetworkBuilder::hypercube(2, "Any").text(),
    clocks("Oscillator='25MHz' SystemFrequency='333MHz' ReferenceFrequency='90MHz'").text(),
    clocks("Oscillator='25MHz' SystemFrequency='400MHz' PllFeedbackDivMin='20.5'").text(),
    clocks("Oscillator='20' PllInputDiv='1' PllFeedbackDiv='20' PllOutputDiv='1' RefDiv='4'").text(),
    clocks("Oscillator='20' PllDividerStageOneReg='0' PllMultiplierStageReg='39' PllDividerStageTwoReg='0' "
           "RefDiv='4'")
        .text(),
};

} // namespace

int main(int argc, char** argv) {
    return writeSeeds(argc, argv, s_seeds);
}
