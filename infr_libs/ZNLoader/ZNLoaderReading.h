#pragma once

#include "infr_libs/XmlParser/XmlNode.h"
#include "infr_libs/ZNLoader/ElementLocation.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <algorithm>
#include <concepts>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// What the readers of the network document share: comparing names, warning of what isn't known, and taking an
// element's attributes into a record by a table. For the sources of ZNLoader alone.

inline bool isText(const std::string& text, const char* literal) {
    return ZNUtils::Stricmp(text.c_str(), literal) == 0;
}

inline bool isNamed(const XmlNode* element, const char* literal) {
    return isText(*element->getName(), literal);
}

// A warning with one name in it.
struct UnknownName {
    ZNUtils::ErrorCode code;
    const char* format; // with one %s
};

inline void warnOf(ZNLoader& loader, const UnknownName& message, const XmlNode* where,
                   const std::string& name) {
    loader.m_utils.buildWarningMessage(loader.warningTarget(), message.code, ElementLocation(where),
                                       message.format, name.c_str());
}

// Calls `body` with each sub-node in document order.
template<class Body>
void forEachSubNode(const XmlNode* element, const Body& body) {
    for (unsigned i = 0; i < element->numNodes(); ++i)
        body(element->getNode(i));
}

// Warns of each attribute, for elements that have none.
inline void warnOfAttributes(ZNLoader& loader, const UnknownName& message, const XmlNode* element) {
    for (unsigned i = 0; i < element->numAttributes(); ++i)
        warnOf(loader, message, element, *element->getAttribute(i)->getName());
}

// Calls `body` with each piece between commas.
template<class Body>
void forEachArgument(ZNLoader& loader, const std::string& text, const Body& body) {
    const std::unique_ptr<std::vector<std::string>> pieces(loader.getCommaSeparatedArgs(text));
    for (const std::string& piece : *pieces)
        body(piece);
}

// Puts an object into an owning list; returns it.
template<class Object, class Listed>
Object* adopt(std::vector<Listed*>& list, std::unique_ptr<Object> object) {
    list.push_back(object.get());
    return object.release();
}

// The text ahead of the first "[" and, if there is a "]" too, the text between them: empty where they stand
// the wrong way round.
struct IndexedName {
    explicit IndexedName(const std::string& text);

    bool isIndexed() const { return m_hasOpening && m_hasClosing; }

    bool m_hasOpening;
    bool m_hasClosing;
    std::string m_base; // the whole text where it isn't indexed
    std::string m_index;
};

// Splits a `Reference` into the fields that `Core` and `ZsscNode` have for it.
template<class Target>
void splitReference(const std::string& reference, Target& target) {
    IndexedName name(reference);
    target.m_refBase = std::move(name.m_base);
    target.m_refIndexed = name.isIndexed();
    target.m_refIndexText = std::move(name.m_index);
    target.m_refIndex = target.m_refIndexed ? ZNUtils::IntOf(target.m_refIndexText) : 0;
}

// A core number in decimal, hexadecimal or octal; throws 11052 if anything is left over.
int readCoreNumber(ZNLoader& loader, const std::string& text, const XmlNode* element);

// ---- Attribute tables ----

// What the rows of a table work on: an element, the object that its attributes go into, and the marks of the
// rows that were met.
template<class Target>
struct AttributeReading {
    ZNLoader& m_loader;
    XmlNode* m_element;
    Target& m_target;
    unsigned m_given = 0;
};

// An attribute: its name in lower case, what takes its value (true for failure), and its mark in `m_given`.
template<class Reading>
struct AttributeRow {
    const char* name;
    bool (*read)(Reading& reading, const std::string& value);
    unsigned given = 0;
};

// Takes all attributes in document order, so that of two with one name the later counts; hands those without
// a row to `onUnknown`. True as soon as a row fails.
template<class Reading, class Rows, std::invocable<const std::string&> OnUnknown>
bool readAttributes(Reading& reading, const Rows& rows, const OnUnknown& onUnknown) {
    for (unsigned i = 0; i < reading.m_element->numAttributes(); ++i) {
        const XmlAttribute* attribute = reading.m_element->getAttribute(i);
        const auto row = std::ranges::find_if(rows, [&](const AttributeRow<Reading>& candidate) {
            return isText(*attribute->getName(), candidate.name);
        });
        if (row == std::ranges::end(rows)) {
            onUnknown(*attribute->getName());
            continue;
        }
        reading.m_given |= row->given;
        if (row->read(reading, *attribute->getValue()))
            return true;
    }
    return false;
}

// The same, with a warning for what has no row.
template<class Reading, class Rows>
bool readAttributes(Reading& reading, const Rows& rows, const UnknownName& unknown) {
    return readAttributes(reading, rows, [&](const std::string& name) {
        warnOf(reading.m_loader, unknown, reading.m_element, name);
    });
}

// The same for rows that can't fail.
template<class Target, class Rows>
void readAttributes(ZNLoader& loader, XmlNode* element, Target& target, const Rows& rows,
                    const UnknownName& unknown) {
    AttributeReading<Target> reading{loader, element, target};
    readAttributes(reading, rows, unknown);
}

// Readers for rows: the value as it stands, as an int, or as a frequency in Hz.
template<auto Field, class Reading>
bool storeText(Reading& reading, const std::string& value) {
    reading.m_target.*Field = value;
    return false;
}

template<auto Field, class Reading>
bool storeInt(Reading& reading, const std::string& value) {
    reading.m_target.*Field = ZNUtils::IntOf(value);
    return false;
}

template<auto Field, class Reading>
bool storeFrequency(Reading& reading, const std::string& value) {
    reading.m_target.*Field = reading.m_loader.freqInHertz(value, reading.m_element);
    return false;
}
