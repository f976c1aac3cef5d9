#pragma once

// Sets of characters, and predicates for the set in use. What sets `g_tokeniser` isn't reentrant.
extern const char* const g_whiteSpace; // blank, carriage return, tab, newline
extern const char* const g_newLines;   // carriage return, newline
extern const char* g_tokeniser;        // the set in use; empty until an operation points it at one

bool IsTokeniser(char c);
bool NotIsTokeniser(char c);
