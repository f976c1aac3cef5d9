// The `Node` element: processors, device nodes and ZSSC nodes.

#include "infr_libs/ZNLoader/NodeConfig.h"
#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <cstdlib>

namespace {

using Node = ZNLoader::Node;
using ProcNode = ZNLoader::ProcNode;
using DeviceNode = ZNLoader::DeviceNode;
using ZsscNode = ZNLoader::ZsscNode;

constexpr char s_zsscType[] = "ZS1-SU";
constexpr UnknownName s_unknownNodeAttribute = {11004,
                                                "Node node contains unknown attribute \"%s\"; ignoring.\n"};

// ---- Readers of attributes ----

template<class Reading>
bool storeType(Reading& reading, const std::string& value) {
    reading.m_target.m_type = value;
    reading.m_target.m_shortType = value.substr(value.find(':') + 1); // npos + 1: the whole value
    return false;
}

template<class Reading>
bool storeRoutingId(Reading& reading, const std::string& value) {
    reading.m_target.m_routingIdSet = true;
    return storeInt<&Node::m_routingId>(reading, value);
}

using ProcReading = AttributeReading<ProcNode>;

bool storeProcType(ProcReading& reading, const std::string& value) {
    storeType(reading, value);
    reading.m_loader.loadConfiguration(reading.m_target, reading.m_element);
    return false;
}

// A divider by its register's value, which is one less.
template<unsigned Node::*Field>
bool storeRegister(ProcReading& reading, const std::string& value) {
    reading.m_target.*Field = static_cast<unsigned>(ZNUtils::IntOf(value)) + 1;
    return false;
}

// `kind` tells the two apart in the message.
bool readFeedbackDiv(ProcReading& reading, const std::string& value, unsigned& divider,
                     ZNUtils::ErrorCode code, const char* kind) {
    if (reading.m_loader.parseFeedbackDivMul2(value, divider))
        return false;
    reading.m_loader.m_utils.buildErrorMessage(code, ElementLocation(reading.m_element),
                                               "Invalid %sPLL feedback divider value \"%s\".\n", kind,
                                               value.c_str());
    return true;
}

bool storeFeedbackDivMin(ProcReading& reading, const std::string& value) {
    return readFeedbackDiv(reading, value, reading.m_target.m_pllFeedbackDivMin, 11133, "minimum ");
}

bool storeFeedbackDiv(ProcReading& reading, const std::string& value) {
    return readFeedbackDiv(reading, value, reading.m_target.m_pllFeedbackDiv, 11127, "");
}

// What a processor's attributes say about its clocks: marks of their rows.
enum Given : unsigned {
    GivenInputDiv = 1u << 0,
    GivenFeedbackDiv = 1u << 1,
    GivenOutputDiv = 1u << 2,
    GivenDividers = GivenInputDiv | GivenFeedbackDiv | GivenOutputDiv,
    GivenRefDiv = 1u << 3,
    GivenSystemFrequency = 1u << 4,
    GivenReferenceFrequency = 1u << 5,
};

constexpr AttributeRow<ProcReading> s_procAttributes[] = {
    {"id", storeText<&Node::m_id>},
    {"inpackageid", storeText<&Node::m_inPackageId>},
    {"type", storeProcType},
    {"oscillator", storeFrequency<&Node::m_oscillatorHz>},
    {"oscillatorsrc", storeText<&Node::m_oscillatorSrc>},
    {"systemfrequency", storeFrequency<&Node::m_systemFreq>, GivenSystemFrequency},
    {"referencefrequency", storeFrequency<&Node::m_referenceFreq>, GivenReferenceFrequency},
    {"refdiv", storeInt<&Node::m_refDiv>, GivenRefDiv},
    {"pllfeedbackdivmin", storeFeedbackDivMin},
    {"pllinputdiv", storeInt<&Node::m_pllInputDiv>, GivenInputDiv},
    {"pllfeedbackdiv", storeFeedbackDiv, GivenFeedbackDiv},
    {"plloutputdiv", storeInt<&Node::m_pllOutputDiv>, GivenOutputDiv},
    {"plldividerstageonereg", storeRegister<&Node::m_pllInputDiv>, GivenInputDiv},
    // Not doubled, unlike PllFeedbackDiv: wanted.
    {"pllmultiplierstagereg", storeRegister<&Node::m_pllFeedbackDiv>, GivenFeedbackDiv},
    {"plldividerstagetworeg", storeRegister<&Node::m_pllOutputDiv>, GivenOutputDiv},
    {"routingid", storeRoutingId},
};

using DeviceReading = AttributeReading<DeviceNode>;

bool storeDeviceFlags(DeviceReading& reading, const std::string& value) {
    forEachArgument(reading.m_loader, value, [&](const std::string& flag) {
        if (isText(flag, "postboot"))
            reading.m_target.m_flags |= DeviceNode::s_postBoot;
        else
            warnOf(reading.m_loader, {11016, "Unrecognised device flag \"%s\"; ignoring.\n"},
                   reading.m_element, flag);
    });
    return false;
}

constexpr AttributeRow<DeviceReading> s_deviceAttributes[] = {
    {"id", storeText<&Node::m_id>},
    {"type", storeType},
    {"routingid", storeRoutingId},
    {"flags", storeDeviceFlags},
};

struct ZsscReading : AttributeReading<ZsscNode> {
    std::string m_reference;
};

bool storeZsscReference(ZsscReading& reading, const std::string& value) {
    reading.m_reference = value;
    return false;
}

bool storeZsscOscillator(ZsscReading& reading, const std::string& value) {
    constexpr unsigned minMHz = 5;
    constexpr unsigned maxMHz = 100;
    reading.m_target.m_oscillatorText = value;
    const auto hertz = static_cast<unsigned>(reading.m_loader.freqInHertz(value, reading.m_element));
    const unsigned megahertz = (hertz + 999999) / 1000000; // rounded up
    if (megahertz < minMHz || megahertz > maxMHz)
        reading.m_loader.m_utils.throwError(
            11169, ElementLocation(reading.m_element),
            "System frequency specified (%d) is out of range (must be between 5 and 100).\n",
            static_cast<int>(megahertz));
    reading.m_target.m_oscillatorMHz = megahertz;
    return false;
}

constexpr AttributeRow<ZsscReading> s_zsscAttributes[] = {
    {"id", storeText<&Node::m_id>},
    {"inpackageid", storeText<&Node::m_inPackageId>},
    {"type", storeType},
    {"reference", storeZsscReference},
    {"oscillator", storeZsscOscillator},
};

// ---- Checks of a node ----

void checkId(ZNLoader& loader, const Node& node) {
    if (node.m_id.empty())
        loader.m_utils.throwError(11161, ElementLocation(node.m_element), "Node has no Id attribute.\n");
}

void addToPackage(ZNLoader& loader, const Node& node, ZNLoader::Package& package) {
    if (package.m_nodeIds.contains(node.m_inPackageId))
        loader.m_utils.throwError(11098, ElementLocation(node.m_element),
                                  "InPackageId \"%s\" is a duplicate.\n", node.m_inPackageId.c_str());
    if (package.holdsNode(node.m_id))
        loader.m_utils.throwError(11100, ElementLocation(node.m_element),
                                  "Node id \"%s\" is a duplicate in this package.\n", node.m_id.c_str());
    package.addNode(node.m_inPackageId, node.m_id);
}

void warnOfUnusedFrequencies(ZNLoader& loader, const Node& node, unsigned given) {
    if (node.m_oscillatorHz || !node.m_oscillatorSrc.empty())
        return;
    const ElementLocation where(node.m_element);
    if (given & GivenReferenceFrequency)
        loader.m_utils.buildWarningMessage(
            loader.warningTarget(), 11135, where,
            "Attribute ReferenceFrequency is ignored when Oscillator is not specified.\n");
    if (given & GivenSystemFrequency)
        loader.m_utils.buildWarningMessage(
            loader.warningTarget(), 11135, where,
            "Attribute SystemFrequency is ignored when Oscillator is not specified.\n");
}

void checkClockAttributes(ZNLoader& loader, const Node& node, unsigned given) {
    const bool dividers = given & GivenDividers;
    const bool refDiv = given & GivenRefDiv;
    const struct {
        bool isBroken;
        ZNUtils::ErrorCode code;
        const char* text;
    } rules[] = {
        {dividers && (given & GivenSystemFrequency), 11121,
         "The PllInputDiv, PllFeedbackDiv, and PllOutputDiv attibutes are mutually exclusive with "
         "SystemFrequency.\n"},
        {refDiv && (given & GivenReferenceFrequency), 11122,
         "The RefDiv attribute is mutually exclusive with ReferenceFrequency.\n"},
        {(given & GivenFeedbackDiv) && node.m_pllFeedbackDivMin, 11004,
         "The PllFeedbackDivMin and PllFeedbackDiv attributes are multually exclusive.\n"},
        {!dividers && refDiv, 11132,
         "When the RefDiv is specified the PLL divisors must also be specified.\n"},
        {dividers && (given & GivenDividers) != GivenDividers, 11123,
         "When one of PllInputDiv, PllFeedbackDiv, or PllOutputDiv are specified, all three must be.\n"},
        {dividers && !node.m_oscillatorHz, 11131,
         "When the PLL divisors are specified the oscillator must also be specified.\n"},
        {dividers && !refDiv, 11124,
         "When the PLL divisors are specified the reference clock divider must also be specified.\n"},
    };
    for (const auto& rule : rules) {
        if (rule.isBroken)
            loader.m_utils.throwError(rule.code, ElementLocation(node.m_element), "%s", rule.text);
    }
}

} // namespace

bool ZNLoader::readNode(XmlNode* element, Package* package) {
    const std::string* type = nullptr;
    for (unsigned i = 0; i < element->numAttributes(); ++i) {
        const XmlAttribute* attribute = element->getAttribute(i);
        if (!isText(*attribute->getName(), "type"))
            continue;
        if (type)
            m_utils.throwError(11041, ElementLocation(element),
                               "Only one Type attribute may be specified.\n");
        type = attribute->getValue();
    }
    if (!type)
        return false; // no node and no message: wanted

    const std::string::size_type colon = type->find(':');
    const std::string kind = colon == std::string::npos ? "proc" : type->substr(0, colon);
    if (kind == "proc")
        return readProcNode(element, package);
    if (kind == "device")
        return readDeviceNode(element);
    if (kind != "periph")
        m_utils.throwError(11003, ElementLocation(element), "Unrecognised node type (\"%s\").\n",
                           kind.c_str());
    const std::string peripheral = type->substr(colon + 1);
    if (peripheral != s_zsscType) // built only: it shows if a later error throws, and the node is made
        m_utils.buildErrorMessage(11177, ElementLocation(element), "Unrecognised peripheral type (\"%s\").\n",
                                  peripheral.c_str());
    return readZsscNode(element, package);
}

bool ZNLoader::readProcNode(XmlNode* element, Package* package) {
    ProcNode* node = adopt(m_nodes, std::make_unique<ProcNode>());
    m_procNodes.push_back(node);
    node->m_element = element;

    ProcReading reading{*this, element, *node};
    if (readAttributes(reading, s_procAttributes, s_unknownNodeAttribute))
        return true;
    checkId(*this, *node);
    if (package) {
        if (node->m_inPackageId.empty())
            m_utils.throwError(11160, ElementLocation(element), "Node has no InPackageId attribute.\n");
        addToPackage(*this, *node, *package);
    }
    warnOfUnusedFrequencies(*this, *node, reading.m_given);
    checkClockAttributes(*this, *node, reading.m_given);
    node->m_systemFreqByHz = !(reading.m_given & GivenDividers);
    node->m_referenceFreqByHz = !(reading.m_given & GivenRefDiv);

    for (unsigned i = 0; i < element->numNodes(); ++i) {
        XmlNode* child = element->getNode(i);
        bool failed = false;
        if (isNamed(child, "core"))
            failed = readCore(child, node);
        else if (isNamed(child, "boot"))
            failed = readBoot(child, node);
        else
            warnOf(*this, {11142, "Node \"%s\" in \"Node\" node not recognised; ignoring.\n"}, child,
                   *child->getName());
        if (failed)
            return true;
    }
    return false;
}

void ZNLoader::loadConfiguration(ProcNode& node, XmlNode* element) {
    SharedFile<NodeConfig>& file = m_configurations[node.m_shortType];
    if (!file.m_content) {
        file.m_path =
            m_paths.findFileInPaths("config_" + node.m_shortType + ".xml", ZCCPaths::DEVICE_PATH, false);
        if (file.m_path.empty())
            m_utils.throwError(11101, ElementLocation(element),
                               "Configuration file for node type \"%s\" not found.\n",
                               node.m_shortType.c_str());
        file.m_content = std::make_shared<NodeConfig>(file.m_path.c_str());
    }
    node.m_configFile = file.m_path;
    node.setConfig(file.m_content);
}

bool ZNLoader::readDeviceNode(XmlNode* element) {
    DeviceNode* node = adopt(m_nodes, std::make_unique<DeviceNode>());
    node->m_element = element;
    readAttributes(*this, element, *node, s_deviceAttributes,
                   {11004, "Device node contains unknown attribute \"%s\"; ignoring.\n"});
    forEachSubNode(element, [&](XmlNode* child) {
        if (isNamed(child, "service"))
            adopt(node->m_services, std::unique_ptr<DeviceServiceInfo>(handleServiceNode(child, false)));
        else
            warnOf(*this, {11017, "Device type node contains unrecognised node \"%s\"; ignoring.\n"}, child,
                   *child->getName());
    });
    return false;
}

bool ZNLoader::readZsscNode(XmlNode* element, Package* package) {
    ZsscNode* node = adopt(m_nodes, std::make_unique<ZsscNode>());
    node->m_element = element;
    m_hasZssc = true;

    ZsscReading reading{{*this, element, *node}, {}};
    readAttributes(reading, s_zsscAttributes, s_unknownNodeAttribute);
    checkId(*this, *node);
    splitReference(reading.m_reference, *node);
    if (package)
        addToPackage(*this, *node, *package);

    forEachSubNode(element, [&](XmlNode* child) {
        // In spite of what the warning says, the child is read as a service: wanted.
        if (!isNamed(child, "service"))
            warnOf(*this, {11176, "ZSSC Node node contains unknown node \"%s\"; ignoring.\n"}, child,
                   *child->getName());
        adopt(node->m_services, std::unique_ptr<DeviceServiceInfo>(handleServiceNode(child, false)));
    });
    return false;
}
