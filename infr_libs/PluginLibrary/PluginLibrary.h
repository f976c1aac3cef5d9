#pragma once

#include "infr_libs/ErrorHandler/ZelmUtils.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class AutoDefines;
class ElfHandler;
class ErrorHandler;
class IosHandler;
class StringLibrary;
class XmlNode;
class ZNLoader;
struct ZBHandler;
struct ZBSectorHolder_tag;

// The plugin's one view of the program under simulation: which cores there are, which ELF images belong to a
// core, which names ports have, and which pads lie behind a port. One object is made for each plugin instance
// while it starts, and goes before the first clock; what it hands out goes with it.
//
// A core has three identities: its name, which is the whole `Reference` text of the network; the position of
// its node in the scan chain with its number, as images are labelled; and its node number with its number, as
// the simulator addresses it. Each operation says which it takes.
//
// Failures are told on standard error and seen as a false result. Faults inside an ELF image or the
// configuration document end the process with status 1.
class PluginLibrary {
public:
    PluginLibrary();
    virtual ~PluginLibrary();

    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    // Opens an image file; true when its pin and port map was made. A network that can't be loaded is told,
    // and loading goes on without one. Opened again, ELF images add up, network and map are replaced by those
    // that load.
    bool openZe(const char* fileName);

    // The network, owned by the library; null when there is none.
    ZNLoader* getZNLoader() const;

    // The definitions of the image's architecture, owned by the library; null before an image is open.
    AutoDefines* getAutoDefines() const;

    // The ELF images of a core, in image order; empty for a core without one. The library owns the images.
    std::vector<ElfHandler*> getElfHandlers(std::string coreName) const;

    // The number of distinct cores that have an image, and the number of cores of a node that have ports.
    // Both end the process when nothing is open.
    unsigned int getNumActiveProcessors();
    unsigned int getNumProcessors(unsigned int node);

    // Whether a pin of this package is known.
    bool isPackageValid(const std::string& package) const;

    // The look-ups leave the results untouched where they return false.

    // The name of the core with this number, on the node at this position in the scan chain.
    bool getCoreName(std::string& name, unsigned int position, unsigned int core) const;

    // The first core of the network, and the core of exactly that name. The node number is the routing
    // identifier.
    bool findDefaultZNCore(std::string& name, unsigned int& node, unsigned int& core);
    bool findZNCore(const std::string& name, unsigned int& node, unsigned int& core);

    // Where the first port of that name is. The node number is the number that the node's id spells.
    bool findZNPort(const std::string& name, std::string& location, unsigned int& node, unsigned int& core);

    // The pad behind a pin.
    bool getPinPad(const std::string& package, const std::string& pin, unsigned int& pad);

    // Appends the pads behind bits of a port: `count` of them from bit `first` on, as many as the port is
    // wide for a count of 0. False, after a message, at the first bit that the port doesn't have or that no
    // pin is connected to; the pads before it stay appended.
    bool getPortPads(unsigned int node, unsigned int core, const std::string& port, unsigned int count,
                     unsigned int first, std::vector<unsigned int>& pads);

    // False, after a message that names the question, when nothing is open.
    bool checkZeLoaded(const char* what);

    // The sectors of a type in file order, owned by the container.
    static std::vector<ZBSectorHolder_tag*> getSectors(const ZBHandler* container, int type);

private:
    struct DeleteContainer {
        void operator()(ZBHandler* container) const;
    };

    void createZNLoader();
    void createElfHandlers();
    bool createIosHandler(const char* fileName);

    // Reported through by all objects below, so it goes last.
    std::unique_ptr<ErrorHandler> m_errorHandler;
    std::unique_ptr<StringLibrary> m_stringLibrary;
    std::unique_ptr<AutoDefines> m_autoDefines; // null until an image is open
    ZelmUtils m_utils;                          // the record of the three

    std::unique_ptr<ZBHandler, DeleteContainer> m_zeHandler; // null until an image is open
    std::unique_ptr<IosHandler> m_iosHandler;                // null: nothing is open
    std::unique_ptr<ZNLoader> m_znLoader;                    // null: no network
    std::map<std::string, std::vector<std::unique_ptr<ElfHandler>>> m_elfHandlers; // by core name
    std::set<std::string> m_activeCores;                                           // those with an image
};
