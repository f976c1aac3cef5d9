#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ElfBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;

std::string displayed(const std::string& bytes) {
    return runInChild([&] {
               ErrorHandler errorHandler;
               readElf(errorHandler, bytes)->display();
           })
        .output;
}

} // namespace

TEST(ElfHandlerDisplay, DisplaysAFileWithoutAnythingToTheLetter) {
    EXPECT_EQ(displayed(ElfBuilder().build().set("e_shnum", 0).set("e_flags", 0xABCD).bytes),
              "Elf32_Ehdr.e_ident = 7f454c46010101000000000000000000\n"
              "Elf32_Ehdr.e_type = 00000002\n"
              "Elf32_Ehdr.e_machine = 0000b49e\n"
              "Elf32_Ehdr.e_version = 00000001\n"
              "Elf32_Ehdr.e_entry = 00000000\n"
              "Elf32_Ehdr.e_phoff = 00000000\n"
              "Elf32_Ehdr.e_shoff = 00000034\n"
              "Elf32_Ehdr.e_flags = 0000abcd\n"
              "Elf32_Ehdr.e_ehsize = 00000034\n"
              "Elf32_Ehdr.e_phentsize = 00000020\n"
              "Elf32_Ehdr.e_phnum = 00000000\n"
              "Elf32_Ehdr.e_shentsize = 00000028\n"
              "Elf32_Ehdr.e_shnum = 00000000\n"
              "Elf32_Ehdr.e_shstrndx = 00000002\n"
              "\nSymbols:\n"
              "0: name: , st_name = 00000000, st_value = 00000000, st_size = 00000000, st_info = 00, "
              "st_other = 00, st_shndx = 00000000\n"
              "\nStrings:\n"
              "00000000 \n");
}

TEST(ElfHandlerDisplay, DisplaysHeadersBlocksAndTablesInOrder) {
    ElfBuilder image;
    image.m_hasSymbols = false;
    image.addSegment({.vaddr = 0x10000, .paddr = 0x20000, .bytes = "0123456789abcdefXY", .memsz = 32});
    image.addSection({.name = ".text", .size = 18, .segment = 0, .flags = 6, .addr = 0x10000, .align = 4});
    image.addSection({.name = ".late", .size = 2, .segment = 0, .offset = 16});
    image.addSection(
        {.name = ".rel.text", .type = 9, .bytes = littleEndianWords({4, 0x102}), .info = 1, .entsize = 8});
    const std::string text = displayed(image.build().bytes);
    const std::vector<std::string> pieces = {
        "\nProgram Header 0\n"
        "Elf32_Phdr.p_type = 00000001\n"
        "Elf32_Phdr.p_offset = 0000011c\n"
        "Elf32_Phdr.p_vaddr = 00010000\n"
        "Elf32_Phdr.p_paddr = 00020000\n"
        "Elf32_Phdr.p_filesz = 00000012\n"
        "Elf32_Phdr.p_memsz = 00000020\n"
        "Elf32_Phdr.p_flags = 00000005\n"
        "Elf32_Phdr.p_align = 00000001\n"
        "\nSection Header 0\n"
        "Section name: \n"
        "Elf32_Shdr.sh_name = 00000000\n",
        "\nSection Header 1\n"
        "Section name: .text\n"
        "Elf32_Shdr.sh_name = 00000001\n"
        "Elf32_Shdr.sh_type = 00000001\n"
        "Elf32_Shdr.sh_flags = 00000006\n"
        "Elf32_Shdr.sh_addr = 00010000\n"
        "Elf32_Shdr.sh_offset = 0000011c\n"
        "Elf32_Shdr.sh_size = 00000012\n"
        "Elf32_Shdr.sh_link = 00000000\n"
        "Elf32_Shdr.sh_info = 00000000\n"
        "Elf32_Shdr.sh_addralign = 00000004\n"
        "Elf32_Shdr.sh_entsize = 00000000\n"
        "\nSection Header 2\n",
        "\nBlock 0\n"
        "Block of data at 0x0000011c, size 18 bytes\n"
        "Program segment 0\n"
        "Section 1\n"
        "\n0x00000000: 30313233 34353637 38396162 63646566"
        "\n0x00000010: 5859\n"
        "\nBlock 1\n"
        "Block of data at 0x0000012e, size 8 bytes\n"
        "Not a program segment\n"
        "Section 3\n"
        "\n0x00000000: 04000000 02010000\n"
        "\nBlock 2\n",
        "\nSymbols:\n",
        "\nStrings:\n"
        "00000000 \n"
        "00000001 .text\n"
        "00000007 .late\n",
        "\nRelocation table contains 1  entry::\n"
        "Index 0\n"
        "Offset: 00000004\n"
        "Type: 00000002\n"
        "Symbol: 00000001\n"
        "Addend: 00000000\n",
    };
    std::size_t place = 0;
    for (const std::string& piece : pieces) {
        const std::size_t found = text.find(piece, place);
        ASSERT_NE(found, std::string::npos) << piece << "\nis not in\n" << text.substr(place);
        place = found + piece.size();
    }
    EXPECT_EQ(place, text.size());
}

TEST(ElfHandlerDisplay, DisplaysASegmentWithoutASectionAtItsStartAndWithoutBytes) {
    ElfBuilder image;
    image.addSegment({});
    EXPECT_THAT(displayed(image.build().bytes), HasSubstr("\nBlock 0\n"
                                                          "Block of data at 0x000000cc, size 0 bytes\n"
                                                          "Program segment 0\n"
                                                          "Not a section\n"
                                                          "\n"
                                                          "\nBlock 1\n"));
}
