#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/ImageBuilder.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ZBHandlerEditing, RemovingTheEndTakesEveryEndSector) {
    const Container container = load(ImageBuilder().end().zn("A").end().bytes());
    EXPECT_EQ(removeEndZBSector(container.get()), 0);
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN));
}

TEST(ZBHandlerEditing, RemovingConfigurationsTakesThemAll) {
    const Container container =
        load(ImageBuilder().config("a").zn("A").config("b").config("c").end().config("d").bytes());
    EXPECT_EQ(removeLongZBConfigs(container.get()), 0);
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN, ZBSEC_END));
}

TEST(ZBHandlerEditing, RemovingFromAContainerWithoutAnyChangesNothing) {
    const Container container = load(ImageBuilder().zn("A").bytes());
    EXPECT_EQ(removeEndZBSector(container.get()), 0);
    EXPECT_EQ(removeLongZBConfigs(container.get()), 0);
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_ZN));
}

TEST(ZBHandlerEditing, SectorsAreAppendedBehindWhatARemovalLeft) {
    const Container container = load(ImageBuilder().zn("A").end().bytes());
    removeEndZBSector(container.get());
    add(container, ZBSEC_ZN, "B");
    addEndZBSector(container.get());
    EXPECT_EQ(write(container), ImageBuilder().zn("A").zn("B").end().bytes());
}

TEST(ZBHandlerEditing, AContainerThatARemovalEmptiedCanBeFilledAgain) {
    const Container container = load(ImageBuilder().end().bytes());
    removeEndZBSector(container.get());
    EXPECT_THAT(typesOf(container), IsEmpty());
    addEndZBSector(container.get());
    EXPECT_THAT(typesOf(container), ElementsAre(ZBSEC_END));
}

TEST(ZBHandlerEditing, ARemovedSectorWithoutAPayloadStaysReadable) {
    const Container container = load(ImageBuilder().end().zn("A").bytes());
    const ZBSectorHolder_tag* end = container->firstSector;
    removeEndZBSector(container.get());
    EXPECT_EQ(end->type, ZBSEC_END);
    EXPECT_EQ(getNextSector(container.get(), end), container->firstSector);
}

TEST(ZBHandlerEditing, ReplacedDataIsTakenOverWithoutACopy) {
    const Container container = load(ImageBuilder().zn("A").bytes());
    ZBSectorHolder_tag* sector = container->firstSector;
    const std::uint32_t crc = sector->crc;
    char* data = strdup("other");
    replaceZBSectorData(container.get(), sector, 5, data);
    EXPECT_EQ(static_cast<void*>(sector->data), data);
    EXPECT_EQ(sector->length, 5U);
    EXPECT_EQ(sector->crc, crc); // left as it was
    EXPECT_EQ(write(container), ImageBuilder().zn("other").bytes());
}

TEST(ZBHandlerEditing, DataCanBeTakenAway) {
    const Container container = load(ImageBuilder().zn("A").bytes());
    replaceZBSectorData(container.get(), container->firstSector, 0, nullptr);
    EXPECT_EQ(write(container), ImageBuilder().sector(8, "").bytes());
}

TEST(ZBHandlerEditing, ReplacingDataWithItselfShortensIt) {
    const Container container = load(ImageBuilder().zn("ABC").bytes());
    replaceZBSectorData(nullptr, container->firstSector, 1, container->firstSector->data);
    EXPECT_EQ(write(container), ImageBuilder().zn("A").bytes());
}
