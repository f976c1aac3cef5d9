#include "infr_libs/ZNLoader/ZNLoader.h"

#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <fstream>

namespace {

// A pass over what was read. It throws its own error, or returns true for the message of its row.
struct Pass {
    bool (ZNLoader::*run)();
    ZNUtils::ErrorCode code;
    const char* failure;
};

// In the order in which they run: a pass relies on what holds after those above it.
constexpr Pass s_passes[] = {
    // Ids of nodes are distinct, processors have the cores of their type, and the architecture is known.
    {&ZNLoader::checkNodes, 11045, "Node check failed.\n"},
    // Each core has a declared name of its own.
    {&ZNLoader::checkCoreRefs, 11151, "Core reference check failed.\n"},
    // Packages hold nodes that exist, and no node stands in two.
    {&ZNLoader::checkPackages, 11096, "Package check failed.\n"},
    // The scan chain names each node at most once, and all but devices.
    {&ZNLoader::checkJTAGChain, 11051, "Boot order check failed.\n"},
    // Ends of links point to nodes and have numbers; each link is in the list of its kind.
    {&ZNLoader::associateNodesWithLinks, 11048, "Link/node association check failed.\n"},
    // Links have wires, and their ends delays.
    {&ZNLoader::checkLinks, 11046, "Link check failed.\n"},
    // No link identifier of a node is used twice.
    {&ZNLoader::checkLinkDups, 11046, "Link check failed.\n"},
    // Each node has a `BootType`; devices and bootees are bound.
    {&ZNLoader::resolveBootReferences, 11090, "Failed to resolved boot site references.\n"},
};

} // namespace

ZNLoader::ZNLoader() {
    initialise();
}

// A constructor that delegates leaves a whole object: when `open` throws, the destructor frees what was read.
ZNLoader::ZNLoader(const std::string& fileName, std::string* warnings) : ZNLoader() {
    setWarningTarget(warnings);
    open(fileName);
}

ZNLoader::ZNLoader(const std::string& name, std::istream* stream, std::string* warnings) : ZNLoader() {
    setWarningTarget(warnings);
    open(name, stream);
}

void ZNLoader::initialise() {
    auto handler = std::make_unique<CatchableErrorHandler>();
    auto stringLibrary = std::make_unique<StringLibrary>(handler.get());
    auto zelmUtils = std::make_unique<ZelmUtils>();
    m_paths.parseDeviceAndTargetPath();
    zelmUtils->errorHandler = handler.release();
    zelmUtils->stringLibrary = stringLibrary.release();
    m_zelmUtils = zelmUtils.release();
}

ZNLoader::~ZNLoader() {
    const auto deleteAll = [](const auto& objects) {
        for (const auto* object : objects)
            delete object;
    };
    deleteAll(m_declarations);
    deleteAll(m_packages);
    m_packageFiles.clear(); // their parsers report through the record that goes last
    deleteAll(m_nodes);
    deleteAll(m_devices);
    deleteAll(m_links);
    delete m_parser;
    delete m_zelmUtils->stringLibrary;
    delete m_zelmUtils->errorHandler;
    delete m_zelmUtils;
}

void ZNLoader::setWarningTarget(std::string* warnings) {
    m_warnings = warnings ? warnings : &m_ownWarnings;
}

std::string* ZNLoader::warningTarget() {
    if (m_warnings != &m_ownWarnings || m_ownWarnings.size() < s_maxOwnWarnings)
        return m_warnings;
    if (!m_leavesWarningsOut)
        m_utils.buildWarningMessage(&m_ownWarnings, 11000, ZNUtils::FileNameLocation(m_fileName),
                                    "Further warnings are left out.\n");
    m_leavesWarningsOut = true;
    return nullptr;
}

void ZNLoader::addStandardCompileTimeDiagnosticIgnores() {
    m_utils.ignore(11135);
}

void ZNLoader::open(const std::string& fileName) {
    std::ifstream stream(fileName);
    if (!stream)
        m_utils.throwError(11043, ZNUtils::NoLocation(), "Error opening file '%s'.\n", fileName.c_str());
    open(fileName, &stream);
}

void ZNLoader::open(const std::string& fileName, std::istream* stream) {
    ZELM_ASSERT(!m_znOpened && "ZN opened twice");
    m_znOpened = true;
    m_fileName = fileName;
    const ZNUtils::FileNameLocation document(fileName);

    m_parser = new XmlParser(fileName.c_str(), m_zelmUtils, stream);
    XmlNode* root = m_parser->getRoot();
    if (!root)
        m_utils.throwError(11043, ZNUtils::NoLocation(), "Error finding root node in file.\n");
    if (!isNamed(root, "network"))
        m_utils.throwError(11001, ElementLocation(root), "Root node is not <Network>\n");

    if (readNetwork(root))
        m_utils.throwError(11044, document, "Error parsing file.\n");
    for (const Pass& pass : s_passes) {
        if ((this->*pass.run)())
            m_utils.throwError(pass.code, document, "%s", pass.failure);
    }

    // Processors have routing identifiers, links the routes that cross them.
    if (buildPositions(fileName.c_str()))
        m_utils.throwError(11049, document, "Network positioning failed (may be unsupported topology).\n");
    // So have the ZSSC nodes.
    assignRoutingIdsForZssc(fileName.c_str());
    // Processors know the oscillator that drives them.
    propagateZssc();
    // They have the register values of their clocks.
    planClocks();
}
