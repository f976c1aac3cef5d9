#pragma once

#include "infr_libs/XmlParser/XmlAttribute.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct ZelmUtils;

// An element of a document: its name, its one text value, its attributes and its sub-nodes, with the place
// in the document that it came from. `XmlParser` makes trees of them; readers and mergers make more. A node
// owns everything below it, and a whole tree goes by deleting its root. A tree of any depth can be copied,
// printed and deleted: nothing here recurses.
//
// Faults are reported through the handler of the `ZelmUtils` record. With one that neither throws nor exits,
// a check goes on, and may report several.
class XmlNode {
public:
    XmlNode(const std::string* name, const char* fileName, unsigned lineNum, ZelmUtils* utils);
    XmlNode(const char* name, const char* fileName, unsigned lineNum, ZelmUtils* utils);

    // A copy of the whole tree. The record of helpers is shared.
    XmlNode(const XmlNode& other);
    XmlNode& operator=(const XmlNode&) = delete;
    virtual ~XmlNode();

    // Pointers stay valid as long as the node; the value's text until it is set anew.
    const std::string* getName() const { return &m_name; }
    const std::string* getValue() const { return &m_value; }
    void setValue(const std::string* value) { m_value = *value; }
    const char* getFileName() const { return m_fileName->c_str(); }
    unsigned getLineNum() const { return m_lineNum; }
    ZelmUtils* getZelmUtils() const { return m_utils; }

    // Attributes and sub-nodes stand in document order and stay owned by this node. An index beyond the end
    // fails an assertion; a name that isn't there gives null, one that is there twice its first holder.
    unsigned numAttributes() const { return static_cast<unsigned>(m_attributes.size()); }
    unsigned numNodes() const { return static_cast<unsigned>(m_nodes.size()); }
    XmlAttribute* getAttribute(unsigned attributeNum) const;
    XmlNode* getNode(unsigned nodeNum) const;
    XmlAttribute* findAttribute(const char* name) const;
    XmlNode* findNode(const char* name) const;

    // Append; this node then owns what is given. Names may repeat.
    void addAttribute(XmlAttribute* attribute);
    void addNode(XmlNode* node);

    void createOrReplaceAttribute(const char* name, const char* value);

    // Deletes `old` and owns `replacement` in its place. Where `old` isn't an attribute of this node, that is
    // reported, and `replacement` stays with the caller.
    void replaceAttribute(XmlAttribute* old, XmlAttribute* replacement);

    // These take a sub-node out of the list without deleting it: it belongs to the caller from then on.
    // `replaceNode` puts a copy of `replacement` in its place, `replaceNodeWithMany` copies of all sub-nodes
    // of `holder`. What isn't in the list is reported.
    void deleteNode(XmlNode* node);
    void replaceNode(XmlNode* old, XmlNode* replacement);
    void replaceNodeWithMany(XmlNode* old, XmlNode* holder);

    // Writes the tree as a document. Nothing is escaped: wanted. `indent` puts two blanks a level, beginning
    // at `depth`, ahead of each line.
    void print(FILE* file, int depth, bool indent) const;

    // Typed getters. They return whether the attribute is there, and leave the result alone where it isn't,
    // so that a caller sets its default first. A missing attribute is reported where it is `required`, a
    // second one of that name always; the first one counts.
    //
    // Integers are decimal, or hexadecimal behind 0x. What follows the number is ignored, and a text without
    // a number is 0. A number beyond 32 bits gives all bits set. The 64-bit getter reads 32 bits.
    bool getIntAttribute(const char* name, int& result, bool required) const;
    bool getUIntAttribute(const char* name, unsigned& result, bool required) const;
    bool getUInt64Attribute(const char* name, unsigned long long& result, bool required) const;

    // Deletes the string that `*result` points to, if any, and puts a new one there that the caller owns: it
    // must be null or owned from the start.
    bool getStringAttribute(const char* name, std::string** result, bool required) const;

    // true, TRUE, false or FALSE. Any other value is reported and leaves the result alone, but counts as
    // there.
    bool getBoolAttribute(const char* name, bool& result, bool required) const;

    // Returns whether a number was read. It reports nothing: `required` has no effect, and a second attribute
    // of that name isn't noticed. Both are wanted.
    bool getDoubleAttribute(const char* name, double& result, bool required) const;

    // Report each sub-node or attribute whose name isn't in the list, which ends in a null pointer.
    void checkSubNodes(const char* const* list) const;
    void checkAttributes(const char* const* list) const;
    static bool isInList(const char* const* list, const std::string* name);

    // Reports, in the form "file:line: error: text", at this node's place unless they say otherwise.
    void unrecognisedSubNodeError(const XmlNode* subNode) const; // at the sub-node's place
    void missingSubNodeError(const char* name) const;
    void duplicateSubNodeError(const XmlNode* subNode) const;
    void duplicateAttributeError(const XmlAttribute* attribute) const;
    void unrecognisedAttributeError(const XmlAttribute* attribute, const char* const* list) const;
    void missingDbEntryError(const char* kind, const std::string* entry) const;
    void invalidIntAttributeError(const char* name, int value) const;
    void missingAttributeError(const char* name) const;
    void invalidBoolAttributeError(const XmlAttribute* attribute) const;
    void error(const char* text) const;
    void error(const std::string& text) const;
    void error(const std::string& file, unsigned line, const char* text) const;

    // Reports a misuse of the tree, without a place.
    void internalError(const char* text) const;

private:
    friend class XmlParser;

    using FileName = std::shared_ptr<const std::string>;
    using Attributes = std::vector<std::unique_ptr<XmlAttribute>>;
    using Nodes = std::vector<std::unique_ptr<XmlNode>>;

    // For the nodes of one document, which share its name.
    XmlNode(std::string_view name, FileName fileName, unsigned lineNum, ZelmUtils* utils);

    void initialise(const char* fileName, unsigned lineNum, ZelmUtils* utils);
    void copyAttributes(const XmlNode& other);
    Nodes::iterator findPosition(const XmlNode* node);

    // Hands the first attribute of that name to `take`, and then reports each further one, or a missing one.
    template<typename Take>
    bool takeAttribute(const char* name, bool required, const Take& take) const;

    ZelmUtils* m_utils = nullptr; // not owned
    std::string m_name;
    std::string m_value; // empty if none
    unsigned m_lineNum = 0;
    FileName m_fileName; // never null
    Attributes m_attributes;
    Nodes m_nodes;
};

// A text attribute, which must be there, and its owner, also where the report of a second one throws.
class RequiredText {
public:
    RequiredText(const XmlNode& node, const char* name) { node.getStringAttribute(name, &m_slot.text, true); }

    // Null where it is missing and the report returned.
    const std::string* get() const { return m_slot.text; }

private:
    // A member of its own: its destructor runs also where the constructor above doesn't end.
    struct Slot {
        Slot() = default;
        Slot(const Slot&) = delete;
        Slot& operator=(const Slot&) = delete;
        ~Slot() { delete text; }

        std::string* text = nullptr;
    };

    Slot m_slot;
};
