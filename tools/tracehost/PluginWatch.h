#pragma once

#include <cstdint>
#include <string>

// Knows what the host is asking of the plugin at the moment, so that a plugin that ends the process (by
// exit, by an assertion, by a fault of memory) leaves a word on where it did. The host's user sees that word
// on standard error, behind the plugin's own, and exit status 1 whatever the plugin's was.
class PluginWatch {
public:
    // Begins the watch over the whole process; for main, once.
    static void install();

    // Marks a call into the plugin from here to the end of the block. The name is a literal.
    class Call {
    public:
        Call(const char* name, unsigned int instance) {
            s_instance = instance;
            s_call = name;
        }
        ~Call() { s_call = nullptr; }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
    };

    // The clock at which calls are made from now on.
    static void setClock(std::uint32_t clock) { s_clock = clock; }

    // For the callbacks: the plugin broke the rules of the record. Ends the process with status 1.
    [[noreturn]] static void fault(const std::string& what);

private:
    static void onExit(int status, void* unused);
    static void onSignal(int signal);

    static const char* volatile s_call; // null while the host is at work itself
    static unsigned int s_instance;     // counts from 0, in the order of their start
    static std::uint32_t s_clock;
};
