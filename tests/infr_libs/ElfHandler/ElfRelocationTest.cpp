#include "infr_libs/ElfHandler/ElfRelocation.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/LabelledBytes.h"

#include <gtest/gtest.h>

namespace {

const unsigned char* raw(const std::string& bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

} // namespace

TEST(ElfRelocation, ComposesSymbolAndType) {
    const ElfRelocation relocation(0x10, 0x302, 5, -4);
    EXPECT_EQ(relocation.getOffset(), 0x10U);
    EXPECT_EQ(relocation.r_info, 0x502U);
    EXPECT_EQ(relocation.getType(), 2U); // the low eight bits
    EXPECT_EQ(relocation.getSymbol(), 5U);
    EXPECT_EQ(relocation.getAddend(), -4);
    EXPECT_FALSE(relocation.getRemoved());
}

TEST(ElfRelocation, ReadsAnEntryWithItsAddend) {
    const std::string bytes = littleEndianWords({0x10, 0x502, 0xFFFFFFFC});
    const ElfRelocation relocation(true, raw(bytes));
    EXPECT_EQ(relocation.getOffset(), 0x10U);
    EXPECT_EQ(relocation.getSymbol(), 5U);
    EXPECT_EQ(relocation.getAddend(), -4);
}

TEST(ElfRelocation, ReadsAnEntryWithoutAddend) {
    const std::string bytes = littleEndianWords({0x10, 0x502});
    EXPECT_EQ(ElfRelocation(false, raw(bytes)).getAddend(), 0);
}

TEST(ElfRelocation, SetSymbolKeepsTheType) {
    ElfRelocation relocation(0, 0xAB, 5, 0);
    relocation.setSymbol(0x123456);
    EXPECT_EQ(relocation.getSymbol(), 0x123456U);
    EXPECT_EQ(relocation.getType(), 0xABU);
}

TEST(ElfRelocation, WritesWhatItReads) {
    const std::string bytes = littleEndianWords({0x10, 0x502, 7});
    std::string written(12, '?');
    ElfRelocation(true, raw(bytes)).encode(true, reinterpret_cast<unsigned char*>(written.data()));
    EXPECT_EQ(written, bytes);
    written.assign(12, '?');
    ElfRelocation(true, raw(bytes)).encode(false, reinterpret_cast<unsigned char*>(written.data()));
    EXPECT_EQ(written, bytes.substr(0, 8) + "????");
}

TEST(ElfRelocation, DisplaysFourLines) {
    const ChildResult result = runInChild([] { ElfRelocation(0x10, 2, 5, -4).display(); });
    EXPECT_EQ(result.output, "Offset: 00000010\n"
                             "Type: 00000002\n"
                             "Symbol: 00000005\n"
                             "Addend: fffffffc\n");
}
