// The top level of the network document, its packages and its declarations.

#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <fstream>

namespace {

using PackageReading = AttributeReading<ZNLoader::Package>;

bool readPackageType(PackageReading& reading, const std::string& value) {
    reading.m_target.m_type = value;
    reading.m_loader.loadPackageFile(reading.m_target, reading.m_element);
    return false;
}

constexpr AttributeRow<PackageReading> s_packageAttributes[] = {
    {"id", storeText<&ZNLoader::Package::m_id>},
    {"type", readPackageType},
};

// Binds a node that stands outside the package to an identifier inside it.
struct Component {
    std::string m_nodeId;
    std::string m_inPackage;
};

constexpr AttributeRow<AttributeReading<Component>> s_componentAttributes[] = {
    {"nodeid", storeText<&Component::m_nodeId>},
    {"inpackage", storeText<&Component::m_inPackage>},
};

constexpr struct {
    const char* name;
    int kind;
} s_typeKinds[] = {{"Device", 1}, {"Board", 2}, {"Platform", 3}};

constexpr char s_blanks[] = " \t"; // a line end is no blank here: wanted

std::string withoutLeadingBlanks(const std::string& text) {
    const std::string::size_type first = text.find_first_not_of(s_blanks);
    return first == std::string::npos ? std::string() : text.substr(first);
}

std::string trimmed(const std::string& text) {
    return withoutLeadingBlanks(text.substr(0, text.find_last_not_of(s_blanks) + 1));
}

// An element that is a text. It may stand as often as it likes until the field that tells whether it was
// there has a value.
struct TextElement {
    std::string ZNLoader::*field;
    std::string ZNLoader::*seen;
    UnknownName unknownChild;
    ZNUtils::ErrorCode repeatedCode;
    const char* repeatedText;
};

constexpr TextElement s_type = {&ZNLoader::m_typeText,
                                &ZNLoader::m_typeText,
                                {11117, "Unrecognised node \"%s\" in Type node; ignoring.\n"},
                                11118,
                                "Only one Type node is allowed.\n"};
constexpr TextElement s_name = {&ZNLoader::m_name,
                                &ZNLoader::m_name,
                                {11119, "Unrecognised node \"%s\" in Name node; ignoring.\n"},
                                11120,
                                "Only one Name node is allowed.\n"};
constexpr TextElement s_boardId = {&ZNLoader::m_boardId,
                                   &ZNLoader::m_boardId,
                                   {11165, "Unrecognised node \"%s\" in BoardId node; ignoring.\n"},
                                   11166,
                                   "Only one BoardId node is allowed.\n"};
// The board's id is what is looked at: wanted. A second version passes, one behind a `BoardId` doesn't.
constexpr TextElement s_znVersion = {&ZNLoader::m_znVersion,
                                     &ZNLoader::m_boardId,
                                     {11174, "Unrecognised node \"%s\" in ZNVersion node; ignoring.\n"},
                                     11175,
                                     "Only one ZNVersion node is allowed.\n"};

void readText(ZNLoader& loader, const XmlNode* element, const TextElement& kind) {
    forEachSubNode(
        element, [&](const XmlNode* child) { warnOf(loader, kind.unknownChild, child, *child->getName()); });
    if (!(loader.*kind.seen).empty())
        loader.m_utils.throwError(kind.repeatedCode, ElementLocation(element), "%s", kind.repeatedText);
    loader.*kind.field = *element->getValue();
}

} // namespace

bool ZNLoader::readNetwork(XmlNode* root) {
    struct Section {
        const char* name;
        bool (ZNLoader::*read)(XmlNode* element);
    };
    static constexpr Section s_sections[] = {
        {"declarations", &ZNLoader::readDeclarations},
        {"nodes", &ZNLoader::readUnpackagedNodes},
        {"packages", &ZNLoader::readPackages},
        {"links", &ZNLoader::readLinks},
        {"jtagchain", &ZNLoader::readJTAGChain},
        {"externaldevices", &ZNLoader::readDevices},
        {"devices", &ZNLoader::readDevices},
        {"type", &ZNLoader::readType},
        {"name", &ZNLoader::readName},
        {"boardid", &ZNLoader::readBoardId},
        {"znversion", &ZNLoader::readZNVersion},
    };
    for (unsigned i = 0; i < root->numNodes(); ++i) {
        XmlNode* child = root->getNode(i);
        const Section* section = nullptr;
        for (const Section& candidate : s_sections) {
            if (isNamed(child, candidate.name))
                section = &candidate;
        }
        // Both warnings name the line of the root: wanted.
        if (!section) {
            warnOf(*this, {11128, "Node <%s> is not recognised; ignoring.\n"}, root, *child->getName());
            continue;
        }
        if (isNamed(child, "devices"))
            m_utils.buildWarningMessage(
                warningTarget(), 11129, ElementLocation(root),
                "Node type \"Devices\" is deprecated, use \"ExternalDevices\" instead.\n");
        if ((this->*section->read)(child))
            return true;
    }
    return false;
}

bool ZNLoader::readType(XmlNode* element) {
    readText(*this, element, s_type);
    m_typeKind = 0;
    for (const auto& [name, kind] : s_typeKinds) {
        if (isText(m_typeText, name))
            m_typeKind = kind;
    }
    return false;
}

bool ZNLoader::readName(XmlNode* element) {
    readText(*this, element, s_name);
    return false;
}

bool ZNLoader::readBoardId(XmlNode* element) {
    readText(*this, element, s_boardId);
    return false;
}

bool ZNLoader::readZNVersion(XmlNode* element) {
    readText(*this, element, s_znVersion);
    return false;
}

bool ZNLoader::readPackages(XmlNode* element) {
    for (unsigned i = 0; i < element->numNodes(); ++i) {
        XmlNode* child = element->getNode(i);
        if (!isNamed(child, "package")) {
            warnOf(*this, {11092, "Unrecognised node \"%s\" in Packages node; ignoring.\n"}, child,
                   *child->getName());
            continue;
        }
        if (readPackage(child, element))
            return true;
    }
    return false;
}

bool ZNLoader::readPackage(XmlNode* element, XmlNode* packages) {
    auto package = std::make_unique<Package>();
    package->m_element = element;
    readAttributes(*this, element, *package, s_packageAttributes,
                   {11093, "Unrecognised attribute \"%s\" inside Package node; ignoring.\n"});
    if (package->m_type.empty())
        m_utils.throwError(11163, ElementLocation(element),
                           "Package node does not define the package type (use the \"Type\" attribute).\n");
    if (package->m_id.empty())
        m_utils.throwError(
            11162, ElementLocation(element),
            "Package node does not define the package identifier (use the \"Id\" attribute).\n");

    for (unsigned i = 0; i < element->numNodes(); ++i) {
        XmlNode* child = element->getNode(i);
        bool failed = false;
        if (isNamed(child, "nodes"))
            failed = readNodes(child, package.get());
        else if (isNamed(child, "links"))
            failed = readLinks(child);
        else if (isNamed(child, "component"))
            readComponent(child, *package);
        else // at the line of `Packages`: wanted
            warnOf(*this, {11094, "Unrecognised node \"%s\" in Package node; ignoring.\n"}, packages,
                   *child->getName());
        if (failed)
            return true;
    }
    adopt(m_packages, std::move(package));
    return false;
}

void ZNLoader::loadPackageFile(Package& package, XmlNode* element) {
    SharedFile<XmlParser>& file = m_packageFiles[package.m_type];
    if (!file.m_content) {
        file.m_path = m_paths.findFileInPaths(package.m_type + ".pkg", ZCCPaths::DEVICE_PATH, false);
        if (file.m_path.empty())
            m_utils.throwError(11099, ElementLocation(element),
                               "Package type \"%s\" cannot be resolved to a package file.\n",
                               package.m_type.c_str());
        std::ifstream stream(file.m_path);
        if (!stream)
            m_utils.throwError(11043, ZNUtils::NoLocation(), "Error opening file '%s'.\n",
                               file.m_path.c_str());
        // It must parse; what it holds isn't looked at.
        file.m_content = std::make_shared<XmlParser>(file.m_path.c_str(), m_zelmUtils, &stream);
    }
    package.m_file = file.m_path;
    package.setParser(file.m_content);
}

void ZNLoader::readComponent(XmlNode* element, Package& package) {
    Component component;
    readAttributes(*this, element, component, s_componentAttributes,
                   {11095, "Unrecognised attribute \"%s\" inside Component node; ignoring.\n"});
    if (package.m_nodeIds.contains(component.m_inPackage)) // the message shows the node's id: wanted
        m_utils.throwError(11098, ElementLocation(element),
                           "InPackageId \"%s\" is a duplicate in this Component.\n",
                           component.m_nodeId.c_str());
    if (package.holdsNode(component.m_nodeId))
        m_utils.throwError(11100, ElementLocation(element),
                           "Node id \"%s\" is a duplicate in this Component.\n", component.m_nodeId.c_str());
    package.addNode(component.m_inPackage, component.m_nodeId);
}

bool ZNLoader::readUnpackagedNodes(XmlNode* element) {
    return readNodes(element, nullptr);
}

bool ZNLoader::readNodes(XmlNode* element, Package* package) {
    warnOfAttributes(*this, {11141, "Attribute \"%s\" in \"Nodes\" node not recognised; ignoring.\n"},
                     element);
    for (unsigned i = 0; i < element->numNodes(); ++i) {
        XmlNode* child = element->getNode(i);
        if (!isNamed(child, "node")) {
            warnOf(*this, {11002, "Node \"%s\" in \"Nodes\" node not recognised; ignoring.\n"}, child,
                   *child->getName());
            continue;
        }
        if (readNode(child, package))
            return true;
    }
    offerNodes();
    return false;
}

bool ZNLoader::readDeclarations(XmlNode* element) {
    warnOfAttributes(*this, {11145, "Attribute \"%s\" in \"Delcarations\" node not recognised; ignoring.\n"},
                     element);
    forEachSubNode(element, [&](XmlNode* child) {
        if (isNamed(child, "declaration"))
            readDeclaration(child);
        else
            warnOf(*this, {11146, "Node \"%s\" inside \"Declaration\" node not recognised; ignoring.\n"},
                   child, *child->getName());
    });
    return false;
}

void ZNLoader::readDeclaration(XmlNode* element) {
    warnOfAttributes(*this, {11147, "Attribute \"%s\" in \"Delcaration\" node not recognised; ignoring.\n"},
                     element);
    auto declaration = std::make_unique<CoreDeclaration>();
    declaration->m_element = element;
    declaration->m_text = *element->getValue();
    const std::string text = trimmed(declaration->m_text);
    if (text.empty())
        return;

    constexpr std::string::size_type kindLength = 5; // "core" and a blank
    const bool isCore = text.size() > kindLength && (text.starts_with("core ") || text.starts_with("core\t"));
    const IndexedName name(isCore ? withoutLeadingBlanks(text.substr(kindLength)) : std::string());
    if (!isCore || name.m_hasOpening != name.m_hasClosing)
        m_utils.throwError(11148, ElementLocation(element), "Failed to parse declaration \"%s\".\n",
                           declaration->m_text.c_str());
    declaration->m_kind = "core";
    declaration->m_name = name.m_base;
    declaration->m_isArray = name.isIndexed();
    declaration->m_size = ZNUtils::IntOf(name.m_index);
    adopt(m_declarations, std::move(declaration));
}
