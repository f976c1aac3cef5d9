#include "tests/support/ElfSeeds.h"

#include "tests/support/ElfBuilder.h"

ElfBuilder richElf() {
    ElfBuilder image;
    image.addSegment({.vaddr = 0x10000, .bytes = std::string(24, 'c'), .memsz = 40});
    image.addSegment({.type = 4, .bytes = littleEndianWords({4, 4, 1}) + "ZELMabcd"});
    image.addSection({.name = ".text", .size = 24, .segment = 0, .flags = 6, .addr = 0x10000});
    image.addSection({.name = ".bss", .type = 8, .size = 16, .segment = 0, .offset = 24, .flags = 3});
    image.addSection({.name = ".note", .type = 7, .size = 20, .segment = 1});
    image.addSection({.name = ".info", .type = 19, .bytes = "info"});
    image.addSection({.name = ".rel.text",
                      .type = 9,
                      .bytes = littleEndianWords({0, 0x101, 4, 0x202}),
                      .info = 1,
                      .entsize = 8});
    image.addSection({.name = ".rela.info",
                      .type = 4,
                      .bytes = littleEndianWords({0, 0x101, 7}),
                      .info = 4,
                      .entsize = 12});
    image.addSection(
        {.name = ".group", .type = 17, .bytes = littleEndianWords({1, 1, 5}), .info = 1, .entsize = 4});
    image.addFunction("main", 0x10000);
    image.addFunction("helper", 0x10008);
    image.addSymbol({.name = "main", .info = 0x21, .section = 4});
    return image;
}

std::vector<std::string> elfSeeds() {
    ElfBuilder image;
    image.addSegment({.vaddr = 0x10000, .bytes = "code"});
    image.addSection({.name = ".text", .size = 4, .segment = 0});
    image.addFunction("_start", 0x10000);

    ElfBuilder object;
    object.m_type = 1; // ET_REL
    object.addSection({.name = ".text", .bytes = "code"});
    object.addSection({.name = ".bss", .type = 8, .size = 100});
    object.addFunction("main", 0);

    ElfBuilder doubled = object;
    doubled.m_strings = std::string("\0one\0one\0two\0", 13);

    ElfBuilder noSymbols = image;
    noSymbols.m_hasSymbols = false;

    std::vector<std::string> files;
    for (const ElfBuilder& elf : {image, object, doubled, noSymbols, richElf(), ElfBuilder()})
        files.push_back(elf.build().bytes);
    return files;
}
