// The `Links` element, and the grammar of delays.

#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <algorithm>
#include <cctype>

namespace {

using Zlink = ZNLoader::Zlink;
using LinkReading = AttributeReading<Zlink>;

bool storeFlags(LinkReading& reading, const std::string& value) {
    forEachArgument(reading.m_loader, value, [&](const std::string& flag) {
        if (isText(flag, "noinit"))
            reading.m_target.m_flags |= Zlink::s_noInit;
        else if (isText(flag, "sod"))
            reading.m_target.m_flags |= Zlink::s_sod;
        else // the message shows the whole list: wanted
            warnOf(reading.m_loader, {11062, "Link flag \"%s\" no recognised; ignoring.\n"},
                   reading.m_element, value);
    });
    return false;
}

constexpr AttributeRow<LinkReading> s_linkAttributes[] = {
    {"encoding", storeText<&Zlink::m_encoding>},
    {"delays", storeText<&Zlink::m_delays>},
    {"flags", storeFlags},
};

// The kind of an end shows with the first attribute that only one kind has; those of the other kind are
// unknown from then on. Without any it is a normal end.
std::unique_ptr<ZNLoader::ZlinkEnd> readEndpoint(ZNLoader& loader, const XmlNode* element) {
    std::unique_ptr<ZNLoader::ZlinkNormalEnd> normal;
    std::unique_ptr<ZNLoader::ZlinkSodEnd> sod;
    const auto sodEnd = [&]() -> ZNLoader::ZlinkSodEnd& {
        if (!sod)
            sod = std::make_unique<ZNLoader::ZlinkSodEnd>();
        return *sod;
    };
    std::string nodeId;
    std::string delays;
    for (unsigned i = 0; i < element->numAttributes(); ++i) {
        const std::string& name = *element->getAttribute(i)->getName();
        const std::string& value = *element->getAttribute(i)->getValue();
        if (!normal && isText(name, "routingid")) {
            sodEnd().m_routingIdText = value;
        } else if (!normal && isText(name, "chanend")) {
            sodEnd().m_chanendText = value;
        } else if (isText(name, "nodeid")) {
            nodeId = value;
        } else if (isText(name, "delays")) {
            delays = value;
        } else if (!sod && isText(name, "link")) {
            if (!normal)
                normal = std::make_unique<ZNLoader::ZlinkNormalEnd>();
            normal->m_linkText = value;
        } else {
            warnOf(loader, {11029, "Endpoint node contains unknown attribute \"%s\"; ignoring.\n"}, element,
                   name);
        }
    }
    std::unique_ptr<ZNLoader::ZlinkEnd> end;
    if (sod)
        end = std::move(sod);
    else if (normal)
        end = std::move(normal);
    else
        end = std::make_unique<ZNLoader::ZlinkNormalEnd>();
    end->m_nodeId = nodeId;
    end->m_delays = delays;
    return end;
}

// What a switch of each architecture adds to a delay by itself, in clocks.
constexpr struct {
    unsigned inter;
    unsigned intra;
} s_ownDelays[] = {{0, 0}, {2, 1}, {2, 1}, {1, 1}};

} // namespace

bool ZNLoader::readLinks(XmlNode* element) {
    warnOfAttributes(*this, {11143, "Unrecognised attribute \"%s\" in \"Links\" node; ignoring.\n"}, element);
    forEachSubNode(element, [&](XmlNode* child) {
        if (isNamed(child, "link"))
            readLink(child);
        else
            warnOf(*this, {11025, "Unrecognised node \"%s\" in Link node; ignoring.\n"}, child,
                   *child->getName());
    });
    return false;
}

void ZNLoader::readLink(XmlNode* element) {
    forEachSubNode(element, [&](const XmlNode* child) {
        if (!isNamed(child, "linkendpoint"))
            warnOf(*this, {11026, "Link node contains unrecognised node \"%s\"; ignoring.\n"}, child,
                   *child->getName());
    });
    // All children count, and two are read as endpoints whatever their names: wanted.
    if (element->numNodes() != 2)
        m_utils.throwError(11027, ElementLocation(element),
                           "Link nodes must contain exactly two LinkEndpoint nodes.\n");

    auto newLink = std::make_unique<Zlink>();
    newLink->m_element = element;
    readAttributes(*this, element, *newLink, s_linkAttributes,
                   {11028, "Unrecognised attribute \"%s\" in \"Link\" node; ignoring.\n"});
    Zlink* link = adopt(m_links, std::move(newLink));

    const bool isSod = link->m_flags & Zlink::s_sod;
    bool hasSodEnd = false;
    for (unsigned i = 0; i < 2; ++i) {
        std::unique_ptr<ZlinkEnd> end = readEndpoint(*this, element->getNode(i));
        if (!end->isNormal()) {
            if (!isSod)
                m_utils.throwError(11156, ElementLocation(element),
                                   "A normal Link node may not contain a sod endpoint.\n");
            if (hasSodEnd)
                m_utils.throwError(11154, ElementLocation(element),
                                   "A sod Link node may contain only 1 sod endpoint.\n");
            hasSodEnd = true;
        }
        (i == 0 ? link->m_end0 : link->m_end1) = end.release();
    }
    if (isSod && !hasSodEnd)
        m_utils.throwError(11155, ElementLocation(element), "A sod Link node must contain a sod endpoint.\n");
}

void ZNLoader::parseDelays(const std::string& text, int& inter, int& intra, SwitchArch arch, XmlNode*) {
    std::string interText = text;
    std::string intraText = text;
    const std::string::size_type comma = text.find(',');
    if (comma != std::string::npos) { // only then is the text cleaned: wanted
        interText = cleanStr(text.substr(0, comma));
        intraText = cleanStr(text.substr(comma + 1));
    }
    const auto delayOf = [this](std::string& delay, unsigned ownDelay) {
        bool inClocks = false;
        const int number = parseClocks(delay, inClocks);
        return inClocks ? static_cast<int>(static_cast<unsigned>(number) - ownDelay) : number;
    };
    inter = delayOf(interText, s_ownDelays[arch].inter);
    intra = delayOf(intraText, s_ownDelays[arch].intra);
}

int ZNLoader::parseClocks(std::string& text, bool& inClocks) {
    constexpr char unit[] = "clk";
    constexpr std::string::size_type unitLength = sizeof unit - 1;
    inClocks = text.size() > unitLength && text.find(unit) == text.size() - unitLength;
    return ZNUtils::IntOf(inClocks ? text.substr(0, text.size() - unitLength) : text);
}

std::string ZNLoader::cleanStr(std::string text) {
    std::erase_if(text, [](unsigned char c) { return !std::isalnum(c); });
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}
