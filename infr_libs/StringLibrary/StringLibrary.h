#pragma once

#include "infr_libs/StringLibrary/Bytes.h"
#include "infr_libs/StringLibrary/Hexadecimal.h"
#include "infr_libs/StringLibrary/StringVector.h"
#include "infr_libs/StringLibrary/Tokeniser.h"

#include <string>

class ErrorHandler;

// Text helpers of the infrastructure: numbers, comments, tokens. It holds nothing but the handler that it
// reports through, which must outlive it. Strings and vectors that are returned by pointer are new and
// belong to the caller, who deletes them or hands them to `deleteStr`. Pointers aren't checked.
class StringLibrary {
public:
    using Position = std::string::const_iterator;

    explicit StringLibrary(ErrorHandler* errorHandler) : m_errorHandler(errorHandler) {}
    virtual ~StringLibrary() = default;

    // Reads a decimal number, or a hexadecimal one behind 0x or 0X, with an optional minus sign ahead; there
    // is no octal. `*base` becomes 16 or 10, or 0 when text is left over. A number beyond 32 bits gives
    // 0xffffffff before the sign is looked at, in every word size. Returns where the number ends.
    const char* strToInt(const char* text, int* value, int* base) const;

    // Stores the number, as `strToInt` reads it but for the sign, as one word in the host's order. Any
    // `numBytes` other than 4 is a fatal report.
    void strToBytes(const std::string* text, unsigned numBytes, unsigned char* bytes) const;

    bool isInList(const StringVector& list, const std::string* text) const;

    const std::string* removeTrailingWhiteSpace(const std::string* text) const;
    const std::string* removeLeadingWhiteSpace(const std::string* text) const;

    // The text before the first line end: what follows it is dropped, not joined.
    const std::string* removeNewLineChars(const std::string* text) const;

    // The first "//", "/*" or "*/" in the range, or its end.
    Position findLineComment(Position begin, Position end) const;
    Position findBlockCommentBegin(Position begin, Position end) const;
    Position findBlockCommentEnd(Position begin, Position end) const;

    // The line without its comments; quotes have no meaning. `inBlockComment` says whether the line begins
    // inside a block comment, and is updated for the next line.
    const std::string* removeComments(const std::string* line, bool& inBlockComment) const;

    // Deletes the pattern wherever it stands from the offset of its own length on, also where a deletion
    // has made it; `replacement` isn't used. An empty pattern changes nothing.
    const std::string* replace(const std::string* text, const std::string* pattern,
                               const std::string* replacement) const;

    // Splits at runs of `separators`; each character of `singles` is a token of its own. `gaps`, where it
    // isn't null, gets the run of separators ahead of each token, and one that ends the text.
    StringVector* strTok(const std::string* text, const char* separators, const char* singles,
                         StringVector* gaps) const;

    // Deletes the vector and returns one with the text in place of the token. An index beyond the end
    // changes nothing: the given vector is returned.
    StringVector* replaceToken(StringVector* tokens, unsigned index, const char* text) const;

    void deleteStr(StringVector* strings) const;
    void deleteStr(const std::string* text) const;

private:
    ErrorHandler* m_errorHandler; // not owned
};
