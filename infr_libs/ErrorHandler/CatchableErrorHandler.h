#pragma once

#include "infr_libs/ErrorHandler/ErrorHandler.h"

// An `ErrorHandler` whose fatal messages are thrown instead of ending the process: by value, as a plain
// `std::string` that holds the formatted text, its line end included. A message of more than 65,535 bytes is
// cut, line end and all: wanted. A thrown message isn't printed; with `setExitOnError(false)` nothing is
// thrown and the message goes to standard error.
class CatchableErrorHandler : public ErrorHandler {
public:
    void fatalError(bool exit, const char* format, ...) override __attribute__((format(printf, 3, 4)));
    void fatalVError(bool exit, const char* format, va_list arguments) override
        __attribute__((format(printf, 3, 0)));
};
