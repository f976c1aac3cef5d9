#include "infr_libs/StringLibrary/Tokeniser.h"

#include <cstring>

const char* const g_whiteSpace = " \r\t\n";
const char* const g_newLines = "\r\n";
const char* g_tokeniser = "";

bool IsTokeniser(char c) {
    // strchr would also find the zero byte that ends the set.
    return c != '\0' && std::strchr(g_tokeniser, c) != nullptr;
}

bool NotIsTokeniser(char c) {
    return !IsTokeniser(c);
}
