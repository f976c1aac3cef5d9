#pragma once

#include "infr_libs/XmlParser/XmlNode.h"
#include "infr_libs/ZNLoader/ZNUtils.h"

// The file and line of an element of a document. A model that was built by hand has no elements: a null
// element prints an empty name and line 0.
class ElementLocation : public ZNUtils::FileLineLocation {
public:
    explicit ElementLocation(const XmlNode* element)
        : FileLineLocation(element ? element->getFileName() : "", element ? element->getLineNum() : 0) {}
};
