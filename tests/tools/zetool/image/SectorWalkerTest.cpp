#include "tools/zetool/image/SectorWalker.h"

#include "tests/support/ImageBuilder.h"
#include "tests/support/TemporaryFolder.h"

namespace {

ImageBuilder image() {
    return ImageBuilder().zn("A").elf(1, 2, "seven77").jump(3, 4, 5).sector(9, "12345678").end();
}

// The sectors with their payloads, and how it ended, as a line; by the walker.
std::string walked(const std::string& file, bool reads) {
    InputFile input(file);
    SectorWalker walker(input);
    std::string text;
    while (walker.next()) {
        std::string payload;
        const bool isWhole =
            reads ? walker.read([&](std::string_view piece) { payload += piece; }) : walker.skip();
        if (isWhole)
            text += std::to_string(walker.sector().head.type) + " " +
                    std::to_string(walker.sector().head.length) + " " + std::to_string(walker.sector().crc) +
                    (reads ? " " + payload : "") + "\n";
    }
    const std::string& fault = walker.fault();
    if (walker.numBegun() == 0 && !walker.hasHeader())
        return fault;
    return text + (fault.empty() ? "" : zbinternals::s_cutOff.text);
}

// The same by the loader.
std::string loaded(const std::string& bytes, bool reads) {
    ZBHandler* container = loadZBFromMemory(bytes.data(), bytes.size());
    std::string text;
    for (const auto* sector = getFirstSector(container); sector; sector = getNextSector(container, sector)) {
        text += std::to_string(sector->type) + " " + std::to_string(sector->length) + " " +
                std::to_string(sector->crc);
        if (reads && sector->data)
            text += " " + std::string(reinterpret_cast<const char*>(sector->data),
                                      static_cast<std::size_t>(sector->length));
        else if (reads)
            text += " ";
        text += "\n";
    }
    text += container->errorMessage;
    deleteZBHandler(container);
    return text;
}

void expectTheSame(const TemporaryFolder& folder, const std::string& bytes, const std::string& damage) {
    const std::string file = folder.write("a.ze", bytes);
    for (const bool reads : {false, true})
        EXPECT_EQ(walked(file, reads), loaded(bytes, reads)) << damage;
}

} // namespace

TEST(SectorWalker, TakesWhatTheLoaderTakes) {
    const TemporaryFolder folder;
    expectTheSame(folder, image().bytes(), "the whole image");
    const std::size_t size = image().size();
    for (std::size_t length = 0; length < size; ++length)
        expectTheSame(folder, image().cutTo(length).bytes(), "cut to " + std::to_string(length));
}

// With CRCs waived, since the walker goes on behind a wrong one.
TEST(SectorWalker, TakesLengthsAndPaddingAsTheLoaderDoes) {
    const TemporaryFolder folder;
    const std::string tail = std::string(64, '\0');
    for (const unsigned pad : {0, 1, 2, 3, 4, 255})
        for (const std::uint64_t length :
             {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{7}, std::uint64_t{8}, std::uint64_t{9},
              std::uint64_t{10}, std::uint64_t{11}, std::uint64_t{12}, std::uint64_t{13}, std::uint64_t{52},
              std::uint64_t{53}, std::uint64_t{0x7fffffff}, std::uint64_t{0xffffffff}, ~std::uint64_t{0} - 20,
              ~std::uint64_t{0} - 12, ~std::uint64_t{0}})
            for (const std::size_t behind : {0U, 1U, 2U, 3U, 20U}) {
                const std::string bytes = ImageBuilder()
                                              .append(std::string(16, '\0'))
                                              .append(tail.substr(0, 20 + behind))
                                              .setByte(8, 1)
                                              .setNumber(12, 8, length)
                                              .setByte(20, pad)
                                              .bytes();
                expectTheSame(folder, bytes,
                              std::to_string(pad) + " " + std::to_string(length) + " " +
                                  std::to_string(behind));
            }
}

TEST(SectorWalker, ComputesTheCrcOverPiecesOfAnySize) {
    const TemporaryFolder folder;
    for (const std::size_t size : {1U, 65535U, 65536U, 65537U, 200000U}) {
        std::string payload(size, 'p');
        payload[size / 2] = 'x';
        const std::string file = folder.write("a.ze", ImageBuilder().zn(payload).end().bytes());
        InputFile input(file);
        SectorWalker walker(input);
        ASSERT_TRUE(walker.next());
        ASSERT_TRUE(walker.read());
        EXPECT_EQ(walker.sector().computedCrc, walker.sector().crc);
        ASSERT_TRUE(walker.next());
        EXPECT_EQ(walker.sector().head.type, ZBSEC_END);
        EXPECT_FALSE(walker.next());
        EXPECT_EQ(walker.fault(), "");
    }
}
