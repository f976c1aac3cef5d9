#include "infr_libs/PluginLibrary/PluginLibrary.h"

#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <fstream>

PluginLibrary::PluginLibrary() : m_errorHandler(std::make_unique<ErrorHandler>()) {}

PluginLibrary::~PluginLibrary() = default;

bool PluginLibrary::openZe(const char* fileName) {
    std::ifstream image(fileName);
    if (!image) {
        m_errorHandler->fatalError(false, "Error loading file %s: %s\n", fileName,
                                   "Could not open input file");
        return false;
    }
    for (NamedCore core; image >> core.name >> core.node >> core.core;)
        m_cores.push_back(core);
    m_loaded = true;
    return true;
}

unsigned int PluginLibrary::getNumActiveProcessors() {
    ZELM_ASSERT(checkZeLoaded("getNumActiveProcessors"));
    return static_cast<unsigned int>(m_cores.size());
}

bool PluginLibrary::findDefaultZNCore(std::string& name, unsigned int& node, unsigned int& core) {
    if (m_cores.empty())
        return false;
    name = m_cores.front().name;
    node = m_cores.front().node;
    core = m_cores.front().core;
    return true;
}

bool PluginLibrary::findZNCore(const std::string& name, unsigned int& node, unsigned int& core) {
    const auto found = std::ranges::find(m_cores, name, &NamedCore::name);
    if (found == m_cores.end())
        return false;
    node = found->node;
    core = found->core;
    return true;
}

std::vector<ElfHandler*> PluginLibrary::getElfHandlers(std::string) const {
    return {};
}

ZNLoader* PluginLibrary::getZNLoader() const {
    return nullptr;
}

bool PluginLibrary::checkZeLoaded(const char* what) {
    if (m_loaded)
        return true;
    m_errorHandler->fatalError(false, "ERROR: ZE not loaded - cannot handle '%s'\n", what);
    return false;
}
