#include "tools/tracehost/PluginWatch.h"

#include <array>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unistd.h>

const char* volatile PluginWatch::s_call = nullptr;
unsigned int PluginWatch::s_instance = 0;
std::uint32_t PluginWatch::s_clock = 0;

namespace {

struct WatchedSignal {
    int number;
    std::string_view meaning;
    struct sigaction previous; // a sanitizer's, or the system's default
};

WatchedSignal s_signals[] = {
    {SIGABRT, "aborted", {}},
    {SIGSEGV, "invalid memory access", {}},
    {SIGBUS, "invalid memory access", {}},
    {SIGFPE, "arithmetic fault", {}},
    {SIGILL, "invalid instruction", {}},
};

// A line built without the heap and without streams: a signal may come in the midst of either.
class Line {
public:
    Line& operator<<(std::string_view text) {
        const std::size_t size = std::min(text.size(), m_text.size() - m_size);
        std::memcpy(m_text.data() + m_size, text.data(), size);
        m_size += size;
        return *this;
    }
    Line& operator<<(std::uint32_t number) {
        std::array<char, 16> digits;
        const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
        return *this << std::string_view(digits.data(), result.ptr);
    }
    void write() const {
        const ssize_t written = ::write(STDERR_FILENO, m_text.data(), m_size);
        static_cast<void>(written); // nothing is left to be done about it
    }

private:
    std::array<char, 512> m_text;
    std::size_t m_size = 0;
};

} // namespace

void PluginWatch::install() {
    // A stack of its own serves the handler also where the plugin has used up the process's.
    static std::array<char, 64 * 1024> s_stack;
    stack_t stack{};
    stack.ss_sp = s_stack.data();
    stack.ss_size = s_stack.size();
    sigaltstack(&stack, nullptr);

    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_ONSTACK | SA_NODEFER;
    for (WatchedSignal& watched : s_signals)
        sigaction(watched.number, &action, &watched.previous);
    on_exit(onExit, nullptr);
}

void PluginWatch::onExit(int status, void*) {
    if (!s_call)
        return;
    Line line;
    line << "tracehost: the plugin ended the process by exit(";
    if (status < 0)
        line << "-" << 0U - static_cast<std::uint32_t>(status);
    else
        line << static_cast<std::uint32_t>(status);
    line << ") in " << s_call << " of instance " << s_instance << " at clock " << s_clock << "\n";
    line.write();
    if (status == 1)
        return;
    std::fflush(nullptr);
    std::_Exit(1);
}

void PluginWatch::onSignal(int signal) {
    for (WatchedSignal& watched : s_signals) {
        if (watched.number != signal)
            continue;
        if (s_call) {
            Line line;
            line << "tracehost: the plugin ended the process by signal " << static_cast<std::uint32_t>(signal)
                 << " (" << watched.meaning << ") in " << s_call << " of instance " << s_instance
                 << " at clock " << s_clock << "\n";
            line.write();
            if (watched.previous.sa_handler == SIG_DFL)
                std::_Exit(1);
        }
        // A sanitizer has more to say; and a fault of the host itself ends as it would anywhere.
        sigaction(signal, &watched.previous, nullptr);
        raise(signal);
        return;
    }
}

void PluginWatch::fault(const std::string& what) {
    Line line;
    line << "tracehost: fault of the plugin in " << (s_call ? s_call : "no call") << " of instance "
         << s_instance << " at clock " << s_clock << ": " << what << "\n";
    s_call = nullptr;
    std::fflush(nullptr);
    line.write();
    std::exit(1);
}
