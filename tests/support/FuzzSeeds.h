#pragma once

#include <span>
#include <string>

// The main of a program that writes a fuzz target's seeds, a file each, into the folder named on its command
// line.
int writeSeeds(int argc, char** argv, std::span<const std::string> seeds);
