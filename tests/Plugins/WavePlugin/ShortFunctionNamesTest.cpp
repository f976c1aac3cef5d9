#include "Plugins/WavePlugin/ShortFunctionNames.h"

#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace {

// Short names as they are defined: candidates are tried in order against all that were handed out. What the
// table's results are held against.
class ProbedNames {
public:
    std::string create(const std::string& name) {
        if (const auto found = m_shortNames.find(name); found != m_shortNames.end())
            return found->second.c_str();
        for (int i = 0; i <= 999; ++i) {
            std::string candidate = name.substr(0, 4);
            candidate.resize(4); // zeros behind the name's end
            candidate += "." + std::to_string(i);
            if (!m_usedShortNames.insert(candidate).second)
                continue;
            m_shortNames[name] = candidate;
            return candidate.c_str(); // up to a zero
        }
        return name.substr(0, 8);
    }

    std::string get(const std::string& name) const {
        const auto found = m_shortNames.find(name);
        return found == m_shortNames.end() ? name.substr(0, 8) : found->second.c_str();
    }

private:
    std::map<std::string, std::string> m_shortNames;
    std::set<std::string> m_usedShortNames;
};

std::string numbered(const std::string& start, int number) {
    return start + std::to_string(number);
}

// A name of letters from few, so that starts are often shared.
std::string randomName(std::mt19937& random, std::size_t longest) {
    std::string name;
    for (std::size_t length = random() % (longest + 1); length != 0; --length)
        name += static_cast<char>('a' + random() % 2);
    return name;
}

} // namespace

TEST(ShortFunctionNames, FunctionsWithTheSameFirstFourBytesAreNumbered) {
    ShortFunctionNames names;
    EXPECT_EQ(names.create("main"), "main.0");
    EXPECT_EQ(names.create("mainloop"), "main.1");
    EXPECT_EQ(names.create("mail"), "mail.0");
}

TEST(ShortFunctionNames, AFunctionKeepsItsShortName) {
    ShortFunctionNames names;
    names.create("main");
    names.create("mainloop");
    EXPECT_EQ(names.create("main"), "main.0");
    EXPECT_EQ(names.create("mainline"), "main.2");
    EXPECT_EQ(names.get("mainloop"), "main.1");
}

TEST(ShortFunctionNames, TheThousandAndFirstOfAStartGoesByItsOwnFirstEightBytes) {
    ShortFunctionNames names;
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(names.create(numbered("handler", i)), numbered("hand.", i));
    EXPECT_EQ(names.create("handler1000"), "handler1");
    EXPECT_EQ(names.get("handler1000"), "handler1");
    EXPECT_EQ(names.create("hand.999"), "hand.999"); // not protected against a clash: wanted
    EXPECT_EQ(names.create("handler999"), "hand.999");
    EXPECT_EQ(names.create("hana"), "hana.0");
}

TEST(ShortFunctionNames, OfAFunctionThatFoundNoNumberNothingIsKept) {
    ShortFunctionNames names;
    for (int i = 0; i < 1000; ++i)
        names.create(numbered("handler", i));
    EXPECT_EQ(names.create("handlerlast"), "handlerl");
    EXPECT_EQ(names.create("handlerlast"), "handlerl");
    EXPECT_EQ(names.create("handlerl"), "handlerl");
}

TEST(ShortFunctionNames, AFunctionOfFewerThanFourCharactersGoesByItsOwnName) {
    ShortFunctionNames names;
    for (const char* name : {"", "a", "ab", "abc", "ab", ""}) {
        EXPECT_EQ(names.create(name), name);
        EXPECT_EQ(names.get(name), name);
    }
    EXPECT_EQ(names.create("abcd"), "abcd.0");
}

TEST(ShortFunctionNames, AFunctionThatWasNeverSettledGoesByItsFirstEightBytes) {
    const ShortFunctionNames names;
    EXPECT_EQ(names.get("interrupt_handler"), "interrup");
    EXPECT_EQ(names.get("exactly8"), "exactly8");
    EXPECT_EQ(names.get("seven77"), "seven77");
    EXPECT_EQ(names.get(""), "");
}

TEST(ShortFunctionNames, NamesAreBytesNotCharacters) {
    ShortFunctionNames names;
    EXPECT_EQ(names.create("\xc3\xa9t\xc3\xa9"), "\xc3\xa9t\xc3.0");
    EXPECT_EQ(names.create("a\"<&"), "a\"<&.0");
}

TEST(ShortFunctionNames, AreThoseOfTheProbingLoop) {
    // Short and shared starts, until the numbers of most are used up.
    std::mt19937 random(8);
    ShortFunctionNames names;
    ProbedNames probed;
    std::vector<std::string> known;
    for (int i = 0; i < 20000; ++i) {
        const std::string name = i % 5 == 4 ? known[random() % known.size()] : randomName(random, 14);
        known.push_back(name);
        ASSERT_EQ(names.create(name), probed.create(name)) << name;
    }
    for (const std::string& name : known)
        ASSERT_EQ(names.get(name), probed.get(name)) << name;
    for (int i = 0; i < 1000; ++i) {
        const std::string name = randomName(random, 20);
        ASSERT_EQ(names.get(name), probed.get(name)) << name;
    }
}
