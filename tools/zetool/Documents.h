#pragma once

#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

// How commands load documents: through the project's own readers, with the readers' own messages on
// standard error. `file` is the name that the messages tell. Limits of the readers that a document can breach
// are failures of that document here (see `g_assertionHook`), never the end of the program.

// Prints what a library throws: one message a line.
void printLines(const std::string& text);

// How a reader failed.
struct ReadFailure {
    std::string error;   // what it threw, byte for byte, where it threw a text
    std::string message; // lines for the user
};

// What a reader of the file throws; nothing where it reads to its end. `where` ends the messages about what
// the reader has no words for.
std::optional<ReadFailure> failureOf(const std::string& file, const std::function<void()>& read,
                                     const char* where = "");

// A network as the loader leaves it: the model or the failure, and the warnings either way. Node types and
// packages are looked up along ZCC_DEVICE_PATH.
struct NetworkReading {
    // Reads the file itself, with the loader's message for one that can't be opened; `-` is standard input.
    explicit NetworkReading(const std::string& file);

    NetworkReading(const std::string& file, const std::string& document);

    NetworkReading(const NetworkReading&) = delete;
    NetworkReading& operator=(const NetworkReading&) = delete;

    // The warnings one by one, without their line ends. One that quotes a name with line ends in it is one.
    std::vector<std::string> warningList() const;

    // Prints each warning as one message.
    void printWarnings() const;

    std::string warnings;              // as the loader appends them
    std::unique_ptr<ZNLoader> network; // null after a failure
    std::optional<ReadFailure> failure;

private:
    void readStream(const std::string& file, const std::string& document);

    std::string m_file;
};

// The network, or null after the message for one that the plugin couldn't load either. Warnings are printed
// too.
std::unique_ptr<ZNLoader> loadNetwork(const std::string& file, const std::string& document);

enum class Entities { Replaced, Raw };

// An XML document with all that its tree needs to live.
class Document {
public:
    // Both throw the parser's own message as a std::string; this one opens the file itself.
    Document(const std::string& file, Entities entities);
    Document(const std::string& file, const std::string& text, Entities entities = Entities::Replaced);

    XmlNode* root() const { return m_parser.getRoot(); }

private:
    CatchableErrorHandler m_handler;
    StringLibrary m_strings{&m_handler};
    ZelmUtils m_utils{&m_handler, &m_strings, nullptr};
    std::istringstream m_stream;
    XmlParser m_parser;
};

// The document, or null after its message.
std::unique_ptr<Document> loadDocument(const std::string& file, const std::string& text,
                                       Entities entities = Entities::Replaced);
