#include "tools/zetool/Documents.h"

#include "tools/zetool/Messages.h"

#include <stdexcept>

namespace {

// The parser's one failure without a text of its own.
constexpr const char* s_openComment = "the document ends inside a comment";

} // namespace

void printLines(const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        printMessage(line);
}

std::unique_ptr<ZNLoader> loadNetwork(const std::string& file, const std::string& document) {
    std::istringstream stream(document);
    std::string warnings;
    std::unique_ptr<ZNLoader> network;
    try {
        network = std::make_unique<ZNLoader>(file, &stream, &warnings);
    } catch (const std::string& error) {
        printLines(warnings + error);
        return nullptr;
    } catch (const std::out_of_range&) {
        printLines(warnings);
        printMessage(file, s_openComment);
        return nullptr;
    }
    printLines(warnings);
    return network;
}

Document::Document(const std::string& file, const std::string& text)
    : m_stream(text), m_parser(file.c_str(), &m_utils, &m_stream) {}

std::unique_ptr<Document> loadDocument(const std::string& file, const std::string& text) {
    try {
        return std::make_unique<Document>(file, text);
    } catch (const std::string& error) {
        printLines(error);
    } catch (const std::out_of_range&) {
        printMessage(file, s_openComment);
    }
    return nullptr;
}
