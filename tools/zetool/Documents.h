#pragma once

#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <memory>
#include <sstream>
#include <string>

// How commands load documents: through the project's own readers, with the readers' own messages on
// standard error. `file` is the name that the messages tell.

// Prints what a library throws or collects: one message a line.
void printLines(const std::string& text);

// The network, or null after the message for one that the plugin couldn't load either. Warnings are printed
// too. Node types and packages are looked up along ZCC_DEVICE_PATH.
std::unique_ptr<ZNLoader> loadNetwork(const std::string& file, const std::string& document);

// An XML document with all that its tree needs to live.
class Document {
public:
    // Throws the parser's own message as a std::string.
    Document(const std::string& file, const std::string& text);

    XmlNode* root() const { return m_parser.getRoot(); }

private:
    CatchableErrorHandler m_handler;
    StringLibrary m_strings{&m_handler};
    ZelmUtils m_utils{&m_handler, &m_strings, nullptr};
    std::istringstream m_stream;
    XmlParser m_parser;
};

// The document, or null after its message.
std::unique_ptr<Document> loadDocument(const std::string& file, const std::string& text);
