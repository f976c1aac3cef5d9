#include "tools/zetool/elf/ElfCommands.h"

#include "tools/zetool/elf/ElfCheck.h"
#include "tools/zetool/elf/ElfFunctions.h"
#include "tools/zetool/elf/ElfHeaderList.h"
#include "tools/zetool/elf/ElfRelocations.h"
#include "tools/zetool/elf/ElfSections.h"
#include "tools/zetool/elf/ElfSymbols.h"

namespace {

constexpr ArgumentRow s_file[] = {{"FILE", "an ELF file, or - for standard input"}};
constexpr ArgumentRow s_programs[] = {{"FILE", "the ELF files of one core, in order", Count::Many}};

constexpr const char* s_incomplete = "parts of the file are missing";

constexpr ExampleRow s_headerExamples[] = {
    {"zetool elf header main.o", "Shows what main.o is, and its segments."},
};
constexpr ExampleRow s_sectionsExamples[] = {
    {"zetool elf sections main.o", "Lists the sections of main.o."},
};
constexpr ExampleRow s_symbolsExamples[] = {
    {"zetool elf symbols main.o", "Lists the symbols of main.o."},
    {"zetool elf symbols --json - < main.o", "The same as a JSON object, from standard input."},
};
constexpr ExampleRow s_functionsExamples[] = {
    {"zetool elf functions main.o", "Lists the functions of main.o under the names of the waveform."},
};
constexpr ExampleRow s_relocationsExamples[] = {
    {"zetool elf relocations main.o", "Lists the relocations of main.o."},
};
constexpr ExampleRow s_checkExamples[] = {
    {"zetool elf check main.o", "Says what is wrong with main.o."},
};

constexpr CommandRow s_commands[] = {
    {"header", "the file header and the segments",
     "Shows the fields of an ELF file's header, and its program headers if it has any.", s_file,
     s_showOptions, s_incomplete, elfHeader, s_headerExamples},
    {"sections", "the sections with type, address, place, size and flags",
     "Lists the section headers of an ELF file, with the letters that readelf has for flags: W for writable, "
     "A for allocated, X for executable, M for merged, S for strings, I for a section in sh_info, L for link "
     "order, G for a group, T for thread-local, E for excluded.",
     s_file, s_showOptions, s_incomplete, elfSections, s_sectionsExamples},
    {"symbols", "the symbols with value, size, type, binding and section",
     "Lists the tables of symbols of an ELF file, with the names that the file has and in the words of "
     "readelf. Sizes from 100,000 on are hexadecimal.",
     s_file, s_showOptions, s_incomplete, elfSymbols, s_symbolsExamples},
    {"functions", "the functions with the short names of the waveform",
     "Lists the function symbols of a core's programs, each with the short name that stands for it in a "
     "waveform. One numbering serves all programs of a core, so that they are given together, in the order "
     "in which the image has them. A file that the plugin can't read is listed all the same, behind a "
     "message.",
     s_programs, s_showOptions, "the plugin can't read a file, or parts of it are missing", elfFunctions,
     s_functionsExamples},
    {"relocations", "the relocations with type, symbol and addend",
     "Lists the relocation sections of an ELF file. Types of the Intel 80386 go by their names, others by "
     "their numbers.",
     s_file, s_showOptions, s_incomplete, elfRelocations, s_relocationsExamples},
    {"check", "what is wrong with the file",
     "Says whether the plugin reads an ELF file, with the reader's own message, and names what it wouldn't "
     "notice: tables and contents that reach past the file's end, indexes of sections and symbols that "
     "aren't there, names outside the strings, sections and segments that overlap, entries of a wrong size, "
     "and names that are read as others because the strings hold a text twice.",
     s_file, s_showOptions, "something is wrong", elfCheck, s_checkExamples},
};

} // namespace

std::span<const CommandRow> elfCommands() {
    return s_commands;
}
