#include "infr_libs/StringLibrary/StringLibrary.h"

#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

namespace {

using Position = StringLibrary::Position;

struct Number {
    std::uint32_t value;
    const char* end; // behind the last digit, or the text itself when there is none
    int base;        // 10 or 16
};

// The number of this digit, or 16 where it is none in any base.
unsigned digitOf(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<unsigned>(c - '0');
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? static_cast<unsigned>(lower - 'a' + 10) : 16;
}

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// What the standard conversion gives where an unsigned long has 32 bits: white space, a sign that negates
// within 32 bits, digits; saturated without regard to the sign.
Number readUnsigned(const char* text) {
    const bool hexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    Number number{0, text, hexadecimal ? 16 : 10};
    const unsigned base = static_cast<unsigned>(number.base);

    const char* s = text;
    if (hexadecimal && digitOf(s[2]) < 16)
        s += 2; // without a digit behind it, the prefix is a zero and a left-over x
    while (isSpace(*s))
        ++s;
    const bool negative = *s == '-';
    if (*s == '-' || *s == '+')
        ++s;

    bool overflow = false;
    std::uint64_t value = 0;
    for (unsigned digit; (digit = digitOf(*s)) < base; ++s) {
        if (!overflow)
            value = value * base + digit;
        overflow = overflow || value > UINT32_MAX;
        number.end = s + 1;
    }
    number.value = static_cast<std::uint32_t>(value);
    if (negative)
        number.value = 0 - number.value;
    if (overflow)
        number.value = UINT32_MAX;
    return number;
}

Position findFirst(Position begin, Position end, std::string_view pattern) {
    return std::search(begin, end, pattern.begin(), pattern.end());
}

Position findTokeniser(Position begin, Position end, const char* set) {
    g_tokeniser = set;
    return std::find_if(begin, end, IsTokeniser);
}

Position findNotTokeniser(Position begin, Position end, const char* set) {
    g_tokeniser = set;
    return std::find_if(begin, end, NotIsTokeniser);
}

} // namespace

const char* StringLibrary::strToInt(const char* text, int* value, int* base) const {
    const bool negative = *text == '-';
    const Number number = readUnsigned(negative ? text + 1 : text);
    *base = *number.end == '\0' ? number.base : 0;
    *value = static_cast<int>(negative ? 0 - number.value : number.value);
    return number.end;
}

void StringLibrary::strToBytes(const std::string* text, unsigned numBytes, unsigned char* bytes) const {
    if (numBytes != 4) {
        m_errorHandler->fatalError(true, "ERROR: StrToBytes for %d bytes unimplemented\n",
                                   static_cast<int>(numBytes));
        return;
    }
    const std::uint32_t value = readUnsigned(text->c_str()).value;
    std::memcpy(bytes, &value, sizeof value);
}

bool StringLibrary::isInList(const StringVector& list, const std::string* text) const {
    return std::any_of(list.begin(), list.end(), [&](const std::string* entry) { return *entry == *text; });
}

const std::string* StringLibrary::removeTrailingWhiteSpace(const std::string* text) const {
    Position run = text->begin();
    for (Position next = run; next != text->end();) {
        run = findTokeniser(next, text->end(), g_whiteSpace);
        next = findNotTokeniser(run, text->end(), g_whiteSpace);
    }
    return new std::string(text->begin(), run);
}

const std::string* StringLibrary::removeLeadingWhiteSpace(const std::string* text) const {
    return new std::string(findNotTokeniser(text->begin(), text->end(), g_whiteSpace), text->end());
}

const std::string* StringLibrary::removeNewLineChars(const std::string* text) const {
    return new std::string(text->begin(), findTokeniser(text->begin(), text->end(), g_newLines));
}

Position StringLibrary::findLineComment(Position begin, Position end) const {
    return findFirst(begin, end, "//");
}

Position StringLibrary::findBlockCommentBegin(Position begin, Position end) const {
    return findFirst(begin, end, "/*");
}

Position StringLibrary::findBlockCommentEnd(Position begin, Position end) const {
    return findFirst(begin, end, "*/");
}

const std::string* StringLibrary::removeComments(const std::string* line, bool& inBlockComment) const {
    auto result = std::make_unique<std::string>();
    const Position end = line->end();
    Position position = line->begin();
    Position lineComment = position; // the first from the position on, once it was looked for
    bool lineCommentKnown = false;

    while (position != end) {
        if (inBlockComment) {
            const Position close = findBlockCommentEnd(position, end);
            if (close == end)
                break;
            position = close + 2;
            inBlockComment = false;
        }
        // Looked for again only once it is passed, so that many block comments cost no more than one.
        if (!lineCommentKnown || lineComment < position)
            lineComment = findLineComment(position, end);
        lineCommentKnown = true;

        const Position blockComment = findBlockCommentBegin(position, lineComment);
        result->append(position, blockComment);
        if (blockComment == lineComment)
            break; // a line comment, or the rest of the line
        position = blockComment + 2;
        inBlockComment = true;
    }
    return result.release();
}

const std::string* StringLibrary::replace(const std::string* text, const std::string* pattern,
                                          const std::string* replacement) const {
    static_cast<void>(replacement); // this operation deletes: wanted
    if (pattern->empty())
        return new std::string(*text);

    // Deleting the first occurrence over and over is the same as dropping each occurrence as soon as its
    // last character arrives. The search begins behind the pattern's own length: wanted, so an occurrence
    // at the start of the text stays.
    const std::size_t length = pattern->size();
    auto result = std::make_unique<std::string>();
    result->reserve(text->size());
    for (char c : *text) {
        result->push_back(c);
        if (result->size() >= 2 * length && result->ends_with(*pattern))
            result->resize(result->size() - length);
    }
    return result.release();
}

StringVector* StringLibrary::strTok(const std::string* text, const char* separators, const char* singles,
                                    StringVector* gaps) const {
    const std::string delimiters = std::string(separators) + singles;
    const auto append = [](StringVector& strings, Position begin, Position end) {
        auto entry = std::make_unique<std::string>(begin, end);
        strings.push_back(entry.get());
        static_cast<void>(entry.release()); // the vector's now
    };

    auto tokens = std::make_unique<StringVector>();
    for (Position position = text->begin(); position != text->end();) {
        const Position begin = findNotTokeniser(position, text->end(), separators);
        if (gaps)
            append(*gaps, position, begin);
        if (begin == text->end())
            break;
        Position end = findTokeniser(begin, text->end(), delimiters.c_str());
        if (end == begin)
            ++end; // one of the singles
        append(*tokens, begin, end);
        position = end;
    }
    g_tokeniser = ""; // the delimiters go with this call
    return tokens.release();
}

StringVector* StringLibrary::replaceToken(StringVector* tokens, unsigned index, const char* text) const {
    if (index >= tokens->size())
        return tokens;
    // The strings move over, so that none is copied.
    auto result = std::make_unique<StringVector>();
    result->reserve(tokens->size());
    auto token = std::make_unique<std::string>(text);
    for (const std::string*& entry : *tokens)
        result->push_back(std::exchange(entry, nullptr));
    delete (*result)[index];
    (*result)[index] = token.release();
    delete tokens;
    return result.release();
}

void StringLibrary::deleteStr(StringVector* strings) const {
    delete strings;
}

void StringLibrary::deleteStr(const std::string* text) const {
    delete text;
}
