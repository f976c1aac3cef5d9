#pragma once

#include "tools/zetool/Messages.h"

#include <string>

// Thrown in place of a failed assertion of the libraries, so that no input ends the program by a signal.
// `refuseBrokenLimits` sees to that; who knows what a limit means to the user catches it and says that.
class BrokenLimit : public ToolFailure {
public:
    explicit BrokenLimit(const char* condition)
        : ToolFailure("the input breaks a limit of the reader: " + std::string(condition)),
          m_condition(condition) {}

    // As the source has it.
    const std::string& condition() const { return m_condition; }

private:
    std::string m_condition;
};

// From now on assertions throw.
void refuseBrokenLimits();
