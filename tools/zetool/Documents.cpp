#include "tools/zetool/Documents.h"

#include "tools/zetool/BrokenLimit.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/WholeFile.h"

#include <stdexcept>

namespace {

// The parser's failures without a text of its own. The second is the one limit that a document can breach.
constexpr const char* s_openComment = "the document ends inside a comment";
constexpr const char* s_openBackslash = "a tag ends behind a backslash";

// A message about a file in the form of the readers.
std::string lineOf(const std::string& file, const char* text) {
    return shownName(file) + ": " + text + "\n";
}

} // namespace

void printLines(const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        printMessage(line);
}

std::optional<ReadFailure> failureOf(const std::string& file, const std::function<void()>& read) {
    try {
        read();
        return std::nullopt;
    } catch (const std::string& error) {
        return ReadFailure{error, error};
    } catch (const std::out_of_range& error) {
        return ReadFailure{error.what(), lineOf(file, s_openComment)};
    } catch (const BrokenLimit&) {
        const std::string line = lineOf(file, s_openBackslash);
        return ReadFailure{line, line};
    }
}

NetworkReading::NetworkReading(const std::string& file) {
    if (file == "-")
        readStream(file, readWhole(file));
    else
        failure = failureOf(file, [&] { network = std::make_unique<ZNLoader>(file, &warnings); });
}

NetworkReading::NetworkReading(const std::string& file, const std::string& document) {
    readStream(file, document);
}

void NetworkReading::readStream(const std::string& file, const std::string& document) {
    std::istringstream stream(document);
    failure = failureOf(file, [&] { network = std::make_unique<ZNLoader>(file, &stream, &warnings); });
}

std::unique_ptr<ZNLoader> loadNetwork(const std::string& file, const std::string& document) {
    NetworkReading reading(file, document);
    printLines(reading.warnings);
    if (reading.failure)
        printLines(reading.failure->message);
    else
        reading.network->setWarningTarget(nullptr); // this one goes
    return std::move(reading.network);
}

Document::Document(const std::string& file, const std::string& text, bool replaceEntities)
    : m_stream(text), m_parser(file.c_str(), &m_utils, &m_stream, replaceEntities) {}

std::unique_ptr<Document> loadDocument(const std::string& file, const std::string& text,
                                       bool replaceEntities) {
    std::unique_ptr<Document> document;
    const auto failure =
        failureOf(file, [&] { document = std::make_unique<Document>(file, text, replaceEntities); });
    if (failure)
        printLines(failure->message);
    return document;
}
