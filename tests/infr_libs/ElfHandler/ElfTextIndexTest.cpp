#include "infr_libs/ElfHandler/ElfTextIndex.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

// An index whose values are places in a list of texts, and that counts how many texts it asks for.
class ElfTextIndexTest : public testing::Test {
protected:
    std::vector<std::string> m_texts;
    std::size_t m_numAsked = 0;
    ElfTextIndex m_index{[this](std::uint32_t value) {
        ++m_numAsked;
        return m_texts[value].c_str();
    }};

    void add(const std::string& text, std::uint32_t hash) {
        m_texts.push_back(text);
        m_index.insert({text, hash}, static_cast<std::uint32_t>(m_texts.size() - 1));
    }

    void expectFound(const ElfTextIndex::Key& key, std::uint32_t value) {
        const std::uint32_t* found = m_index.find(key);
        ASSERT_NE(found, nullptr) << key.text;
        EXPECT_EQ(*found, value) << key.text;
    }
};

constexpr std::uint32_t s_many = 40'000;

} // namespace

TEST_F(ElfTextIndexTest, FindsNothingWhileItIsEmpty) {
    EXPECT_EQ(m_index.find(ElfTextIndex::keyOf("text")), nullptr);
}

TEST_F(ElfTextIndexTest, FindsEachOfManyTexts) {
    for (std::uint32_t i = 0; i < s_many; ++i) {
        m_texts.push_back("text" + std::to_string(i));
        m_index.insert(ElfTextIndex::keyOf(m_texts.back()), i);
    }
    for (std::uint32_t i = 0; i < s_many; ++i)
        expectFound(ElfTextIndex::keyOf(m_texts[i]), i);
    EXPECT_EQ(m_index.find(ElfTextIndex::keyOf("other")), nullptr);
}

TEST_F(ElfTextIndexTest, TellsTextsOfOneHashApart) {
    for (int i = 0; i < 100; ++i)
        add(std::to_string(i), 42);
    for (std::uint32_t i = 0; i < 100; ++i)
        expectFound({m_texts[i], 42}, i);
    EXPECT_EQ(m_index.find({"100", 42}), nullptr);
    EXPECT_EQ(m_index.find({"1", 43}), nullptr);
}

TEST_F(ElfTextIndexTest, TellsATextFromItsBeginning) {
    add("main", 42);
    add("mainly", 42);
    EXPECT_EQ(m_index.find({"mai", 42}), nullptr);
    EXPECT_EQ(m_index.find({"mainl", 42}), nullptr);
    expectFound({"mainly", 42}, 1);
}

TEST_F(ElfTextIndexTest, ManyTextsOfOneHashAreNotComparedOneByOne) {
    for (std::uint32_t i = 0; i < s_many; ++i) {
        EXPECT_EQ(m_index.find({std::to_string(i), 42}), nullptr);
        add(std::to_string(i), 42);
    }
    for (std::uint32_t i = 0; i < s_many; ++i)
        expectFound({m_texts[i], 42}, i);
    EXPECT_LE(m_numAsked, 2 * s_many * 8);
}

TEST_F(ElfTextIndexTest, FindsTextsOfManyHashesThatShareASlot) {
    const auto hashOf = [](std::uint32_t i) { return i << 16; };
    for (std::uint32_t i = 0; i < s_many; ++i)
        add(std::to_string(i), hashOf(i));
    for (std::uint32_t i = 0; i < s_many; ++i)
        expectFound({m_texts[i], hashOf(i)}, i);
    EXPECT_EQ(m_index.find({"other", 0}), nullptr);
}

TEST_F(ElfTextIndexTest, RoomMadeAheadChangesNothing) {
    add("text", 7);
    m_index.reserve(1000);
    expectFound({"text", 7}, 0);
}

TEST_F(ElfTextIndexTest, RoomMadeLaterChangesNothingForTextsOfOneHash) {
    for (int i = 0; i < 100; ++i)
        add(std::to_string(i), 42);
    m_index.reserve(100'000);
    for (std::uint32_t i = 0; i < 100; ++i)
        expectFound({m_texts[i], 42}, i);
}
