#include "tools/zetool/elf/ElfHeaderList.h"

#include "tools/zetool/elf/ElfInspection.h"
#include "tools/zetool/elf/ElfWords.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/Words.h"

namespace {

enum Ident { Class = 4, Encoding, Version, OsAbi, AbiVersion }; // places in e_ident

std::string magicText(const ElfHeader& header) {
    std::string text;
    for (const unsigned byte : header.e_ident)
        text += (text.empty() ? "" : " ") + hexDigits(byte, 2);
    return text;
}

void writeHeader(OutputFile& output, const ElfHeader& header) {
    const auto number = [](std::uint32_t value) { return std::to_string(value); };
    TextTable table({{"Field"}, {"Value"}});
    table.add({"Magic", magicText(header)});
    table.add({"Class", fileClassText(header.e_ident[Class])});
    table.add({"Data", encodingText(header.e_ident[Encoding])});
    table.add({"Version of the format", number(header.e_ident[Version])});
    table.add({"OS/ABI", osAbiText(header.e_ident[OsAbi])});
    table.add({"ABI version", number(header.e_ident[AbiVersion])});
    table.add({"Type", fileTypeText(header.e_type)});
    table.add({"Machine", machineText(header.e_machine)});
    table.add({"Version", hexText(header.e_version)});
    table.add({"Entry point address", hexText(header.e_entry)});
    table.add({"Start of program headers", number(header.e_phoff)});
    table.add({"Start of section headers", number(header.e_shoff)});
    table.add({"Flags", hexText(header.e_flags)});
    table.add({"Size of this header", number(header.e_ehsize)});
    table.add({"Size of program headers", number(header.e_phentsize)});
    table.add({"Number of program headers", number(header.e_phnum)});
    table.add({"Size of section headers", number(header.e_shentsize)});
    table.add({"Number of section headers", number(header.e_shnum)});
    table.add({"Section header string table index", number(header.e_shstrndx)});
    table.write(output);
}

void writeSegments(OutputFile& output, const ElfView& view) {
    const auto address = [](std::uint32_t value) { return hexText(value, 8); };
    const auto size = [](std::uint32_t value) { return hexText(value, 5); };
    TextTable table(
        {{"Type"}, {"Offset"}, {"VirtAddr"}, {"PhysAddr"}, {"FileSiz"}, {"MemSiz"}, {"Flg"}, {"Align"}});
    for (const ElfProgramHeader& segment : view.segments())
        table.add({segmentTypeText(segment.p_type), hexText(segment.p_offset, 6), address(segment.p_vaddr),
                   address(segment.p_paddr), size(segment.p_filesz), size(segment.p_memsz),
                   segmentFlagsText(segment.p_flags), hexText(segment.p_align)});
    output.write("\nProgram headers:\n");
    table.write(output);
}

Json segmentJson(const ElfProgramHeader& segment) {
    Json object = Json::object();
    object["type"] = segment.p_type;
    object["typeText"] = segmentTypeText(segment.p_type);
    object["offset"] = segment.p_offset;
    object["virtualAddress"] = segment.p_vaddr;
    object["physicalAddress"] = segment.p_paddr;
    object["fileSize"] = segment.p_filesz;
    object["memorySize"] = segment.p_memsz;
    object["flags"] = segment.p_flags;
    object["align"] = segment.p_align;
    return object;
}

void writeObject(OutputFile& output, const ElfView& view) {
    const ElfHeader& header = view.header();
    Json object = jsonObject("elfHeader", 1);
    object["ident"] = header.e_ident;
    object["fileType"] = header.e_type;
    object["fileTypeText"] = fileTypeText(header.e_type);
    object["machine"] = header.e_machine;
    object["machineText"] = machineText(header.e_machine);
    object["formatVersion"] = header.e_version;
    object["entry"] = header.e_entry;
    object["programHeadersOffset"] = header.e_phoff;
    object["sectionHeadersOffset"] = header.e_shoff;
    object["flags"] = header.e_flags;
    object["headerSize"] = header.e_ehsize;
    object["programHeaderSize"] = header.e_phentsize;
    object["programHeaderCount"] = header.e_phnum;
    object["sectionHeaderSize"] = header.e_shentsize;
    object["sectionHeaderCount"] = header.e_shnum;
    object["sectionNamesIndex"] = header.e_shstrndx;
    Json& list = object["programHeaders"] = Json::array();
    for (const ElfProgramHeader& segment : view.segments())
        list.push_back(segmentJson(segment));
    writeJson(output, object);
}

} // namespace

int elfHeader(const Invocation& invocation) {
    const ElfInspection inspection(invocation.value("FILE"));
    OutputFile output = resultFile(invocation);
    if (invocation.has("json")) {
        writeObject(output, inspection.view());
    } else {
        writeHeader(output, inspection.view().header());
        if (!inspection.view().segments().empty())
            writeSegments(output, inspection.view());
    }
    output.close();
    return inspection.finish();
}
