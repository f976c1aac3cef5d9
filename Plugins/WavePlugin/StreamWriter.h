#pragma once

#include <cstddef>
#include <cstdio>

// Has the text reach the stream's file at once, behind everything that was written to the stream before,
// and by one write where the system takes it whole. Errors are left in the stream's error flag.
void writeThrough(FILE* fp, const char* text, std::size_t length);
