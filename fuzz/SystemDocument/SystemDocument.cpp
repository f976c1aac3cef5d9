// Gives the input, a ZSystem document, to everything that reads one: the check and the searches of the
// configuration, the trace items, the choice of an architecture, the pin map and the node configuration.

#include "infr_libs/AutoDefines/AutoDefines.h"
#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "infr_libs/IosHandler/IosHandler.h"
#include "infr_libs/ZNLoader/NodeConfig.h"
#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/OwnedUtils.h"
#include "tests/support/XmlText.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// Faults are what most inputs hold.
template<typename Body>
void ignoreFaults(const Body& body) {
    try {
        body();
    } catch (const std::string&) {
        // a message
    } catch (const std::out_of_range&) {
        // the input ended in a comment within a text value
    }
}

template<typename Handler>
void readTree(const std::string& text) {
    OwnedUtils<Handler> utils;
    std::istringstream stream(text);
    const XmlParser parser("fuzz", utils.get(), &stream);
    XmlNode* const root = parser.getRoot();
    if (!root)
        return;
    Configuration configuration(utils.get());
    ignoreFaults([&] { configuration.findNodeWithAttributeValue(root, "Node", "number", 1U); });
    if (XmlNode* const traces = configuration.findNode(root, "TraceConfig"))
        ignoreFaults([&] { utils.handler.handleTraceConfigItems(traces); });

    std::unique_ptr<AutoDefines> defines;
    ignoreFaults([&] { defines.reset(AutoDefines::createAutoDefines(root, &utils.handler)); });
    utils.utils.autoDefines = defines.get();
    if (XmlNode* const system = root->findNode("System"))
        ignoreFaults([&] {
            const IosHandler map(system, utils.get());
            written([&](FILE* file) { map.dump(file); });
        });
}

// The node configuration is read from a file; this one stands in memory. It holds the check as well.
void readNodeConfig(const std::string& text) {
    const int file = memfd_create("fuzz", 0);
    if (file < 0 || write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        std::abort();
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    ignoreFaults([&] {
        NodeConfig config(path.c_str());
        for (int core = 0; core < config.getNumCores(); ++core)
            config.getCoreConfig(core, false);
    });
    close(file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = withoutStatedEnd(std::string(reinterpret_cast<const char*>(data), size));
    ignoreFaults([&] { readTree<CatchableErrorHandler>(text); });
    ignoreFaults([&] { readTree<CollectingErrorHandler>(text); });
    readNodeConfig(text);
    return 0;
}
