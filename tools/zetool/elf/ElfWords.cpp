#include "tools/zetool/elf/ElfWords.h"

#include "tools/zetool/Words.h"

#include <cstdio>
#include <span>

namespace {

struct WordRow {
    std::uint32_t value;
    const char* word;
};

constexpr WordRow s_classes[] = {{0, "none"}, {1, "ELF32"}, {2, "ELF64"}};
constexpr WordRow s_encodings[] = {
    {0, "none"}, {1, "2's complement, little endian"}, {2, "2's complement, big endian"}};
constexpr WordRow s_osAbis[] = {{0, "UNIX - System V"}, {3, "UNIX - GNU"}, {9, "UNIX - FreeBSD"}};
constexpr WordRow s_fileTypes[] = {{0, "NONE (None)"},
                                   {1, "REL (Relocatable file)"},
                                   {2, "EXEC (Executable file)"},
                                   {3, "DYN (Shared object file)"},
                                   {4, "CORE (Core file)"}};
constexpr unsigned s_i386 = 3; // EM_386
constexpr WordRow s_machines[] = {{0, "None"}, {s_i386, "Intel 80386"}, {0xB49E, "Zelm"}};
constexpr WordRow s_segmentTypes[] = {{0, "NULL"},
                                      {1, "LOAD"},
                                      {2, "DYNAMIC"},
                                      {3, "INTERP"},
                                      {4, "NOTE"},
                                      {5, "SHLIB"},
                                      {6, "PHDR"},
                                      {7, "TLS"},
                                      {0x6474E550, "GNU_EH_FRAME"},
                                      {0x6474E551, "GNU_STACK"},
                                      {0x6474E552, "GNU_RELRO"}};
// From 19 to 21 the tool chain's own, as the library has them.
constexpr WordRow s_sectionTypes[] = {{0, "NULL"},
                                      {1, "PROGBITS"},
                                      {2, "SYMTAB"},
                                      {3, "STRTAB"},
                                      {4, "RELA"},
                                      {5, "HASH"},
                                      {6, "DYNAMIC"},
                                      {7, "NOTE"},
                                      {8, "NOBITS"},
                                      {9, "REL"},
                                      {10, "SHLIB"},
                                      {11, "DYNSYM"},
                                      {14, "INIT_ARRAY"},
                                      {15, "FINI_ARRAY"},
                                      {16, "PREINIT_ARRAY"},
                                      {17, "GROUP"},
                                      {18, "SYMTAB SECTION INDICES"},
                                      {19, "INFO"},
                                      {20, "EXPR"},
                                      {21, "NETINFO"},
                                      {0x6FFFFFF6, "GNU_HASH"},
                                      {0x6FFFFFFD, "VERDEF"},
                                      {0x6FFFFFFE, "VERNEED"},
                                      {0x6FFFFFFF, "VERSYM"}};
// In the order in which letters stand.
constexpr WordRow s_sectionFlags[] = {{0x1, "W"},   {0x2, "A"},   {0x4, "X"},   {0x10, "M"},
                                      {0x20, "S"},  {0x40, "I"},  {0x80, "L"},  {0x100, "O"},
                                      {0x200, "G"}, {0x400, "T"}, {0x800, "C"}, {0x80000000, "E"}};
constexpr WordRow s_symbolTypes[] = {{0, "NOTYPE"}, {1, "OBJECT"}, {2, "FUNC"}, {3, "SECTION"},
                                     {4, "FILE"},   {5, "COMMON"}, {6, "TLS"}};
constexpr WordRow s_bindings[] = {{0, "LOCAL"}, {1, "GLOBAL"}, {2, "WEAK"}};
constexpr WordRow s_visibilities[] = {{0, "DEFAULT"}, {1, "INTERNAL"}, {2, "HIDDEN"}, {3, "PROTECTED"}};
constexpr WordRow s_i386Relocations[] = {{0, "NONE"},
                                         {1, "32"},
                                         {2, "PC32"},
                                         {3, "GOT32"},
                                         {4, "PLT32"},
                                         {5, "COPY"},
                                         {6, "GLOB_DAT"},
                                         {7, "JUMP_SLOT"},
                                         {8, "RELATIVE"},
                                         {9, "GOTOFF"},
                                         {10, "GOTPC"},
                                         {11, "32PLT"},
                                         {14, "TLS_TPOFF"},
                                         {15, "TLS_IE"},
                                         {16, "TLS_GOTIE"},
                                         {17, "TLS_LE"},
                                         {18, "TLS_GD"},
                                         {19, "TLS_LDM"},
                                         {20, "16"},
                                         {21, "PC16"},
                                         {22, "8"},
                                         {23, "PC8"},
                                         {24, "TLS_GD_32"},
                                         {25, "TLS_GD_PUSH"},
                                         {26, "TLS_GD_CALL"},
                                         {27, "TLS_GD_POP"},
                                         {28, "TLS_LDM_32"},
                                         {29, "TLS_LDM_PUSH"},
                                         {30, "TLS_LDM_CALL"},
                                         {31, "TLS_LDM_POP"},
                                         {32, "TLS_LDO_32"},
                                         {33, "TLS_IE_32"},
                                         {34, "TLS_LE_32"},
                                         {35, "TLS_DTPMOD32"},
                                         {36, "TLS_DTPOFF32"},
                                         {37, "TLS_TPOFF32"},
                                         {38, "SIZE32"},
                                         {39, "TLS_GOTDESC"},
                                         {40, "TLS_DESC_CALL"},
                                         {41, "TLS_DESC"},
                                         {42, "IRELATIVE"},
                                         {43, "GOT32X"}};

const char* wordOf(std::span<const WordRow> rows, std::uint32_t value) {
    for (const WordRow& row : rows) {
        if (row.value == value)
            return row.word;
    }
    return nullptr;
}

std::string hexOf(const char* format, std::uint32_t number) {
    char text[64];
    std::snprintf(text, sizeof text, format, static_cast<unsigned>(number));
    return text;
}

// Ranges that the standard leaves to others; the last one goes up to the highest number.
struct RangeRow {
    std::uint32_t first;
    const char* format; // of the number from the first of the range on
};

constexpr RangeRow s_segmentRanges[] = {{0x70000000, "LOPROC+%#x"}, {0x60000000, "LOOS+%#x"}};
constexpr RangeRow s_sectionRanges[] = {
    {0x80000000, "LOUSER+%#x"}, {0x70000000, "LOPROC+%#x"}, {0x60000000, "LOOS+%#x"}};

std::string wordOrRange(std::span<const WordRow> rows, std::span<const RangeRow> ranges,
                        std::uint32_t value) {
    if (const char* word = wordOf(rows, value))
        return word;
    for (const RangeRow& range : ranges) {
        if (value >= range.first)
            return hexOf(range.format, value - range.first);
    }
    return hexOf("%08x: <unknown>", value);
}

std::string wordOrUnknown(std::span<const WordRow> rows, unsigned value) {
    const char* word = wordOf(rows, value);
    return word ? word : hexOf("<unknown: %x>", value);
}

constexpr unsigned s_osAt = 7; // in e_ident
constexpr unsigned s_osGnu = 3;
constexpr unsigned s_firstOfOs = 10; // symbol types and bindings
constexpr unsigned s_firstOfProcessor = 13;

std::string otherText(unsigned value) {
    const char* kind = "<unknown>";
    if (value >= s_firstOfProcessor)
        kind = "<processor specific>";
    else if (value >= s_firstOfOs)
        kind = "<OS specific>";
    return kind + (": " + std::to_string(value));
}

bool isGnu(const ElfHeader& header) {
    return header.e_ident[s_osAt] == s_osGnu;
}

} // namespace

std::string shownText(std::string_view text) {
    constexpr unsigned char s_firstShown = 0x20;
    constexpr unsigned char s_delete = 0x7F;
    constexpr unsigned char s_toLetter = 0x40;
    std::string shown;
    shown.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < s_firstShown || byte == s_delete) {
            shown += '^';
            shown += static_cast<char>(byte ^ s_toLetter);
        } else {
            shown += c;
        }
    }
    return shown;
}

std::string nameText(const std::optional<std::string_view>& name) {
    return name ? shownText(name->substr(0, s_longestName)) : "<corrupt>";
}

std::string entriesText(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " entry" : " entries");
}

std::string fileClassText(unsigned fileClass) {
    return wordOrUnknown(s_classes, fileClass);
}

std::string encodingText(unsigned encoding) {
    return wordOrUnknown(s_encodings, encoding);
}

std::string osAbiText(unsigned osAbi) {
    return wordOrUnknown(s_osAbis, osAbi);
}

std::string fileTypeText(unsigned type) {
    return wordOrUnknown(s_fileTypes, type);
}

std::string machineText(unsigned machine) {
    return wordOrUnknown(s_machines, machine);
}

std::string segmentTypeText(std::uint32_t type) {
    return wordOrRange(s_segmentTypes, s_segmentRanges, type);
}

std::string segmentFlagsText(std::uint32_t flags) {
    constexpr std::uint32_t s_readable = 4;
    constexpr std::uint32_t s_writable = 2;
    constexpr std::uint32_t s_executable = 1;
    return {flags & s_readable ? 'R' : ' ', flags & s_writable ? 'W' : ' ', flags & s_executable ? 'E' : ' '};
}

std::string sectionTypeText(std::uint32_t type) {
    return wordOrRange(s_sectionTypes, s_sectionRanges, type);
}

std::string sectionFlagsText(std::uint32_t flags) {
    constexpr std::uint32_t s_ofOs = 0x0FF00000;
    constexpr std::uint32_t s_ofProcessor = 0x70000000;
    std::string letters;
    for (const WordRow& row : s_sectionFlags) {
        if (flags & row.value)
            letters += row.word;
        flags &= ~row.value;
    }
    letters += flags & s_ofOs ? "o" : "";
    letters += flags & s_ofProcessor ? "p" : "";
    return letters + (flags & ~(s_ofOs | s_ofProcessor) ? "x" : "");
}

std::string relocationTypeText(unsigned machine, unsigned type) {
    const char* word = machine == s_i386 ? wordOf(s_i386Relocations, type) : nullptr;
    return word ? std::string("R_386_") + word : std::to_string(type);
}

std::string symbolSizeText(std::uint32_t size) {
    constexpr std::uint32_t s_largestDecimal = 99'999;
    return size <= s_largestDecimal ? std::to_string(size) : hexText(size);
}

std::string symbolTypeText(const ElfHeader& header, const ElfSymbol& symbol) {
    const unsigned type = symbol.getType();
    if (const char* word = wordOf(s_symbolTypes, type))
        return word;
    return type == s_firstOfOs && isGnu(header) ? "IFUNC" : otherText(type);
}

std::string bindingText(const ElfHeader& header, const ElfSymbol& symbol) {
    const unsigned binding = symbol.getBinding();
    if (const char* word = wordOf(s_bindings, binding))
        return word;
    return binding == s_firstOfOs && isGnu(header) ? "UNIQUE" : otherText(binding);
}

std::string visibilityText(const ElfSymbol& symbol) {
    constexpr unsigned s_visibilityMask = 3;
    const unsigned visibility = symbol.st_other & s_visibilityMask;
    const unsigned other = symbol.st_other ^ visibility;
    return wordOf(s_visibilities, visibility) + (other ? hexOf(" [<other>: %x]", other) : "");
}

std::string placeText(const ElfHeader& header, const ElfSymbol& symbol) {
    constexpr unsigned s_firstOfProcessorIndex = 0xFF00;
    constexpr unsigned s_firstOfOsIndex = 0xFF20;
    constexpr unsigned s_firstOfRest = 0xFF40;
    const unsigned index = symbol.st_shndx;
    if (index == ElfSymbol::SHN_UNDEF)
        return "UND";
    if (index == ElfSymbol::SHN_ABS)
        return "ABS";
    if (index == ElfSymbol::SHN_COMMON)
        return "COM";
    if (index >= s_firstOfRest)
        return hexOf("RSV[%#06x]", index);
    if (index >= s_firstOfOsIndex)
        return hexOf("OS [%#06x]", index);
    if (index >= s_firstOfProcessorIndex)
        return hexOf("PRC[%#06x]", index);
    if (header.e_shnum != 0 && index >= header.e_shnum)
        return "bad section index[" + std::to_string(index) + "]";
    return std::to_string(index);
}
