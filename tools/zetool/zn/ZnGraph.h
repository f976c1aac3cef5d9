#pragma once

#include "tools/zetool/Invocation.h"

// zetool zn graph: nodes and links as a graph for Graphviz.
int znGraph(const Invocation& invocation);
