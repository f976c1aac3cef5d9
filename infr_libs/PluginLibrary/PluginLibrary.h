#pragma once

#include <memory>
#include <string>
#include <vector>

class ElfHandler;
class ErrorHandler;
class ZNLoader;

// The plugin's one view of the program under simulation: which cores there are, which ELF images belong to
// a core, and the network description. One object is made for each plugin instance while it starts, and
// goes before the first clock; what it hands out goes with it.
//
// This is a stand-by: it reads a plain text that lists cores, and knows neither ELF images nor a network.
class PluginLibrary {
public:
    PluginLibrary();
    virtual ~PluginLibrary();

    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    // Opens an image: one core a line, as name, node number and core number, in the order of the network.
    // False, after a message, when the image can't be read; every other question then ends in
    // `checkZeLoaded`.
    bool openZe(const char* fileName);

    // The number of distinct cores that have an image. Ends the process when nothing is open.
    unsigned int getNumActiveProcessors();

    // The first core of the network; false, with the results untouched, when there is none.
    bool findDefaultZNCore(std::string& name, unsigned int& node, unsigned int& core);

    // The core of exactly that name; false, with the results untouched, when there is none.
    bool findZNCore(const std::string& name, unsigned int& node, unsigned int& core);

    // The ELF images of a core, in image order; empty for a core without one. The library owns the images.
    std::vector<ElfHandler*> getElfHandlers(std::string coreName) const;

    // The network, owned by the library; null when there is none.
    ZNLoader* getZNLoader() const;

    // False, after a message that names the question, when nothing is open.
    bool checkZeLoaded(const char* what);

private:
    struct NamedCore {
        std::string name;
        unsigned int node;
        unsigned int core;
    };

    std::unique_ptr<ErrorHandler> m_errorHandler;
    std::vector<NamedCore> m_cores; // in the order of the image
    bool m_loaded = false;
};
