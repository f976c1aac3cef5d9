#pragma once

#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/ErrorHandler/FormattedText.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/StringLibrary/StringLibrary.h"

#include <string>
#include <vector>

// A handler that returns from every fatal report, and remembers the texts.
class CollectingErrorHandler : public ErrorHandler {
public:
    void fatalError(bool exit, const char* format, ...) override __attribute__((format(printf, 3, 4))) {
        static_cast<void>(exit);
        va_list arguments;
        va_start(arguments, format);
        m_messages.push_back(formattedText(format, arguments));
        va_end(arguments);
    }

    const std::vector<std::string>& messages() const { return m_messages; }

private:
    std::vector<std::string> m_messages;
};

// The record that the infrastructure's classes take, with all that it points to. It must outlive what is made
// with it.
template<typename Handler = CatchableErrorHandler>
struct OwnedUtils {
    Handler handler;
    StringLibrary strings{&handler};
    ZelmUtils utils{&handler, &strings};

    ZelmUtils* get() { return &utils; }
};
