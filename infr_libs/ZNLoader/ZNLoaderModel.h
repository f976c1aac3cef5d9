#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"

#include <cstdio>
#include <unordered_set>

// The classes of the network's model. Documents' readers make them and the loader owns them; tests and tools
// may build a model by hand and hand it over by appending to the loader's fields. Fields start as zero,
// false, null or empty. Frequencies are in Hz.

// ---- Cores ----

// A port of a core and the name that the network gives it: `location` is the architecture's name, such as
// ZS1_PORT_1A.
struct ZNLoader::PortDesc {
    std::string name;
    std::string location;
    std::string mods;
};

// A channel end of a service.
struct ZNLoader::ChanendInfo {
    XmlNode* m_element = nullptr;
    std::string m_identifier; // the parameter of the prototype
    std::string m_endText;
    std::string m_remoteText;
    unsigned m_end = 0; // node number shifted left by 8, or'ed with the channel number
    unsigned m_remote = 0;
    bool m_endHasNode = false;
    bool m_endHasNumber = false;
    bool m_remoteHasNode = false;
    bool m_remoteHasNumber = false;
};

// A function that a node offers over channel ends.
struct ZNLoader::DeviceServiceInfo {
    std::string m_id;
    std::string m_proto;                  // "void f(chanend a, chanend b)"
    std::string m_sig;                    // "fS{0}(chd,chd)"
    std::string m_name;                   // the prototype up to its "("
    std::vector<ChanendInfo*> m_chanends; // in the order of the prototype's parameters; owned
    bool m_sod = false;

    DeviceServiceInfo() = default;
    ~DeviceServiceInfo();
    DeviceServiceInfo(const DeviceServiceInfo&) = delete;
    DeviceServiceInfo& operator=(const DeviceServiceInfo&) = delete;
};

// The name of a core, or of an array of cores, that `Reference` texts may use.
struct ZNLoader::CoreDeclaration {
    XmlNode* m_element = nullptr;
    std::string m_text; // as written
    std::string m_kind; // always "core"
    bool m_isArray = false;
    int m_size = 0; // of an array
    std::string m_name;
};

class ZNLoader::Core {
public:
    virtual ~Core();
    virtual int getType() = 0; // 0 for a `FreeCore`, 1 for a `HoldingCore`

    XmlNode* m_element = nullptr;
    int m_number = 0;
    std::string m_reference; // the whole `Reference` value, such as "stdcore[0]": the core's name
    bool m_refIndexed = false;
    std::string m_refBase;      // the part before "["
    std::string m_refIndexText; // the part between the brackets
    int m_refIndex = 0;
};

// A core that runs programs.
class ZNLoader::FreeCore : public Core {
public:
    static constexpr int s_type = 0;

    ~FreeCore() override;
    int getType() override { return s_type; }

    std::vector<PortDesc> m_ports;
    std::vector<DeviceServiceInfo*> m_services; // owned
};

// What stands for a core in a device node.
class ZNLoader::HoldingCore : public Core {
public:
    static constexpr int s_type = 1;

    int getType() override { return s_type; }
};

// ---- Boot ----

// Where a node takes its program from.
class ZNLoader::BootType {
public:
    virtual ~BootType();
    virtual int getBootStyle() { return 0; }

    ExtDevice* m_device = nullptr; // not owned; the device that holds the program
};

class ZNLoader::BootTypeSPIMaster : public BootType {
public:
    static constexpr int s_style = 1;

    int getBootStyle() override { return s_style; }

    std::string m_deviceName;
    bool m_isDefault = false; // the document says nothing about the node's boot
};

class ZNLoader::BootTypeFromLink : public BootType {
public:
    static constexpr int s_style = 2;

    int getBootStyle() override { return s_style; }
};

// A node that another boots.
struct ZNLoader::NodeCoreTuple {
    Node* m_node = nullptr; // null for an unknown id
    Core* m_core = nullptr; // null if the node has no such core
    std::string m_nodeId;
    std::string m_coreText;
};

// ---- Nodes ----

class ZNLoader::Node {
public:
    Node() = default;
    virtual ~Node();
    virtual int getType() = 0; // 1 for a `ProcNode`, 2 for a `DeviceNode`, 3 for a `ZsscNode`

    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    XmlNode* m_element = nullptr;
    std::string m_id;
    std::string m_inPackageId;
    std::string m_type;      // the whole `Type` value
    std::string m_shortType; // its part behind the first colon, or all of it
    unsigned m_oscillatorHz = 0;
    std::string m_oscillatorSrc;          // id of the `ZsscNode` that drives this one
    ZsscNode* m_oscillatorNode = nullptr; // that node
    bool m_systemFreqByHz = false;        // the PLL's dividers were not given
    unsigned m_systemFreq = 0;
    unsigned m_pllInputDiv = 0;
    unsigned m_pllFeedbackDiv = 0; // twice the divider; given as a register value it is not doubled
    unsigned m_pllOutputDiv = 0;
    bool m_referenceFreqByHz = false; // `RefDiv` was not given
    unsigned m_referenceFreq = 0;
    unsigned m_refDiv = 0;
    unsigned m_achievedSystemFreq = 0;
    unsigned m_achievedReferenceFreq = 0;
    unsigned m_pllFeedbackDivMin = 0;      // twice the divider
    std::vector<unsigned> m_pllValues;     // of a planned node: PLL register, reference divider's register
    BootType* m_boot = nullptr;            // owned
    std::vector<NodeCoreTuple*> m_bootees; // owned
    unsigned m_routingId = 0;
    bool m_routingIdSet = false; // `m_routingId` is fixed
};

// A processor.
class ZNLoader::ProcNode : public Node {
public:
    static constexpr int s_type = 1;

    ~ProcNode() override;
    int getType() override { return s_type; }

    // Takes a configuration that nodes of one type share.
    void setConfig(const std::shared_ptr<NodeConfig>& config);

    std::vector<Core*> m_cores; // owned
    std::string m_configFile;
    NodeConfig* m_config = nullptr; // owned, by this node or, as `setConfig` sets it, by all of its type

private:
    std::shared_ptr<NodeConfig> m_sharedConfig;
};

// A peripheral device on the network.
class ZNLoader::DeviceNode : public Node {
public:
    static constexpr int s_type = 2;
    static constexpr unsigned s_postBoot = 1u << 0;

    DeviceNode();
    ~DeviceNode() override;
    int getType() override { return s_type; }

    unsigned m_flags = 0;
    std::vector<DeviceServiceInfo*> m_services; // owned
    HoldingCore* m_holdingCore;                 // owned
};

// A switch and controller node.
class ZNLoader::ZsscNode : public Node {
public:
    static constexpr int s_type = 3;

    ~ZsscNode() override;
    int getType() override { return s_type; }

    std::string m_refBase; // `Reference`, split as that of a `Core`
    bool m_refIndexed = false;
    std::string m_refIndexText;
    int m_refIndex = 0;
    std::string m_oscillatorText;
    unsigned m_oscillatorMHz = 0;               // rounded up
    std::vector<DeviceServiceInfo*> m_services; // owned
};

struct ZNLoader::Package {
    std::string m_id;
    std::string m_type;
    std::string m_file;
    XmlParser* m_parser = nullptr; // of the package file; owned, by this package or by all of its type
    XmlNode* m_element = nullptr;
    std::map<std::string, std::string> m_nodeIds; // `InPackageId` to node id

    Package() = default;
    ~Package();
    Package(const Package&) = delete;
    Package& operator=(const Package&) = delete;

    // Takes a package file that packages of one type share.
    void setParser(const std::shared_ptr<XmlParser>& parser);

    // Whether some identifier of `m_nodeIds` stands for this node.
    bool holdsNode(const std::string& nodeId);

    // Adds to `m_nodeIds`.
    void addNode(const std::string& inPackageId, const std::string& nodeId);

private:
    std::shared_ptr<XmlParser> m_sharedParser;
    std::unordered_set<std::string> m_heldNodes; // the values of `m_nodeIds`
};

// ---- Links ----

class ZNLoader::ZlinkEnd {
public:
    virtual bool isNormal() = 0; // false for the end of a link that is for a device's own use (SOD)
    virtual ~ZlinkEnd();

    std::string m_delays; // empty: those of the link hold
    int m_interTokenDelay = 0;
    int m_intraTokenDelay = 0;
    std::string m_nodeId;
    Node* m_node = nullptr;
};

class ZNLoader::ZlinkNormalEnd : public ZlinkEnd {
public:
    bool isNormal() override { return true; }

    std::string m_linkText; // "Z0LA", "ZLA" or a number
    int m_linkNumber = 0;
};

class ZNLoader::ZlinkSodEnd : public ZlinkEnd {
public:
    bool isNormal() override { return false; }

    std::string m_routingIdText;
    std::string m_chanendText;
    int m_routingId = 0;
    int m_chanend = 0;
};

// A route that crosses a link. A network of many nodes has millions: two words each.
struct ZNLoader::ZlinkUserPair {
    Node* m_source;
    Node* m_destination;

    bool operator==(const ZlinkUserPair&) const = default;
};

struct ZNLoader::Zlink {
    static constexpr unsigned s_noInit = 1u << 0;
    static constexpr unsigned s_sod = 1u << 1;
    static constexpr unsigned s_zssc = 1u << 2; // touches a `ZsscNode`

    XmlNode* m_element = nullptr;
    std::string m_encoding;
    int m_wires = 0; // 5 or 2
    std::string m_delays;
    unsigned m_flags = 0;
    ZlinkEnd* m_end0 = nullptr; // owned
    ZlinkEnd* m_end1 = nullptr; // owned
    std::vector<ZlinkUserPair> m_users;

    Zlink() = default;
    ~Zlink();
    Zlink(const Zlink&) = delete;
    Zlink& operator=(const Zlink&) = delete;
};

// ---- External devices ----

struct ZNLoader::ExtDevice {
    struct DeviceAttribute {
        std::string m_name;
        std::string m_value;
        XmlNode* m_element = nullptr;
    };

    Node* m_node = nullptr;
    int m_core = 0;
    ExtDeviceClass m_class = ExtDeviceNone;
    std::string m_name;
    std::string m_type;
    std::vector<DeviceAttribute*> m_attributes; // owned
    XmlNode* m_element = nullptr;

    ExtDevice() = default;
    ~ExtDevice();
    ExtDevice(const ExtDevice&) = delete;
    ExtDevice& operator=(const ExtDevice&) = delete;
};

// ---- Working records ----

// An entry of the scan chain as it is read: a device, or a space of several without a node.
struct ZNLoader::ChainLink {
    int m_position = 0;
    Node* m_node = nullptr;
    int m_deviceCount = 0;
    int m_bitLength = 0;

    // A diagnostic.
    void dump(FILE* trace = stdout) const;
};
