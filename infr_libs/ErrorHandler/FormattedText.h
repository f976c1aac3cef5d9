#pragma once

#include <cstdarg>
#include <string>

// A printf format and its arguments as a string, of any length. A format that can't be carried out is
// returned as it stands: it still tells more than nothing.
std::string formattedText(const char* format, va_list arguments) __attribute__((format(printf, 1, 0)));
