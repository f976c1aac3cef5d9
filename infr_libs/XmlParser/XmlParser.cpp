#include "infr_libs/XmlParser/XmlParser.h"

#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

constexpr std::string_view xmlTagStart = "<";
constexpr std::string_view xmlTagEnd = ">";
constexpr std::string_view xmlCommentEnd = "-->";
constexpr std::string_view xmlQuestionEnd = "?>";

constexpr auto s_nowhere = std::string::npos;

// As in the "C" locale, whatever the host has chosen.
bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

const char* skipSpace(const char* s) {
    while (isSpace(*s))
        ++s;
    return s;
}

std::string_view between(const char* begin, const char* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

} // namespace

// An element whose end tag hasn't been met.
struct XmlParser::OpenElement {
    XmlNode* node;
    bool startTagClosed; // its start tag ends in >, and wasn't cut off by the end of the input
};

XmlParser::XmlParser(const char* fileName, ZelmUtils* utils, bool replaceEntities)
    : m_utils(utils), m_replaceEntities(replaceEntities) {
    ZELM_ASSERT(fileName != __null);
    m_fileName = std::make_shared<const std::string>(fileName);
    std::ifstream file(fileName);
    if (!file) {
        error(*m_fileName, "no such file or directory");
        return;
    }
    m_stream = &file;
    parse();
}

XmlParser::XmlParser(const char* fileName, ZelmUtils* utils, std::istream* stream, bool replaceEntities)
    : m_utils(utils), m_stream(stream), m_replaceEntities(replaceEntities) {
    ZELM_ASSERT(fileName != __null);
    m_fileName = std::make_shared<const std::string>(fileName);
    parse();
}

XmlParser::XmlParser(const char* fileName, ZelmUtils* utils, std::istream* stream)
    : m_utils(utils), m_stream(stream), m_replaceEntities(true) {
    ZELM_ASSERT(fileName != __null);
    m_fileName = std::make_shared<const std::string>(fileName);
    parse();
}

XmlParser::~XmlParser() = default;

void XmlParser::print(FILE* file, bool indent) const {
    std::fputs("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", file);
    if (m_root)
        m_root->print(file, 0, indent);
}

void XmlParser::displayTabs() const {
    std::fputc('\n', stdout);
    for (int i = 0; i < m_depth; ++i)
        std::fputs("  ", stdout);
}

void XmlParser::parse() {
    parseFile();
    // From here on the parser only holds the tree.
    m_stream = nullptr;
    m_line = std::string();
    m_tag = std::string();
    m_value = std::string();
    m_tagAttributes = XmlNode::Attributes();
}

void XmlParser::parseFile() {
    if (!getNextTag())
        return;
    if (m_tag[1] == '/')
        error(*m_fileName, m_lineNum, "end tag with no start tag");
    newTree();
}

// Makes the element of the tag at hand and everything below it. The stack stands for recursion, so that
// nesting is bounded by memory alone.
void XmlParser::newTree() {
    std::vector<OpenElement> open;
    OpenElement element;
    if (newNode(nullptr, element))
        open.push_back(element);
    while (!open.empty()) {
        if (readContents(open.back())) {
            if (newNode(open.back().node, element))
                open.push_back(element);
            continue;
        }
        if (!open.back().startTagClosed)
            error(*m_fileName, m_lineNum, "missing closing '>'");
        open.pop_back();
    }
}

// Makes the node of the tag at hand, with its attributes, below the parent, or as the root where that is
// null. Returns whether the element has contents to be read.
bool XmlParser::newNode(XmlNode* parent, OpenElement& element) {
    ZELM_ASSERT(m_tag[0] == '<');
    std::string_view name;
    const char* s = getNodeName(m_tag.c_str() + 1, name);
    auto node = std::unique_ptr<XmlNode>(new XmlNode(name, m_fileName, m_lineNum, m_utils));
    XmlNode& made = *node;
    if (parent)
        parent->m_nodes.push_back(std::move(node));
    else
        m_root = std::move(node);

    while (*s != '/' && *s != '>' && *s != '\0') {
        std::string_view value;
        s = getAttName(s, name);
        s = getAttValue(s, value);
        m_tagAttributes.push_back(std::make_unique<XmlAttribute>(name, value));
    }
    // Collected first, so that the node's own list is made once, at its size.
    made.m_attributes.assign(std::move_iterator(m_tagAttributes.begin()),
                             std::move_iterator(m_tagAttributes.end()));
    m_tagAttributes.clear();
    if (*s == '/') {
        if (s[1] != '>')
            error(*m_fileName, m_lineNum, "missing closing '>'");
        return false;
    }
    element = {&made, *s == '>'};
    return true;
}

// Reads up to the next tag, and keeps the text before it as the element's value: a second text replaces the
// first. Returns whether the tag at hand starts a sub-node; otherwise the element is at its end.
bool XmlParser::readContents(OpenElement& element) {
    const char next = getNextChar();
    if (m_pos == s_nowhere)
        return false; // an element that is never closed is accepted: wanted
    if (next != '<') {
        const bool complete = getTagValue();
        element.node->setValue(&m_value);
        if (!complete)
            return false;
    }
    // Text behind a comment that stands here is passed over and lost: wanted.
    if (!getNextTag())
        return false;
    if (m_tag[1] != '/')
        return true;

    // Without the last character, which is > but where the input has cut the tag off.
    const std::string_view name = m_tag.size() > 2 ? between(&m_tag[2], &m_tag.back()) : std::string_view();
    if (name != element.node->m_name)
        error(*m_fileName, m_lineNum, "unexpected closing tag '" + std::string(name) + "'");
    return false;
}

bool XmlParser::readLine() {
    if (!std::getline(*m_stream, m_line))
        return false;
    ++m_lineNum;
    return true;
}

// The next character that isn't white space, with `m_pos` on it; a blank at the end of the input.
char XmlParser::getNextChar() {
    for (;;) {
        while (m_pos >= m_line.size()) {
            if (!readLine()) {
                m_pos = s_nowhere;
                return ' ';
            }
            m_pos = 0;
        }
        if (!isSpace(m_line[m_pos]))
            return m_line[m_pos];
        ++m_pos;
    }
}

// Moves to the start of the pattern, which must stand whole on one line.
void XmlParser::search(std::string_view pattern) {
    m_pos = m_line.find(pattern, m_pos);
    while (m_pos == s_nowhere && readLine())
        m_pos = m_line.find(pattern);
}

// As `search`, but keeps what it passes, line ends included, and the pattern where that is asked for.
void XmlParser::searchAndKeep(std::string_view pattern, std::string& kept, bool includePattern) {
    // What taking a substring from nowhere raises; said here for the same text in every word size.
    if (m_pos == s_nowhere)
        throw std::out_of_range("basic_string::substr");
    for (std::size_t begin = m_pos;; begin = 0) {
        m_pos = m_line.find(pattern, begin);
        if (m_pos != s_nowhere) {
            if (includePattern)
                m_pos += pattern.size();
            kept.append(m_line, begin, m_pos - begin);
            return;
        }
        kept.append(m_line, begin);
        if (!readLine())
            return;
        kept += '\n';
    }
}

// On a <, moves to the end mark of a construct that is skipped, if it is one. `m_pos` stays on the start of
// that mark.
bool XmlParser::skipMarkup() {
    switch (m_line[m_pos + 1]) { // at worst the zero behind the line's end
    case '!':
        search(xmlCommentEnd); // also for what isn't a comment: wanted
        return true;
    case '?':
        search(xmlQuestionEnd);
        return true;
    default:
        return false;
    }
}

// Puts the next tag into `m_tag`, of which at least the < is there. False at the end of the input, which is
// then reported.
bool XmlParser::getNextTag() {
    do {
        search(xmlTagStart);
        if (m_pos == s_nowhere) {
            error(*m_fileName, "no '<' before the end of file");
            return false;
        }
    } while (skipMarkup());

    m_tag.clear();
    searchAndKeep(xmlTagEnd, m_tag, true);
    if (m_replaceEntities)
        replaceXMLEntities(m_tag);
    m_tag.resize(std::strlen(m_tag.c_str())); // a tag ends at a zero byte
    return true;
}

// Puts the text up to the next tag into `m_value`. What is skipped within it leaves its end mark there:
// wanted. False where the input ends first, which is then reported.
bool XmlParser::getTagValue() {
    m_value.clear();
    do {
        searchAndKeep(xmlTagStart, m_value, false);
        if (m_pos == s_nowhere) {
            error(*m_fileName, "no '<' before the end of file");
            return false;
        }
    } while (skipMarkup());
    if (m_replaceEntities)
        replaceXMLEntities(m_value);
    return true;
}

// Cuts the name out of the tag's text, and returns the place of the first attribute or of the tag's end.
const char* XmlParser::getNodeName(const char* s, std::string_view& name) {
    const char* begin = s;
    while (isValidAsciiChar(*s) && *s != '\0' && !isSpace(*s) && *s != '/' && *s != '>')
        ++s;
    name = between(begin, s);
    s = skipSpace(s);
    if (*s == '\0')
        error(*m_fileName, m_lineNum, "invalid node name '" + std::string(begin) + "'");
    return s;
}

bool XmlParser::isValidAsciiChar(int c) {
    if (static_cast<unsigned>(c) <= 127)
        return true;
    error(*m_fileName, "non ASCII character in file");
    return false;
}

// Cuts an attribute's name out, and returns the place behind its = sign.
const char* XmlParser::getAttName(const char* s, std::string_view& name) {
    const char* begin = s;
    while (*s != '\0' && !isSpace(*s) && *s != '=')
        ++s;
    name = between(begin, s);
    if (*s != '=')
        error(*m_fileName, m_lineNum, "no '=' after attribute name '" + std::string(name) + "'");
    return *s == '\0' ? s : s + 1;
}

// Cuts an attribute's value out, and returns the place behind it and the white space that follows it.
const char* XmlParser::getAttValue(const char* s, std::string_view& value) {
    const char quote = *s;
    if (quote != '\'' && quote != '"')
        error(*m_fileName, m_lineNum, "expected ' or \" at start of attribute value");
    if (quote != '\0')
        ++s;
    const char* begin = s;
    while (*s != '\0' && *s != quote) {
        if (*s == '\\') {
            // It protects the next character, and both stay in the value: wanted.
            ++s;
            ZELM_ASSERT(*s != '\0');
        }
        ++s;
    }
    value = between(begin, s);
    if (*s != quote)
        error(*m_fileName, m_lineNum, std::string("attribute value must be terminated with ") + quote);
    return skipSpace(*s == '\0' ? s : s + 1);
}

// In the order >, <, &, each in one pass. What a replaced & makes with the text behind it is replaced again:
// wanted, so &amp;amp; becomes a single & and &amp;lt; becomes &lt;.
void XmlParser::replaceXMLEntities(std::string& text) {
    struct Entity {
        std::string_view name; // behind its &
        char character;
    };
    static constexpr Entity entities[] = {{"gt;", '>'}, {"lt;", '<'}, {"amp;", '&'}};

    const std::size_t first = text.find('&');
    if (first == s_nowhere)
        return;
    for (const auto& [name, character] : entities) {
        const std::string_view from = text;
        std::size_t to = first;
        for (std::size_t i = first; i < from.size();) {
            const char c = from[i++];
            text[to] = c;
            if (c == '&')
                while (from.substr(i, name.size()) == name) {
                    text[to] = character;
                    i += name.size();
                    if (character != '&')
                        break;
                }
            ++to;
        }
        text.resize(to);
    }
}

void XmlParser::error(const std::string& fileName, unsigned lineNum, const std::string& message) {
    m_utils->errorHandler->fatalError(true, "%s:%d: error: %s\n", fileName.c_str(), static_cast<int>(lineNum),
                                      message.c_str());
}

void XmlParser::error(const std::string& fileName, const std::string& message) {
    m_utils->errorHandler->fatalError(true, "%s: error: %s\n", fileName.c_str(), message.c_str());
}
