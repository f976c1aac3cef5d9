#pragma once

#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/ZCC/ZCCPaths.h"
#include "infr_libs/ZNLoader/ZNUtils.h"

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class NodeConfig;
class TickTock;
class XmlNode;
class XmlParser;

// The network description of a target system: packages, nodes, their cores and ports, links, scan chain,
// boot information, external devices and services. One loader reads one network document, checks it, and
// gives it routing identifiers. Whoever constructs it owns it; it owns the whole model.
//
// Clients read the fields directly, there are no accessors; the classes of the model stand in
// ZNLoaderModel.h. Fields of an element hold texts as written and the numbers made of them. Pointers
// between objects of the model are null until the pass that binds them, and owned where that is said.
//
// A fatal error is thrown, as a `std::string` with every error built so far. After that the loader is fit for
// destruction only. Readers and checks return true for failure, and `open` adds a message of its own; the
// `buildAs...` operations return true for success.
class ZNLoader {
public:
    // Architecture of the switches, which decides the width of routing identifiers and the delays of links.
    enum SwitchArch : int {
        SwitchArchUnknown = 0,
        SwitchArchG4 = 1,
        SwitchArchL1 = 2,
        SwitchArchZssc = 3, // an end of a link on a `ZsscNode`; never the architecture of a network
    };

    enum ExtDeviceClass : int { ExtDeviceNone = 0, ExtDeviceSpiFlash = 1 };

    // The model (ZNLoaderModel.h).
    class Node;
    class ProcNode;
    class DeviceNode;
    class ZsscNode;
    class Core;
    class FreeCore;
    class HoldingCore;
    struct PortDesc;
    struct CoreDeclaration;
    struct DeviceServiceInfo;
    struct ChanendInfo;
    struct Package;
    struct Zlink;
    class ZlinkEnd;
    class ZlinkNormalEnd;
    class ZlinkSodEnd;
    struct ZlinkUserPair;
    struct ExtDevice;
    class BootType;
    class BootTypeSPIMaster;
    class BootTypeFromLink;
    struct NodeCoreTuple;

    // Working record of the reader of the scan chain (ZNLoaderModel.h).
    struct ChainLink;

    using Position = std::vector<unsigned>; // a digit a dimension, the first the most significant

    // ---- The network ----

    std::vector<CoreDeclaration*> m_declarations; // document order; owned
    int m_topology = 0;                           // 1 once the hypercube was tried, 2 once the pile was
    SwitchArch m_switchArch = SwitchArchUnknown;
    std::vector<ExtDevice*> m_devices; // owned; rejected devices are not in it
    std::string m_typeText;
    int m_typeKind = 0; // 1 device, 2 board, 3 platform, 0 anything else
    std::string m_name;
    std::string m_boardId;
    std::string m_znVersion;
    std::vector<Package*> m_packages;      // owned
    XmlNode* m_jtagChainElement = nullptr; // the last one read
    std::vector<Node*> m_nodeOrder;        // a walk over the processors
    std::vector<Node*> m_jtagNodes;        // in position order
    int m_jtagPreDevices = 0;              // a space ahead of the chain: devices and their bits
    int m_jtagPreBits = 0;
    int m_jtagPostDevices = 0; // a space behind it
    int m_jtagPostBits = 0;
    int m_jtagMaxFrequency = 0;             // Hz
    std::vector<Node*> m_nodes;             // order of creation; owned
    std::vector<Node*> m_procNodes;         // the `ProcNode`s of `m_nodes`, in the same order
    std::map<std::string, Node*> m_nodeMap; // filled at the end of each `readNodes`; the first of an id stays
    std::vector<Zlink*> m_normalLinks;      // neither SOD nor touching a `ZsscNode`
    std::vector<Zlink*> m_sodLinks;         // with the SOD flag
    std::vector<Zlink*> m_zsscLinks;        // with a `ZsscNode` at a normal end
    std::vector<Zlink*> m_links;            // document order; owned
    bool m_hasZssc = false;                 // a `ZsscNode` was made
    ZNUtils m_utils;                        // error text so far, and ignored codes
    ZelmUtils* m_zelmUtils = nullptr;       // owned with its handler and string library
    XmlParser* m_parser = nullptr; // of the network document; owned, since elements serve as locations
    ZCCPaths m_paths;              // where package and configuration files are looked for
    std::map<std::string, Position> m_positions;     // of a hypercube: node id to position
    std::map<Position, std::string> m_positionNames; // and back
    std::string m_ownWarnings;                       // where warnings go that nobody asked for
    std::string* m_warnings = nullptr;               // present warning target; not owned
    bool m_znOpened = false;

    // ---- Life ----

    // An empty network, ready for `open`. The warning target is null: without `setWarningTarget` no warning
    // is kept.
    ZNLoader();

    // Reads a network document from a file, or from a stream that stays with the caller; `name` stands for
    // the file in messages. A thrown error leaves the constructor. Warnings are appended to `warnings`; null
    // collects them in `m_ownWarnings`. The loader never prints them.
    ZNLoader(const std::string& fileName, std::string* warnings);
    ZNLoader(const std::string& name, std::istream* stream, std::string* warnings);

    ~ZNLoader();

    ZNLoader(const ZNLoader&) = delete;
    ZNLoader& operator=(const ZNLoader&) = delete;

    // A target that outlives the loader, or null for `m_ownWarnings`. A target gets every warning.
    void setWarningTarget(std::string* warnings);

    // Where the next warning goes, null for nowhere: once `m_ownWarnings` has `s_maxOwnWarnings` bytes or
    // more, a line says so there, and no more are kept. For the sources of the loader alone.
    std::string* warningTarget();

    // Many more than the most nodes that identifiers of 16 bits allow can earn: 1 KiB each. A few KiB of
    // flags that nobody knows would earn hundreds of MiB, since each warning shows all of them.
    static constexpr std::size_t s_maxOwnWarnings = std::size_t{64} << 20;

    // Leaves out the warnings that a compiler's user shouldn't see (11135).
    void addStandardCompileTimeDiagnosticIgnores();

    // Reads, checks and positions the network. A loader opens one document only (assertion).
    void open(const std::string& fileName);
    void open(const std::string& fileName, std::istream* stream);

    // ---- Lookups ----

    // The first node with this id; null if there is none.
    Node* findNodeForId(const std::string& id) const;

    // The index in `m_procNodes`; 99999 if there is none.
    unsigned nodeOrdinalOfId(const std::string& id) const;

    // The first device of this class on this core; null if there is none, or for a null node.
    ExtDevice* findDevice(ExtDeviceClass deviceClass, const Node* node, unsigned core) const;

    // The `Reference` text of a core, by position in the scan chain and core number; empty if there is none.
    // Of several cores with one number the last counts.
    std::string findReferenceCode(unsigned nodeIndex, unsigned coreNumber) const;

    // Diagnostics, through the trace output of a loader's error handler.
    void dumpZN(ZNLoader* loader);
    void dumpNode(Node* node);
    void dumpNodeVecPtrs(std::vector<Node*>& nodes, const char* name);

    // ---- Top level of the document (ZNLoaderDocument.cpp) ----

    // All children of the root, in document order: what `open` does ahead of its passes.
    bool readNetwork(XmlNode* root);

    bool readType(XmlNode* element);
    bool readName(XmlNode* element);
    bool readBoardId(XmlNode* element);
    bool readZNVersion(XmlNode* element);
    bool readPackages(XmlNode* element);
    bool readNodes(XmlNode* element, Package* package); // null: outside any package
    bool readDeclarations(XmlNode* element);

    // Finds and parses the file of a package's type, at its first use.
    void loadPackageFile(Package& package, XmlNode* element);

    // ---- Nodes (ZNLoaderNodes.cpp) and cores (ZNLoaderCores.cpp) ----

    bool readNode(XmlNode* element, Package* package); // null: outside any package
    bool readCore(XmlNode* element, ProcNode* node);

    // Finds and reads the configuration of a node's type, at its first use.
    void loadConfiguration(ProcNode& node, XmlNode* element);

    // ---- The values of attributes (ZNLoaderValues.cpp) ----

    // Hz of a text such as "400", "400MHz", "32k" or "100Hz"; a bare number means MHz. The element is where
    // a fault is reported.
    int freqInHertz(const std::string& text, XmlNode* element);

    // Twice a feedback divider such as "5", "5.5" or "0x5". False for a text that is none.
    bool parseFeedbackDivMul2(const std::string& text, unsigned& out);

    // The pieces between commas as they stand, no piece for an empty text. The caller deletes the vector.
    std::vector<std::string>* getCommaSeparatedArgs(const std::string& text);

    // ---- Clocks (ZNLoaderClocks.cpp) ----

    // Binds `OscillatorSrc` to its node, and takes over the frequency.
    void propagateZssc();

    // Fills `m_pllValues` of each processor that has an oscillator and a known planner.
    void planClocks();

    // ---- Links (ZNLoaderLinks.cpp) and scan chain (ZNLoaderScanChain.cpp) ----

    bool readLinks(XmlNode* element);

    // The delays in a text such as "3,4" or "5clk"; delays in clocks are made up for what the switch of this
    // architecture adds by itself.
    void parseDelays(const std::string& text, int& inter, int& intra, SwitchArch arch, XmlNode* where);
    int parseClocks(std::string& text, bool& inClocks);
    std::string cleanStr(std::string text);

    bool readJTAGChain(XmlNode* element);
    static bool jtagPositionComparitor(const ChainLink& first, const ChainLink& second);

    // ---- Boot (ZNLoaderBoot.cpp), devices (ZNLoaderDevices.cpp) and services (ZNLoaderServices.cpp) ----

    bool readBoot(XmlNode* element, ProcNode* node);
    bool readDevices(XmlNode* element);
    bool resolveBootReferences();

    // The caller owns the result.
    DeviceServiceInfo* handleServiceNode(XmlNode* element, bool onCore);

    // The signature of a prototype, and its name: the text before the first "(".
    std::string ensigProto(const std::string& proto, std::string& name, XmlNode* element);

    // ---- Consistency checks (ZNLoaderChecks.cpp), in the order in which they run ----

    bool checkNodes();
    bool checkCoreRefs();
    bool checkPackages();
    bool checkJTAGChain();
    bool associateNodesWithLinks();
    bool checkLinks();
    bool checkLinkDups();

    // ---- Topology and routing (ZNLoaderTopology.cpp, ZNLoaderHypercube.cpp, ZNLoaderPile.cpp) ----
    // They ask the links that `associateNodesWithLinks` has bound and sorted. `fileName` stands in messages.

    // Tries the hypercube, and the pile where the architecture allows one. False for success.
    bool buildPositions(const char* fileName);

    // Each recognises its topology, and gives `m_routingId` of the processors, `m_users` of the links and
    // `m_nodeOrder`. After a false result, or a throw, these fields may be written in part.
    bool buildAsHypercube(const char* fileName);
    bool buildAsPile(const char* fileName);

    // Adds the routes to nodes that aren't processors to `m_users`.
    void addDeviceRouteInfo();

    // The id of the first node on the way; of several shortest ways the one whose sorted ids come first.
    // Empty when there is no way, or for an unknown id.
    std::string findShortestRouteRoot(const std::string& from, const std::string& to) const;

    void assignRoutingIdsForZssc(const char* fileName);

private:
    // A file of the device paths that objects of one type share: thousands of nodes need it read once.
    template<class Content>
    struct SharedFile {
        std::string m_path;
        std::shared_ptr<Content> m_content; // null until it was read
    };

    void initialise();

    bool readPackage(XmlNode* element, XmlNode* packages);
    void readComponent(XmlNode* element, Package& package);
    bool readUnpackagedNodes(XmlNode* element);
    void readDeclaration(XmlNode* element);
    bool readProcNode(XmlNode* element, Package* package);
    bool readDeviceNode(XmlNode* element);
    bool readZsscNode(XmlNode* element, Package* package);
    void readLink(XmlNode* element);
    void readDevice(XmlNode* element);
    void checkDeviceNames();
    void bindBootDevices();
    void bindBootees();
    void bootBootees();
    void bootTheRest();
    std::unordered_map<std::string, ExtDevice*> devicesByName() const; // the first of a name counts

    // Enters the nodes that were added since the last call into the maps below and `m_nodeMap`.
    void offerNodes();

    bool m_leavesWarningsOut = false;
    std::string m_fileName;         // as given to `open`: what messages about the document as a whole name
    std::size_t m_nodesOffered = 0; // nodes that `m_nodeMap` covers
    std::size_t m_procNodesOffered = 0;                            // processors that `m_procOrdinals` covers
    std::unordered_map<std::string, unsigned> m_procOrdinals;      // id to index; the first of an id stays
    std::size_t m_devicesNamed = 0;                                // devices that `m_deviceOrdinals` covers
    std::unordered_map<std::string, std::size_t> m_deviceOrdinals; // name to index
    std::unordered_map<std::string, SharedFile<XmlParser>> m_packageFiles;    // by type
    std::unordered_map<std::string, SharedFile<NodeConfig>> m_configurations; // by short type
};

#include "infr_libs/ZNLoader/ZNLoaderModel.h"
