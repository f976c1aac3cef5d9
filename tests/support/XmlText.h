#pragma once

#include <cstddef>
#include <string>

// Documents for tests, fuzz seeds and benchmarks, as text.

// A document of the kind that configurations are: short elements with a few attributes, some text, some
// comments, two blanks a level. It has at least that many bytes, and little more.
std::string configurationText(std::size_t numBytes);

// The text, that many times over.
std::string repeated(const std::string& text, std::size_t count);

// An element in an element, and so on: that many levels, closed.
std::string nestedText(std::size_t numLevels);

// The text without the one thing in a document that ends the process, for fuzz targets: a backslash at the
// very end of a tag's text is a stated limit. It can stand there only at the end of the input, with or
// without a line end behind it, or ahead of a zero byte.
std::string withoutStatedEnd(std::string text);
