#pragma once

#include <cstdarg>
#include <cstddef>
#include <set>
#include <string>

// Builds the numbered messages of the network's readers, checks and planners, and compares and converts
// their texts. `ZNLoader` and `NodeConfig` each own one; a `TickTock` reports through its creator's.
//
// Errors accumulate: each is appended to the text of those before it, and what is thrown is a copy of all of
// it, a plain `std::string`. Some errors are built without a throw; they show when a later one throws.
class ZNUtils {
public:
    using ErrorCode = int; // 11000 to 11177

    // What a message is about: the text ahead of "Error: ".
    class Location {
    public:
        virtual ~Location();

        // Writes the text and a terminating zero, at most `bound()` characters, and returns the number of
        // characters written without that zero.
        virtual int print(char* buffer) const = 0;

        // The room that `print` needs.
        std::size_t bound() const { return m_bound; }

    protected:
        // A location made elsewhere gets a room that fits any text of its kind.
        explicit Location(std::size_t bound = 65536) : m_bound(bound) {}

    private:
        std::size_t m_bound;
    };

    // No text at all.
    class NoLocation : public Location {
    public:
        NoLocation();
        int print(char* buffer) const override;
    };

    // "%s: "
    class FileNameLocation : public Location {
    public:
        explicit FileNameLocation(const std::string& fileName);
        int print(char* buffer) const override;

    private:
        std::string m_fileName;
    };

    // "%s:%d ", with no colon behind the line number: that is wanted.
    class FileLineLocation : public Location {
    public:
        FileLineLocation(const std::string& fileName, unsigned lineNum);
        int print(char* buffer) const override;

    private:
        std::string m_fileName;
        unsigned m_lineNum;
    };

    // "ZNHandler: ", for messages that no place in a document causes.
    class AppLocation : public Location {
    public:
        AppLocation();
        int print(char* buffer) const override;
    };

    // Appends the location, "Error: ", "ZN" with the code, and the text to the error text; code 11000 has
    // neither "Error: " nor a number. Does nothing for an ignored code.
    void buildErrorMessage(ErrorCode code, const Location& where, const char* format, ...)
        __attribute__((format(printf, 4, 5)));

    // The same with "Warning: ", appended to `target`. Does nothing for an ignored code or a null target.
    void buildWarningMessage(std::string* target, ErrorCode code, const Location& where, const char* format,
                             ...) __attribute__((format(printf, 5, 6)));

    // `buildErrorMessage`, then `throwErrors`: an ignored code throws what was there before.
    [[noreturn]] void throwError(ErrorCode code, const Location& where, const char* format, ...)
        __attribute__((format(printf, 4, 5)));

    // Throws a copy of the error text, a `std::string`.
    [[noreturn]] void throwErrors() const;

    // From now on messages with this code are left out.
    void ignore(ErrorCode code) { m_ignored.insert(code); }

    // All errors built so far.
    const std::string& getErrorText() const { return m_errorText; }

    // Compares without regard to case: 0 when equal, -1 when the first text ends first or its character is
    // the smaller, otherwise 1.
    static int Stricmp(const char* first, const char* second);

    // The number at the start of a text: hexadecimal behind "0x", octal behind "0", otherwise decimal. One
    // that doesn't fit gives the nearest int, a text without one 0.
    static int IntOf(const std::string& text);

    // The same, always decimal.
    static int DecimalOf(const std::string& text);

private:
    std::string m_errorText;
    std::set<ErrorCode> m_ignored;
};
