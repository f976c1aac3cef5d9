#include "tools/zetool/elf/ElfRules.h"

#include "infr_libs/ElfHandler/ElfGroup.h"
#include "tools/zetool/elf/ElfWords.h"
#include "tools/zetool/elf/RelocationView.h"

#include <algorithm>
#include <bit>

namespace {

constexpr std::uint64_t s_endOfMemory = std::uint64_t{1} << 32;
constexpr std::uint32_t s_allocated = 2; // SHF_ALLOC

std::string notNumber(const char* field, std::uint32_t is, std::uint32_t should) {
    return std::string(field) + " is " + std::to_string(is) + ", not " + std::to_string(should);
}

// ---- The file header ----

std::string versionFault(const ElfView& view) {
    constexpr unsigned s_versionAt = 6; // in e_ident
    const ElfHeader& header = view.header();
    if (header.e_ident[s_versionAt] != 1)
        return notNumber("the version of the format", header.e_ident[s_versionAt], 1);
    return header.e_version != 1 ? notNumber("e_version", header.e_version, 1) : "";
}

std::string fileTypeFault(const ElfView& view) {
    constexpr unsigned s_relocatable = 1;
    constexpr unsigned s_executable = 2;
    const unsigned type = view.header().e_type;
    if (type == s_relocatable || type == s_executable)
        return "";
    return "e_type is " + std::to_string(type) + ", neither relocatable (1) nor executable (2)";
}

std::string headerSizeFault(const ElfView& view) {
    const ElfHeader& header = view.header();
    if (header.e_ehsize != ElfHeader::s_numBytes)
        return notNumber("e_ehsize", header.e_ehsize, ElfHeader::s_numBytes);
    if (header.e_phnum != 0 && header.e_phentsize != ElfProgramHeader::s_numBytes)
        return notNumber("e_phentsize", header.e_phentsize, ElfProgramHeader::s_numBytes);
    if (header.e_shnum != 0 && header.e_shentsize != ElfSectionHeader::s_numBytes)
        return notNumber("e_shentsize", header.e_shentsize, ElfSectionHeader::s_numBytes);
    return "";
}

std::string sectionCountFault(const ElfView& view) {
    const ElfHeader& header = view.header();
    return header.e_shnum == 0 && header.e_shoff != 0
               ? "e_shoff gives section headers a place, but e_shnum counts none"
               : "";
}

std::string sectionNamesFault(const ElfView& view) {
    const ElfHeader& header = view.header();
    const auto hasName = [](const ElfSectionHeader& section) { return section.sh_name != 0; };
    if (std::none_of(view.sections().begin(), view.sections().end(), hasName))
        return "";
    if (header.e_shstrndx < view.sections().size() &&
        view.sections()[header.e_shstrndx].sh_type == ElfSectionHeader::SHT_STRTAB)
        return "";
    return "e_shstrndx " + std::to_string(header.e_shstrndx) + " names no section of strings";
}

struct HeaderRule {
    const char* fault;
    std::string (*find)(const ElfView&); // empty where the rule holds
};

constexpr HeaderRule s_headerRules[] = {
    {"version", versionFault},           {"fileType", fileTypeFault},         {"headerSize", headerSizeFault},
    {"sectionCount", sectionCountFault}, {"sectionNames", sectionNamesFault},
};

// ---- Segments ----

bool isPowerOfTwo(std::uint32_t align) {
    return align == 0 || std::has_single_bit(align);
}

std::string segmentSizeFault(const ElfProgramHeader& segment) {
    return segment.p_type == ElfProgramHeader::PT_LOAD && segment.p_filesz > segment.p_memsz
               ? "has more bytes in the file than in memory"
               : "";
}

std::string segmentEndFault(const ElfProgramHeader& segment) {
    const std::uint64_t last = std::max(segment.p_vaddr, segment.p_paddr);
    return segment.p_type == ElfProgramHeader::PT_LOAD && last + segment.p_memsz > s_endOfMemory
               ? "reaches past the end of memory"
               : "";
}

std::string segmentAlignFault(const ElfProgramHeader& segment) {
    return isPowerOfTwo(segment.p_align)
               ? ""
               : "its alignment " + std::to_string(segment.p_align) + " is no power of two";
}

struct SegmentRule {
    const char* fault;
    std::string (*find)(const ElfProgramHeader&);
};

constexpr SegmentRule s_segmentRules[] = {
    {"segmentSize", segmentSizeFault}, {"segmentEnd", segmentEndFault}, {"align", segmentAlignFault}};

// ---- Sections ----

std::string sectionNameFault(const ElfView& view, const ElfSectionHeader& section) {
    return view.sectionName(section) ? "" : "its name lies outside the strings";
}

std::string sectionAlignFault(const ElfView&, const ElfSectionHeader& section) {
    return isPowerOfTwo(section.sh_addralign)
               ? ""
               : "its alignment " + std::to_string(section.sh_addralign) + " is no power of two";
}

std::string sectionEndFault(const ElfView&, const ElfSectionHeader& section) {
    return (section.sh_flags & s_allocated) &&
                   std::uint64_t{section.sh_addr} + section.sh_size > s_endOfMemory
               ? "reaches past the end of memory"
               : "";
}

std::string linkFault(const ElfView& view, const ElfSectionHeader& section) {
    const std::uint32_t link = section.sh_link;
    const bool isThere = link < view.sections().size();
    const std::string text = "sh_link " + std::to_string(link) + " names no ";
    if (hasSymbols(section))
        return isThere && view.sections()[link].sh_type == ElfSectionHeader::SHT_STRTAB
                   ? ""
                   : text + "section of strings";
    if (RelocationView::isOne(section) || section.sh_type == ElfSectionHeader::SHT_GROUP)
        return isThere && hasSymbols(view.sections()[link]) ? "" : text + "table of symbols";
    return link < view.header().e_shnum || link == 0 ? "" : text + "section";
}

std::string infoFault(const ElfView& view, const ElfSectionHeader& section) {
    const std::string text = "sh_info " + std::to_string(section.sh_info) + " names no ";
    if (RelocationView::isOne(section))
        return section.sh_info < view.header().e_shnum ? "" : text + "section";
    if (section.sh_type == ElfSectionHeader::SHT_GROUP && section.sh_link < view.sections().size()) {
        const ElfSectionHeader& symbols = view.sections()[section.sh_link];
        return !hasSymbols(symbols) || section.sh_info < view.numSymbols(symbols) ? "" : text + "symbol";
    }
    return "";
}

// Bytes of an entry of a table that has such; 0 for other sections.
std::uint32_t entrySizeOf(const ElfSectionHeader& section) {
    if (hasSymbols(section))
        return ElfSymbol::s_numBytes;
    if (RelocationView::isOne(section))
        return ElfRelocation::entrySize(section.sh_type == ElfSectionHeader::SHT_RELA);
    return section.sh_type == ElfSectionHeader::SHT_GROUP ? ElfGroup::s_wordSize : 0;
}

std::string entrySizeFault(const ElfView&, const ElfSectionHeader& section) {
    const std::uint32_t size = entrySizeOf(section);
    // Group sections are words whatever they say.
    if (size == 0 || section.sh_entsize == size || section.sh_type == ElfSectionHeader::SHT_GROUP)
        return "";
    return wrongEntrySize(section, size);
}

std::string tableSizeFault(const ElfView&, const ElfSectionHeader& section) {
    const std::uint32_t size = entrySizeOf(section);
    if (size == 0 || section.sh_size % size == 0)
        return "";
    return "its size is no multiple of " + std::to_string(size);
}

std::string stringsFault(const ElfView& view, const ElfSectionHeader& section) {
    const std::string_view strings = view.contents(section);
    if (section.sh_type != ElfSectionHeader::SHT_STRTAB || strings.empty())
        return "";
    if (strings.front() != '\0')
        return "its strings don't begin with the empty text";
    return strings.back() != '\0' ? "its last string has no end" : "";
}

std::string groupFault(const ElfView& view, const ElfSectionHeader& section) {
    if (section.sh_type != ElfSectionHeader::SHT_GROUP)
        return "";
    const std::string_view words = view.contents(section);
    if (words.size() < ElfGroup::s_wordSize)
        return "is a group without flags";
    for (std::size_t i = ElfGroup::s_wordSize; i + ElfGroup::s_wordSize <= words.size();
         i += ElfGroup::s_wordSize) {
        std::uint32_t member = 0;
        words.copy(reinterpret_cast<char*>(&member), sizeof member, i);
        if (member == 0 || member >= view.header().e_shnum)
            return "its member " + std::to_string(member) + " is no section";
    }
    return "";
}

struct SectionRule {
    const char* fault;
    std::string (*find)(const ElfView&, const ElfSectionHeader&);
};

constexpr SectionRule s_sectionRules[] = {
    {"name", sectionNameFault},    {"align", sectionAlignFault}, {"sectionEnd", sectionEndFault},
    {"link", linkFault},           {"info", infoFault},          {"entrySize", entrySizeFault},
    {"tableSize", tableSizeFault}, {"strings", stringsFault},    {"group", groupFault},
};

// ---- Overlaps ----

struct Range {
    std::uint64_t begin;
    std::uint64_t end;
    std::string name;
};

// One fault for each range that begins before all earlier ones have ended.
void addSharedRanges(std::vector<Range> ranges, const char* fault, const char* what,
                     std::vector<ElfFault>& faults) {
    std::erase_if(ranges, [](const Range& range) { return range.begin >= range.end; });
    std::stable_sort(ranges.begin(), ranges.end(),
                     [](const Range& a, const Range& b) { return a.begin < b.begin; });
    const Range* furthest = nullptr;
    for (const Range& range : ranges) {
        if (furthest && range.begin < furthest->end)
            faults.push_back({fault, range.name + ": shares " + what + " with " + furthest->name});
        if (!furthest || range.end > furthest->end)
            furthest = &range;
    }
}

std::uint64_t tableEnd(std::uint32_t offset, std::uint64_t count, std::uint32_t entrySize) {
    return offset + count * entrySize;
}

} // namespace

void addHeaderFaults(const ElfView& view, std::vector<ElfFault>& faults) {
    for (const HeaderRule& rule : s_headerRules) {
        if (std::string text = rule.find(view); !text.empty())
            faults.push_back({rule.fault, std::move(text)});
    }
}

void addSegmentFaults(const ElfView& view, std::vector<ElfFault>& faults) {
    for (const ElfProgramHeader& segment : view.segments()) {
        for (const SegmentRule& rule : s_segmentRules) {
            if (const std::string text = rule.find(segment); !text.empty())
                faults.push_back({rule.fault, "segment " + std::to_string(segment.getNum()) + ": " + text});
        }
    }
}

void addSectionFaults(const ElfView& view, std::vector<ElfFault>& faults) {
    for (const ElfSectionHeader& section : view.sections()) {
        if (section.sh_type == ElfSectionHeader::SHT_NULL)
            continue;
        for (const SectionRule& rule : s_sectionRules) {
            if (const std::string text = rule.find(view, section); !text.empty())
                faults.push_back({rule.fault, view.sectionPlace(section) + ": " + text});
        }
    }
}

void addOverlaps(const ElfView& view, std::vector<ElfFault>& faults) {
    const ElfHeader& header = view.header();
    std::vector<Range> inFile = {
        {0, ElfHeader::s_numBytes, "the file header"},
        {header.e_phoff, tableEnd(header.e_phoff, view.segments().size(), ElfProgramHeader::s_numBytes),
         "the program headers"},
        {header.e_shoff, tableEnd(header.e_shoff, view.sections().size(), ElfSectionHeader::s_numBytes),
         "the section headers"}};
    for (const ElfSectionHeader& section : view.sections()) {
        const std::uint64_t size = view.contents(section).size();
        inFile.push_back({section.sh_offset, section.sh_offset + size, view.sectionPlace(section)});
    }
    addSharedRanges(std::move(inFile), "overlap", "bytes of the file", faults);

    std::vector<Range> inMemory;
    for (const ElfProgramHeader& segment : view.segments()) {
        if (segment.p_type == ElfProgramHeader::PT_LOAD)
            inMemory.push_back({segment.p_paddr, std::uint64_t{segment.p_paddr} + segment.p_memsz,
                                "segment " + std::to_string(segment.getNum())});
    }
    addSharedRanges(std::move(inMemory), "memoryOverlap", "memory", faults);
}
