#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ImageBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

// The only sector of a container.
struct Only {
    explicit Only(const ImageBuilder& image)
        : container(load(image.bytes())), sector(container->firstSector) {}

    Container container;
    ZBSectorHolder_tag* sector;
};

constexpr std::int32_t s_imageTypes[] = {ZBSEC_BINARY, ZBSEC_ELF, ZBSEC_OTP, ZBSEC_OTP_EXTENDED};
constexpr std::int32_t s_otherTypes[] = {
    0, ZBSEC_SYSCONFIG, ZBSEC_NODEDESC, ZBSEC_GOTO, ZBSEC_CALL, 7, ZBSEC_ZN, 9, 12, ZBSEC_END, -1};

// The call ends the process as a failed check does.
void expectFailedCheck(const std::function<void()>& call) {
    const ChildResult result = runInChild([&] {
        call();
        std::exit(3); // not reached
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_THAT(result.output,
                testing::MatchesRegex("Assertion Failed : infr_libs/ZelmBinaryHandler/ZBHandlerSectors\\.cpp"
                                      ":[0-9]+\n"));
}

} // namespace

TEST(ZBHandlerSectors, AreVisitedInOrder) {
    const Container container = load(ImageBuilder().zn("A").end().bytes());
    ZBSectorHolder_tag* first = getFirstSector(container.get());
    EXPECT_EQ(first->type, ZBSEC_ZN);
    ZBSectorHolder_tag* second = getNextSector(container.get(), first);
    EXPECT_EQ(second->type, ZBSEC_END);
    EXPECT_EQ(getNextSector(container.get(), second), nullptr);
    EXPECT_EQ(getNextSector(container.get(), nullptr), nullptr);
    EXPECT_EQ(getNextSector(nullptr, first), second); // the handle isn't used
}

TEST(ZBHandlerSectors, AnEmptyContainerHasNoFirst) {
    EXPECT_EQ(getFirstSector(emptyContainer().get()), nullptr);
}

TEST(ZBHandlerSectors, TheFieldsOfARecordAreReadWhateverTheType) {
    for (unsigned type : {1, 2, 5, 8, 9}) {
        const Only only(ImageBuilder().image(type, 0xFEDC, 0xBA98, 0x8877665544332211, "x"));
        EXPECT_EQ(getSectorNodeNum(only.sector), 0xFEDC);
        EXPECT_EQ(getSectorCoreNum(only.sector), 0xBA98);
        EXPECT_EQ(getSectorAddress(only.sector), 0x8877665544332211);
    }
}

TEST(ZBHandlerSectors, AnImageIsWhatFollowsThePrefix) {
    for (const std::int32_t type : s_imageTypes) {
        const Only only(ImageBuilder().image(static_cast<unsigned>(type), 1, 2, 3, "image"));
        EXPECT_TRUE(sectorIsImage(only.sector));
        EXPECT_EQ(getSectorImageNumBytes(only.sector), 5U);
        EXPECT_EQ(getSectorImageData(only.sector), only.sector->data + 12);
    }
}

TEST(ZBHandlerSectors, OnlyFourTypesAreImages) {
    const Container container = emptyContainer();
    for (const std::int32_t type : s_otherTypes)
        EXPECT_FALSE(sectorIsImage(add(container, type, "x"))) << type;
}

TEST(ZBHandlerSectors, ANodeDescriptorGivesNodeAndPart) {
    const Only only(ImageBuilder().nodeDescriptor(0xFEDC, 0x8877665544332211));
    EXPECT_EQ(getSectorNodeDescriptorNodeNum(only.sector), 0xFEDC);
    EXPECT_EQ(getSectorNodeDescriptorPartNumber(only.sector), 0x8877665544332211);
}

TEST(ZBHandlerSectors, APayloadTooShortForARecordReadsAsZeros) {
    const Container container = emptyContainer();
    for (const char* payload : {"", "\1", "\1\1\1\1\1\1\1\1\1\1\1"}) {
        const ZBSectorHolder_tag* image = add(container, ZBSEC_ELF, payload);
        EXPECT_EQ(getSectorNodeNum(image), 0);
        EXPECT_EQ(getSectorCoreNum(image), 0);
        EXPECT_EQ(getSectorAddress(image), 0U);
        EXPECT_EQ(getSectorImageNumBytes(image), 0U);
        EXPECT_EQ(getSectorImageData(image), nullptr);
        const ZBSectorHolder_tag* descriptor = add(container, ZBSEC_NODEDESC, payload);
        EXPECT_EQ(getSectorNodeDescriptorNodeNum(descriptor), 0);
        EXPECT_EQ(getSectorNodeDescriptorPartNumber(descriptor), 0U);
    }
}

// --- Checked accessors ---

TEST(ZBHandlerSectors, ImageDataOfAConfigurationEndsTheProcessWithStatusZero) {
    const Only only(ImageBuilder().config("<ZSystem/>"));
    expectFailedCheck([&] { getSectorImageData(only.sector); });
}

TEST(ZBHandlerSectors, ImageSizeOfAConfigurationEndsTheProcessWithStatusZero) {
    const Only only(ImageBuilder().config("<ZSystem/>"));
    expectFailedCheck([&] { getSectorImageNumBytes(only.sector); });
}

TEST(ZBHandlerSectors, DescriptorNodeOfAnImageEndsTheProcessWithStatusZero) {
    const Only only(ImageBuilder().elf(1, 2, "x"));
    expectFailedCheck([&] { getSectorNodeDescriptorNodeNum(only.sector); });
}

TEST(ZBHandlerSectors, DescriptorPartOfAnImageEndsTheProcessWithStatusZero) {
    const Only only(ImageBuilder().elf(1, 2, "x"));
    expectFailedCheck([&] { getSectorNodeDescriptorPartNumber(only.sector); });
}
