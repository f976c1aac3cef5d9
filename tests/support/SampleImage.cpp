#include "tests/support/SampleImage.h"

#include "tests/support/ElfBuilder.h"

#include <algorithm>
#include <map>
#include <sstream>

namespace {

// The node numbers in order of appearance: their places are positions in the scan chain.
std::vector<unsigned int> nodesOf(const std::vector<ImageCore>& cores) {
    std::vector<unsigned int> nodes;
    for (const ImageCore& core : cores) {
        if (std::find(nodes.begin(), nodes.end(), core.node) == nodes.end())
            nodes.push_back(core.node);
    }
    return nodes;
}

std::string declarationsFor(const std::vector<ImageCore>& cores) {
    std::map<std::string, bool> isArray; // by name without index
    for (const ImageCore& core : cores)
        isArray[core.name.substr(0, core.name.find('['))] = core.name.find('[') != std::string::npos;
    std::string text = "<Declarations>\n";
    for (const auto& [name, array] : isArray)
        text += "  <Declaration>core " + name + (array ? "[64]" : "") + "</Declaration>\n";
    return text + "</Declarations>\n";
}

} // namespace

std::string sampleNetwork(const std::vector<ImageCore>& cores) {
    const std::vector<unsigned int> nodes = nodesOf(cores);
    std::string text = "<Network>\n" + declarationsFor(cores);
    text += "<Packages><Package Id='package' Type='Package'>\n<Nodes>\n";
    for (const unsigned int node : nodes) {
        const std::string number = std::to_string(node);
        const auto isHere = [&](const ImageCore& core) { return core.node == node; };
        const bool hasTwo = std::count_if(cores.begin(), cores.end(), isHere) == 2;
        text += "  <Node Id='" + number + "' InPackageId='" + number + "' Type='" + (hasTwo ? "L1x2" : "L1") +
                "' RoutingId='" + number + "'>\n";
        for (const ImageCore& core : cores) {
            if (isHere(core))
                text += "    <Core Number='" + std::to_string(core.core) + "' Reference='" + core.name +
                        "'>" + core.children + "</Core>\n";
        }
        text += "  </Node>\n";
    }
    text += "</Nodes>\n</Package></Packages>\n<JTAGChain>\n";
    for (const unsigned int node : nodes)
        text += "  <JTAGDevice NodeId='" + std::to_string(node) + "'/>\n";
    text += "</JTAGChain>\n<Links>\n";
    for (std::size_t i = 1; i < nodes.size(); ++i)
        text += "  <Link Encoding='5wire'><LinkEndpoint NodeId='" + std::to_string(nodes[i - 1]) +
                "' Link='ZLA'/><LinkEndpoint NodeId='" + std::to_string(nodes[i]) + "' Link='ZLB'/></Link>\n";
    return text + "</Links>\n</Network>\n";
}

std::string sampleConfiguration() {
    const auto pin = [](const std::string& name, const std::string& port, unsigned bit) {
        return "  <Pin name=\"PKG:" + name + "\"><Port name=\"" + port +
               "\" node=\"0\" core=\"0\" priority=\"0\" bitNum=\"" + std::to_string(bit) + "\"/></Pin>\n";
    };
    return "<ZSystem>\n<System>\n<Nodes>\n"
           "<Node number=\"0\" jtagId=\"0x2633\"><Processor number=\"0\"/></Node>\n</Nodes>\n<Pins>\n" +
           pin("X0", "ZS1_PORT_1A", 0) + pin("X1", "ZS1_PORT_4A", 0) + pin("X2", "ZS1_PORT_4A", 1) +
           pin("X3", "ZS1_PORT_4A", 2) + "</Pins>\n</System>\n</ZSystem>\n";
}

std::string sampleProgram(const std::vector<std::string>& functions) {
    ElfBuilder elf;
    std::uint32_t address = 0x10000;
    for (const std::string& function : functions) {
        elf.addFunction(function, address);
        address += 0x10;
    }
    return elf.build().bytes;
}

std::string sampleImage(const std::vector<ImageCore>& cores) {
    ImageBuilder image;
    image.config(sampleConfiguration()).zn(sampleNetwork(cores));
    const std::vector<unsigned int> nodes = nodesOf(cores);
    for (const ImageCore& core : cores) {
        const auto position =
            static_cast<unsigned int>(std::find(nodes.begin(), nodes.end(), core.node) - nodes.begin());
        const std::vector<std::string> plain{sampleProgram({})};
        for (const std::string& program : core.programs.empty() ? plain : core.programs)
            image.elf(position, core.core, program);
    }
    return image.end().bytes();
}

std::string imageOfCores(const std::string& list) {
    std::vector<ImageCore> cores;
    std::istringstream lines(list);
    for (ImageCore core; lines >> core.name >> core.node >> core.core;)
        cores.push_back(core);
    if (cores.empty())
        return ImageBuilder().config(sampleConfiguration()).elf(0, 0, sampleProgram({})).bytes();
    return sampleImage(cores);
}
