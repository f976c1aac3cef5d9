#pragma once

#include "infr_libs/XmlParser/XmlNode.h"
#include "tools/zetool/OutputFile.h"

// Trees of any depth: nothing here recurses, and indentation ends at some depth so that the text grows with
// the tree alone.

// Elements, each on a line of its own. `escaped`: with the entities that readers of XML need, as for a tree
// whose entities were replaced.
void writeTreeText(OutputFile& output, const XmlNode& root, bool escaped);

// The tree as a value of JSON, an element a line: {name, value, line, attributes, children}.
void writeTreeJson(OutputFile& output, const XmlNode& root);
