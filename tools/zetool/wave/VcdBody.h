#pragma once

#include "tools/zetool/wave/VcdSource.h"

#include <array>
#include <cstdint>
#include <string_view>

// What stands in a body besides times and values, each word by itself.
enum class VcdWord { DumpVars, OtherDump, End, Unknown };

// Classes of characters, as the scanner of values needs them.
struct VcdCharacters {
    static constexpr std::uint8_t s_blank = 1; // up to and including the space
    static constexpr std::uint8_t s_bit = 2;   // 0, 1, x and z: what IEEE 1364 has for a bit

    std::array<std::uint8_t, 256> classes = {};

    constexpr VcdCharacters() {
        for (unsigned int c = 0; c <= ' '; ++c)
            classes[c] = s_blank;
        for (const char c : {'0', '1', 'x', 'z', 'X', 'Z'})
            classes[static_cast<unsigned char>(c)] = s_bit;
    }
};

inline constexpr VcdCharacters s_vcdCharacters;

inline bool isVcdBlank(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

// Goes through the body of a waveform, from where its header ended to the end, and calls the handler's
// operations, which are inlined here: this is the loop that every gigabyte passes through. Texts are valid
// during the call alone, and s_padding bytes behind each may be read. Lines are counted from 1.
//
//   void time(std::string_view text, line)        text without its #
//   void scalar(std::string_view word, line)      value and identifier in one word
//   void vector(std::string_view whole, std::string_view value, std::string_view identifier, bool isBits,
//               line)
//       `whole` is both words with what stands between; the value begins with its kind: b, r or s. Only
//       where `isBits` are all its digits 0, 1, x or z.
//   void word(VcdWord kind, std::string_view word, line)
//   void blankLine(line)                          an empty line, at the first of several
//   void cut(std::string_view text, line)         a last word that the file's end cut off, or a value
//                                                 without its identifier; nothing comes behind it
//   void progress()                               now and then
//
// Comments are passed over.
template<typename Handler>
class VcdBodyScanner {
public:
    VcdBodyScanner(VcdSource& source, Handler& handler) : m_source(source), m_handler(handler) {}

    void scan() {
        m_at = m_source.begin();
        m_end = m_source.end();
        m_line = m_source.line();
        while (skipBlanks())
            readItem();
    }

private:
    // Moves to the next word. False at the end of the file.
    bool skipBlanks() {
        unsigned int numLineEnds = 0;
        for (;;) {
            if (m_at == m_end) {
                if (!refill(m_at))
                    return false;
                continue;
            }
            if (!isVcdBlank(*m_at))
                return true;
            if (*m_at == '\n') {
                ++m_line;
                if (++numLineEnds == 2)
                    m_handler.blankLine(m_line - 1);
            }
            ++m_at;
        }
    }

    // Reads more, with the bytes from `keep` kept. False at the end of the file; m_at is where `keep` was.
    bool refill(const char* keep) {
        m_handler.progress();
        const bool more = m_source.refill(keep);
        m_at = m_source.begin();
        m_end = m_source.end();
        return more;
    }

    static std::string_view between(const char* from, const char* to) {
        return {from, static_cast<std::size_t>(to - from)};
    }

    // Reads a word and, behind a vector's value, its identifier. What the window cuts is read again from its
    // start; what the file cuts goes to `cut`.
    void readItem() {
        for (;;) {
            const char* at = m_at;
            const char first = *at;
            const bool isVector =
                (first | 0x20) == 'b' || (first | 0x20) == 'r' || first == 's' || first == 'S';
            if (isVector ? readVector(at) : readWord(at))
                return;
            if (refill(m_at))
                continue;
            m_handler.cut(between(m_at, m_end), m_line);
            m_at = m_end;
            return;
        }
    }

    bool readVector(const char* at) {
        const char* start = at;
        ++at;
        while (s_vcdCharacters.classes[static_cast<unsigned char>(*at)] == VcdCharacters::s_bit)
            ++at;
        const bool isBits = isVcdBlank(*at) && (*start | 0x20) == 'b';
        while (!isVcdBlank(*at))
            ++at;
        if (at == m_end)
            return false;
        const char* valueEnd = at;
        std::uint64_t numLineEnds = 0;
        while (at != m_end && isVcdBlank(*at)) {
            numLineEnds += *at == '\n';
            ++at;
        }
        const char* identifier = at;
        while (!isVcdBlank(*at))
            ++at;
        if (at == m_end)
            return false;
        m_handler.vector(between(start, at), between(start, valueEnd), between(identifier, at), isBits,
                         m_line);
        m_line += numLineEnds;
        m_at = at;
        return true;
    }

    bool readWord(const char* at) {
        const char* start = at;
        while (!isVcdBlank(*at))
            ++at;
        if (at == m_end)
            return false;
        const std::string_view word = between(start, at);
        if (*start == '#') {
            m_handler.time(word.substr(1), m_line);
        } else if (*start == '$') {
            if (word == "$comment")
                return skipComment(at);
            readKeyword(word);
        } else {
            m_handler.scalar(word, m_line);
        }
        m_at = at;
        return true;
    }

    void readKeyword(std::string_view word) {
        if (word == "$end")
            m_handler.word(VcdWord::End, word, m_line);
        else if (word == "$dumpvars")
            m_handler.word(VcdWord::DumpVars, word, m_line);
        else if (word == "$dumpall" || word == "$dumpon" || word == "$dumpoff")
            m_handler.word(VcdWord::OtherDump, word, m_line);
        else
            m_handler.word(VcdWord::Unknown, word, m_line);
    }

    // Behind the word `$comment`: up to its `$end`. A comment's words are dropped one by one, so that it may
    // be of any length.
    bool skipComment(const char* at) {
        m_at = at;
        for (;;) {
            if (!skipBlanks()) {
                m_handler.cut("$comment", m_line);
                return true;
            }
            const char* word = m_at;
            while (!isVcdBlank(*word))
                ++word;
            if (word == m_end) {
                if (!refill(m_at))
                    m_at = m_end;
                continue;
            }
            const bool isEnd = between(m_at, word) == "$end";
            m_at = word;
            if (isEnd)
                return true;
        }
    }

    VcdSource& m_source;
    Handler& m_handler;
    const char* m_at = nullptr;
    const char* m_end = nullptr;
    std::uint64_t m_line = 0;
};
