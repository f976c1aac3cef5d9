#include "tools/zetool/image/ImageChecker.h"

#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/PluginLibrary/PluginLibrary.h"
#include "infr_libs/ZelmBinaryHandler/ZBLayout.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/elf/ElfReading.h"
#include "tools/zetool/image/Places.h"
#include "tools/zetool/Trial.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <set>
#include <utility>

using namespace zblayout;

namespace {

std::string numberOf(std::uint64_t number) {
    return std::to_string(number);
}

} // namespace

void ImageChecker::check() {
    open();
    walk();
    checkNetwork();
}

// The plugin's own loading, to the letter.
void ImageChecker::open() {
    const Trial trial = tryOut([this] {
        g_assertionHook = nullptr; // what a plugin has
        PluginLibrary library;
        library.openZe(m_file.path().c_str()); // says why where it fails
    });
    m_openingLines = trial.lines;
    for (const std::string& line : trial.lines)
        m_findings.add(FindingKind::Opening, "opening: " + m_file.withName(line));
}

void ImageChecker::walk() {
    InputFile input(m_file.path());
    SectorWalker walker(input);
    if (walker.headerReservedIsUsed())
        m_findings.add(FindingKind::Reserved, "reserved bytes of the header aren't 0");
    while (walker.next()) {
        const std::int32_t type = walker.sector().head.type;
        const bool isFirst = m_numOfType[type]++ == 0;
        std::string payload;
        const bool keepsPayload = type == ZBSEC_ELF || (type == ZBSEC_ZN && isFirst);
        const bool isWhole =
            keepsPayload ? walker.read([&](std::string_view piece) { payload += piece; }) : walker.read();
        if (!isWhole)
            break;
        checkSector(walker.sector());
        checkOrder(walker.sector());
        if (type == ZBSEC_ELF)
            checkProgram(walker.sector(), std::move(payload));
        else if (keepsPayload)
            m_network = std::move(payload);
    }
    m_numSectors = walker.numBegun();
    m_isWhole = walker.fault().empty();
    if (!m_isWhole) {
        m_findings.add(FindingKind::Fault, walker.fault());
        return;
    }
    if (walker.numBytes() > zbinternals::s_maxBytes)
        m_findings.add(FindingKind::Fault, "the file has " + numberOf(walker.numBytes()) +
                                               " bytes; images end at " + numberOf(zbinternals::s_maxBytes));
    if (m_numOfType.count(ZBSEC_END) == 0)
        m_findings.add(FindingKind::End, "there is no end sector");
}

// What a sector has in itself.
void ImageChecker::checkSector(const ImageSector& sector) {
    const std::uint64_t length = sector.head.length;
    if (sector.hasWrongCrc())
        m_findings.add(FindingKind::WrongCrc, sector,
                       std::string(zbinternals::s_badCrc.text) + ": " + crcText(sector.crc) + " is stored, " +
                           crcText(*sector.computedCrc) + " computed");
    if (sector.hasPayload() && sector.crc == 0 && *sector.computedCrc != 0)
        m_findings.add(FindingKind::WaivedCrc, sector,
                       "its CRC is 0, so that nothing checks it; " + crcText(*sector.computedCrc) +
                           " is computed");
    if (sector.reservedIsUsed)
        m_findings.add(FindingKind::Reserved, sector, "reserved bytes aren't 0");
    if (sector.hasPayload() && sector.head.pad != padOf(length))
        m_findings.add(FindingKind::Padding, sector,
                       "a payload of " + numberOf(length) + " bytes has " + numberOf(sector.head.pad) +
                           " bytes of padding, not " + numberOf(padOf(length)));
    if (sector.paddingIsUsed)
        m_findings.add(FindingKind::Padding, sector, "padding isn't 0");
    if (!sector.row) {
        m_findings.add(FindingKind::Type, sector,
                       "the type " + numberOf(static_cast<std::uint16_t>(sector.head.type)) +
                           " isn't known, and passed over");
        return;
    }
    const std::string name = sector.row->name;
    if (sector.row->record != SectorRecord::None && !sector.hasRecord)
        m_findings.add(FindingKind::Payload, sector,
                       "a payload of " + numberOf(length) + " bytes is too short for type " + name);
    else if (sector.row->record != SectorRecord::None && !sector.row->isImage && length != s_recordSize)
        m_findings.add(FindingKind::Payload, sector,
                       "a payload of type " + name + " has " + numberOf(s_recordSize) + " bytes, not " +
                           numberOf(length));
    else if (sector.head.type == ZBSEC_END && sector.hasPayload())
        m_findings.add(FindingKind::Payload, sector, "an end sector has no payload");
}

// What a sector has with others.
void ImageChecker::checkOrder(const ImageSector& sector) {
    const std::int32_t type = sector.head.type;
    const bool isAnother = m_numOfType[type] > 1;
    if (type == ZBSEC_SYSCONFIG && isAnother)
        m_findings.add(FindingKind::Configuration, sector, "another configuration; there can be only one");
    if (type == ZBSEC_ZN && isAnother)
        m_findings.add(FindingKind::Network, sector, "another network, which nobody reads: the first counts");
    if (std::exchange(m_isBehindEnd, m_isBehindEnd || type == ZBSEC_END))
        m_findings.add(FindingKind::End, sector, "it stands behind the end sector, and is read all the same");
    if (sector.isPlace())
        m_placed.push_back(sector);
}

// Opening ends at the first bad program, doesn't say which it was, and doesn't ask for the reader's check.
void ImageChecker::checkProgram(const ImageSector& sector, std::string payload) {
    payload.erase(0, static_cast<std::size_t>(sector.prefixSize()));
    const ElfView view(std::move(payload));
    ElfReading reading(view);
    for (const std::optional<ElfFault>& fault : {reading.fault(), reading.check()})
        if (fault)
            m_findings.add(FindingKind::Program, sector, fault->line());
}

void ImageChecker::checkNetwork() {
    if (!m_network) {
        if (m_isWhole && !m_placed.empty())
            m_findings.add(FindingKind::Network, "there is no network: programs have no cores");
        return;
    }
    const NetworkReading reading("zn", *m_network);
    for (const std::string& warning : reading.warningList())
        m_findings.add(FindingKind::NetworkWarning, "network: " + warning);
    if (reading.failure) {
        for (const std::string& line : linesOf(reading.failure->message)) {
            const auto says = [&](const std::string& said) { return said.find(line) != std::string::npos; };
            if (std::ranges::none_of(m_openingLines, says))
                m_findings.add(FindingKind::Network, "network: " + line);
        }
        return;
    }
    std::set<std::pair<std::uint64_t, std::int64_t>> cores;
    for (const CorePlace& place : corePlaces(*reading.network))
        cores.emplace(place.position, place.core);
    for (const ImageSector& sector : m_placed)
        if (!cores.contains({sector.node, sector.core}))
            m_findings.add(FindingKind::Core, sector,
                           "the network has no core " + numberOf(sector.core) + " on node " +
                               numberOf(sector.node) + " of the scan chain" +
                               (sector.head.type == ZBSEC_ELF ? ": the program is ignored" : ""));
}
