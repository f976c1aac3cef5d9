#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/Bytes.h"
#include "tests/support/ImageBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

TEST(ZBHandlerBuilding, ANewHandleIsEmpty) {
    const Container container = emptyContainer();
    EXPECT_EQ(container->filename, nullptr);
    EXPECT_EQ(container->firstSector, nullptr);
    EXPECT_EQ(container->errorCode, 0);
}

TEST(ZBHandlerBuilding, DeletingNoHandleDoesNothing) {
    deleteZBHandler(nullptr);
}

TEST(ZBHandlerBuilding, EachBuilderMakesItsSector) {
    using Build = ZBSectorHolder_tag* (*)(ZBHandler*);
    struct Row {
        Build build;
        std::int32_t type;
        const char* payload; // in hexadecimal
    };
    const Row rows[] = {
        {[](ZBHandler* h) { return addZBSector(h, 3, 2, "ab"); }, 3, "6162"},
        {[](ZBHandler* h) { return addBinaryZBSector(h, 0x102, 0x304, 0x1122334455667788, "ab", 2); }, 1,
         "0201 0403 8877665544332211 6162"},
        {[](ZBHandler* h) { return addElfZBSector(h, 0x102, 0x304, "ab", 2); }, 2,
         "0201 0403 0000000000000000 6162"},
        {[](ZBHandler* h) { return addOtpZBSector(h, 0x102, 0x304, "ab", 2); }, 10,
         "0201 0403 0000000000000000 6162"},
        {[](ZBHandler* h) { return addOtpExtendedZBSector(h, 0x102, 0x304, "ab", 2); }, 11,
         "0201 0403 0000000000000000 6162"},
        {[](ZBHandler* h) { return addGotoZBSector(h, 0x102, 0x304); }, 5, "0201 0403 0000000000000000"},
        {[](ZBHandler* h) { return addCallZBSector(h, 0x102, 0x304); }, 6, "0201 0403 0000000000000000"},
        // The low 16 bits of the node number are stored.
        {[](ZBHandler* h) { return addNodeDescZBSector(h, 0xABCD0102, 0x1122334455667788); }, 4,
         "0201 0000 8877665544332211"},
        {[](ZBHandler* h) { return addOrSetNodeDescZBSector(h, 0xABCD0102, 0x1122334455667788); }, 4,
         "0201 0000 8877665544332211"},
        {[](ZBHandler* h) { return addZnZBSector(h, 2, "ab"); }, 8, "6162"},
    };
    for (const Row& row : rows) {
        const Container container = emptyContainer();
        ZBSectorHolder_tag* sector = row.build(container.get());
        ASSERT_NE(sector, nullptr) << row.type;
        EXPECT_EQ(sector, container->firstSector);
        EXPECT_EQ(sector->type, row.type);
        EXPECT_EQ(payloadOf(sector), fromHex(row.payload)) << row.type;
        EXPECT_EQ(sector->next, nullptr);
    }
}

TEST(ZBHandlerBuilding, AnEndSectorHasNoPayload) {
    const Container container = emptyContainer();
    const ZBSectorHolder_tag* sector = addEndZBSector(container.get());
    EXPECT_EQ(sector->type, 0x5555);
    EXPECT_EQ(sector->length, 0U);
    EXPECT_EQ(sector->data, nullptr);
}

TEST(ZBHandlerBuilding, ALengthOfZeroGivesASectorWithoutData) {
    const Container container = emptyContainer();
    const ZBSectorHolder_tag* sector = addZBSector(container.get(), ZBSEC_ZN, 0, "unused");
    ASSERT_NE(sector, nullptr);
    EXPECT_EQ(sector->data, nullptr);
}

TEST(ZBHandlerBuilding, AnImageWithoutBytesIsItsPrefix) {
    const Container container = emptyContainer();
    const ZBSectorHolder_tag* sector = addElfZBSector(container.get(), 1, 2, nullptr, 0);
    ASSERT_NE(sector, nullptr);
    EXPECT_EQ(sector->length, 12U);
    EXPECT_EQ(getSectorImageNumBytes(sector), 0U);
}

TEST(ZBHandlerBuilding, NoDataStandsForZeros) {
    const Container container = emptyContainer();
    EXPECT_EQ(payloadOf(addZBSector(container.get(), ZBSEC_ZN, 3, nullptr)), std::string(3, '\0'));
}

TEST(ZBHandlerBuilding, DataIsCopied) {
    const Container container = emptyContainer();
    std::string data = "mine";
    const ZBSectorHolder_tag* sector = add(container, ZBSEC_ZN, data);
    data = "gone";
    EXPECT_EQ(payloadOf(sector), "mine");
}

TEST(ZBHandlerBuilding, SectorsAreAppendedAlsoToWhatWasLoaded) {
    const Container container = load(ImageBuilder().zn("A").bytes());
    addGotoZBSector(container.get(), 0, 0);
    addEndZBSector(container.get());
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN, ZBSEC_GOTO, ZBSEC_END));
}

TEST(ZBHandlerBuilding, AddingAConfigurationDoesNothingByDesign) {
    const Container container = emptyContainer();
    EXPECT_EQ(addConfigZBSector(container.get(), 3, "abc"), nullptr);
    EXPECT_EQ(container->firstSector, nullptr);
    EXPECT_EQ(container->errorCode, 0);
}

// --- Node descriptors ---

TEST(ZBHandlerBuilding, ANodesDescriptorIsOverwritten) {
    const Container container = emptyContainer();
    addNodeDescZBSector(container.get(), 1, 10);
    ZBSectorHolder_tag* second = addNodeDescZBSector(container.get(), 2, 20);
    addNodeDescZBSector(container.get(), 2, 30);
    second->data[2] = 0x77; // a reserved byte
    EXPECT_EQ(addOrSetNodeDescZBSector(container.get(), 2, 0x1122334455667788), second);
    EXPECT_EQ(payloadOf(second), fromHex("0200 0000 8877665544332211"));
    EXPECT_EQ(sectorsOf(container).size(), 3U);
    EXPECT_EQ(getSectorNodeDescriptorPartNumber(container->firstSector), 10U);
    EXPECT_EQ(getSectorNodeDescriptorPartNumber(second->next), 30U);
}

TEST(ZBHandlerBuilding, ADescriptorIsFoundByTheLowBitsOfItsNode) {
    const Container container = emptyContainer();
    ZBSectorHolder_tag* sector = addNodeDescZBSector(container.get(), 2, 20);
    EXPECT_EQ(addOrSetNodeDescZBSector(container.get(), 0x70002, 21), sector);
    EXPECT_EQ(getSectorNodeDescriptorPartNumber(sector), 21U);
}

TEST(ZBHandlerBuilding, ADescriptorThatIsTooShortOrEmptyIsPassedOver) {
    const Container container = emptyContainer();
    add(container, ZBSEC_NODEDESC, std::string("\2\0.........", 11));
    add(container, ZBSEC_NODEDESC, "");
    add(container, ZBSEC_GOTO, std::string("\2\0..........", 12)); // of another type
    const ZBSectorHolder_tag* added = addOrSetNodeDescZBSector(container.get(), 2, 20);
    EXPECT_EQ(sectorsOf(container).size(), 4U);
    EXPECT_EQ(sectorsOf(container).back(), added);
}

// --- Out of memory ---

TEST(ZBHandlerBuilding, APayloadThatCantBeMadeLeavesItsSectorLinked) {
    const Container container = emptyContainer();
    EXPECT_EQ(addZBSector(container.get(), ZBSEC_ZN, 0x80000000, "never read"), nullptr);
    EXPECT_EQ(container->errorCode, 3);
    EXPECT_STREQ(container->errorMessage, "Out of memory error detected");
    ASSERT_NE(container->firstSector, nullptr);
    EXPECT_EQ(container->firstSector->data, nullptr);
    EXPECT_EQ(container->firstSector->length, 0x80000000U);
    addEndZBSector(container.get());
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN, ZBSEC_END));
}

TEST(ZBHandlerBuilding, ALengthThatWrapsWithThePrefixIsTooLong) {
    const Container container = emptyContainer();
    constexpr std::uint64_t lengths[] = {0xFFFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFF4, 0xFFFFFFFF};
    for (const std::uint64_t numBytes : lengths) {
        EXPECT_EQ(addBinaryZBSector(container.get(), 0, 0, 0, "never read", numBytes), nullptr);
        EXPECT_EQ(container->errorCode, 3);
        EXPECT_NE(sectorsOf(container).back()->length, 0U);
    }
    EXPECT_EQ(getZBFileSize(container.get()), 0xFFFFFFFFFFFFFFFFU); // not a sum that wrapped
}
