#pragma once

#include "infr_libs/XmlParser/XmlNode.h"

#include <cstdio>
#include <istream>
#include <memory>
#include <string>
#include <vector>

struct ZelmUtils;

// Reads a document into a tree of `XmlNode`, once, in its constructor; the tree goes with the parser. The
// language is a subset of XML with rules of its own, which docs/formats/xml.md tells: documents rely on them,
// so that what looks odd here is wanted. Names, values, lines and nesting have no limit but memory.
//
// Faults go to the error handler of the `ZelmUtils` record, in the form "file:line: error: text", or without
// the line where it would say nothing. With a handler that returns, the parser goes on with what it has, and
// stops where the input ends inside a construct. Input that ends in a comment within a text value raises
// `std::out_of_range`, whatever the handler.
class XmlParser {
public:
    // Reads the named file. `replaceEntities` says whether &gt; &lt; &amp; are replaced.
    XmlParser(const char* fileName, ZelmUtils* utils, bool replaceEntities);

    // Reads the stream, with entities replaced unless that is turned off. The stream stays with the caller,
    // and isn't used once the constructor has returned. `fileName` is the name for messages alone.
    XmlParser(const char* fileName, ZelmUtils* utils, std::istream* stream);
    XmlParser(const char* fileName, ZelmUtils* utils, std::istream* stream, bool replaceEntities);

    XmlParser(const XmlParser&) = delete;
    XmlParser& operator=(const XmlParser&) = delete;
    virtual ~XmlParser();

    // The root is owned by the parser. It is null where the file couldn't be opened, or held no element, and
    // the handler has returned.
    XmlNode* getRoot() const { return m_root.get(); }
    ZelmUtils* getZelmUtils() const { return m_utils; }

    // Writes the XML declaration and the tree.
    void print(FILE* file, bool indent) const;

    // For debugging: a line end, and two blanks a level, on standard output.
    void displayTabs() const;

private:
    struct OpenElement;

    void parse();
    void parseFile();
    void newTree();
    bool newNode(XmlNode* parent, OpenElement& element);
    bool readContents(OpenElement& element);

    bool getNextTag();
    bool getTagValue();
    char getNextChar();
    bool readLine();
    void search(std::string_view pattern);
    void searchAndKeep(std::string_view pattern, std::string& kept, bool includePattern);
    bool skipMarkup();

    const char* getNodeName(const char* s, std::string_view& name);
    const char* getAttName(const char* s, std::string_view& name);
    const char* getAttValue(const char* s, std::string_view& value);
    bool isValidAsciiChar(int c);
    static void replaceXMLEntities(std::string& text);

    void error(const std::string& fileName, unsigned lineNum, const std::string& message);
    void error(const std::string& fileName, const std::string& message);

    ZelmUtils* m_utils;                            // not owned
    std::shared_ptr<const std::string> m_fileName; // shared with every node
    std::unique_ptr<XmlNode> m_root;
    std::istream* m_stream = nullptr; // null before and after parsing
    std::string m_line;               // the current line, without its line end
    std::string::size_type m_pos = 0; // the place in the line; npos: nowhere, the input is over
    unsigned m_lineNum = 0;           // lines read so far: the current line, counted from 1
    int m_depth = -1;                 // of displayTabs alone; nothing advances it
    bool m_replaceEntities;
    std::string m_tag;                   // the tag at hand, from its < to its >
    std::string m_value;                 // the text value at hand
    XmlNode::Attributes m_tagAttributes; // those of the tag at hand
};
