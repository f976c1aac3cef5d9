#pragma once

#include "tests/support/ImageBuilder.h"

#include <string>
#include <vector>

// A core of a sample image.
struct ImageCore {
    std::string name;      // its whole `Reference`; "stdcore[0]" is an element of an array, "main" is none
    unsigned int node = 0; // the routing identifier of its node
    unsigned int core = 0; // its number on that node
    std::string children = {};              // ports and services of the core, as they stand in the document
    std::vector<std::string> programs = {}; // its ELF files; one without symbols where none is given
};

// The parts of an image whose network has these cores, for tests that spoil one. The cores of a node stand
// together; the nodes are joined in a line, in order of appearance, and their place in the scan chain is that
// order. Needs the node types of a `DeviceFolder`.
std::string sampleNetwork(const std::vector<ImageCore>& cores);

// A system configuration of one node with one core, and its pin map: package "PKG", a pin for each bit of
// ZS1_PORT_1A and ZS1_PORT_4A, the 4-bit port's last bit excepted.
std::string sampleConfiguration();

// An ELF file with these function symbols.
std::string sampleProgram(const std::vector<std::string>& functions);

// The whole image.
std::string sampleImage(const std::vector<ImageCore>& cores);

// The same by a text: one core a line, as name, node number and core number. An image without a network for
// an empty list.
std::string imageOfCores(const std::string& list);
