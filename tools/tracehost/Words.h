#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// What is wrong with a scenario, in words. Thrown without a place by whoever finds it; `ScenarioReader`
// adds file and line.
class ScenarioError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The words of one line, taken one by one from the left. Words stand apart by blanks; a word in double
// quotes may hold blanks, and \n \r \t \\ \" and \xHH in it stand for a byte. A # outside quotes begins a
// comment.
class Words {
public:
    struct Word {
        std::string text;
        bool isQuoted;
    };

    // Throws on a quote that isn't closed and on an unknown escape.
    explicit Words(std::string_view line);

    bool empty() const { return m_next == m_words.size(); }

    // The next word without taking it. There must be one.
    const Word& peek() const { return m_words[m_next]; }

    // The next word, or an error that names what is missing: "port needs a name".
    const Word& takeWord(std::string_view missing);
    const std::string& take(std::string_view missing) { return takeWord(missing).text; }

    // Takes the next word if it is this one, unquoted.
    bool takeIf(std::string_view word);

    // The next word as a number, decimal, 0x.. or 0b.., in these bounds; what it is goes into the error.
    std::uint32_t takeNumber(std::string_view what, std::uint32_t least = 0, std::uint32_t most = UINT32_MAX);

    // An error when a word is left.
    void expectEnd() const;

private:
    std::vector<Word> m_words;
    std::size_t m_next = 0;
};

// A text as a number; an error when it isn't one or is out of bounds.
std::uint32_t numberOf(std::string_view text, std::string_view what, std::uint32_t least = 0,
                       std::uint32_t most = UINT32_MAX);
