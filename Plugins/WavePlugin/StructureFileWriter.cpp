#include "Plugins/WavePlugin/StructureFileWriter.h"

#include "infr_libs/PluginLibrary/PluginLibrary.h"

namespace {

constexpr const char* s_groupIndent = "    ";
constexpr const char* s_coreIndent = "        ";

} // namespace

StructureFileWriter::StructureFileWriter(FILE* fp, TracePluginCallbacks* callbacks, PluginLibrary* library)
    : m_callbacks(callbacks), m_library(library), m_fp(fp) {}

bool StructureFileWriter::initialise(std::string date) {
    std::fprintf(m_fp,
                 "$comment\n"
                 "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                 "<Structure>\n"
                 "    <Date value=\"%s\"/>\n",
                 date.c_str());
    return true;
}

void StructureFileWriter::terminate() {
    std::fputs("</Structure>\n$end\n\n", m_fp);
}

void StructureFileWriter::openHierachy() {
    std::fputs("    <Hierarchy>\n", m_fp);
}

void StructureFileWriter::closeHierachy() {
    std::fputs("    </Hierarchy>\n", m_fp);
}

void StructureFileWriter::openCore(std::string name) {
    std::fprintf(m_fp, "        <Core name=\"%s\">\n", name.c_str());
}

void StructureFileWriter::closeCore() {
    std::fputs("        </Core>\n", m_fp);
}

void StructureFileWriter::openCategory(std::string name, bool inCore) {
    std::fprintf(m_fp, "%s    <Category name=\"%s\">\n", inCore ? s_coreIndent : "", name.c_str());
}

void StructureFileWriter::closeCategory(bool inCore) {
    std::fprintf(m_fp, "%s    </Category>\n", inCore ? s_coreIndent : "");
}

void StructureFileWriter::openGroup(std::string name) {
    std::fprintf(m_fp, "                <Group name=\"%s\">\n", name.c_str());
}

void StructureFileWriter::closeGroup() {
    std::fputs("                </Group>\n", m_fp);
}

void StructureFileWriter::addSignal(std::string name, bool inGroup, std::string radix, bool inCore) {
    std::fprintf(m_fp, "%s%s        <Signal name=\"%s\" radix=\"%s\"/>\n", inGroup ? s_groupIndent : "",
                 inCore ? s_coreIndent : "", name.c_str(), radix.c_str());
}

void StructureFileWriter::openValueAliases() {
    std::fputs("    <ValueAliases>\n", m_fp);
}

void StructureFileWriter::closeValueAliases() {
    std::fputs("    </ValueAliases>\n", m_fp);
}

void StructureFileWriter::openValueAliasMap(std::string coreName, std::string category) {
    std::fprintf(m_fp, "        <ValueAliasMap coreName=\"%s\" category=\"%s\">\n", coreName.c_str(),
                 category.c_str());
}

void StructureFileWriter::addValueAliasEntry(std::string name, std::string alias) {
    std::fprintf(m_fp, "            <Entry name=\"%s\" alias=\"%s\"/>\n", name.c_str(), alias.c_str());
}

void StructureFileWriter::closeValueAliasMap() {
    std::fputs("        </ValueAliasMap>\n", m_fp);
}

void StructureFileWriter::openSignalDocs() {
    std::fputs("    <SignalDocs>\n", m_fp);
}

void StructureFileWriter::closeSignalDocs() {
    std::fputs("    </SignalDocs>\n", m_fp);
}

void StructureFileWriter::addSignalDocEntry(std::string name, std::string description,
                                            const char* const (*values)[2]) {
    std::fprintf(m_fp, "        <SignalDoc name=\"%s\" description=\"%s\">\n", name.c_str(),
                 description.c_str());
    // Written even when it stays empty: wanted.
    std::fputs("            <ValueDocs>\n", m_fp);
    for (; (*values)[0] != nullptr; ++values)
        std::fprintf(m_fp, "                <ValueDoc value=\"%s\" text=\"%s\"/>\n", (*values)[0],
                     (*values)[1]);
    std::fputs("            </ValueDocs>\n", m_fp);
    std::fputs("        </SignalDoc>\n", m_fp);
}

void StructureFileWriter::addSignalDocEntries(std::span<const SignalDoc> docs) {
    for (const SignalDoc& doc : docs)
        addSignalDocEntry(doc.pattern, doc.description, doc.values);
}

void StructureFileWriter::processZnFile() {
    const ZNLoader* const network = m_library->getZNLoader();
    if (network)
        addSignalAliases(*network);
    else
        std::fputs("Warning: Unable to load ZN file required for dumping the structural information\n",
                   stderr);
}

void StructureFileWriter::addSignalAliases(const ZNLoader& network) {
    std::fputs("    <SignalAliases>\n", m_fp);
    for (ZNLoader::Node* node : network.m_nodes) {
        if (node->getType() != ZNLoader::ProcNode::s_type)
            continue;
        for (ZNLoader::Core* core : static_cast<ZNLoader::ProcNode*>(node)->m_cores) {
            if (core->getType() == ZNLoader::FreeCore::s_type)
                addSignalAliasMap(core->m_reference, static_cast<ZNLoader::FreeCore*>(core)->m_ports);
        }
    }
    std::fputs("    </SignalAliases>\n", m_fp);
}

void StructureFileWriter::addSignalAliasMap(const std::string& coreName,
                                            const std::vector<ZNLoader::PortDesc>& ports) {
    std::fprintf(m_fp, "        <SignalAliasMap coreName=\"%s\">\n", coreName.c_str());
    for (const ZNLoader::PortDesc& port : ports)
        std::fprintf(m_fp, "            <Entry name=\"%s\" alias=\"%s\"/>\n", port.location.c_str(),
                     port.name.c_str());
    std::fputs("        </SignalAliasMap>\n", m_fp);
}
