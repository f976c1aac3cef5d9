#pragma once

#include "Plugins/WavePlugin/TracePluginCallbacks.h"

#include <stdexcept>
#include <string>
#include <vector>

class PluginError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A trace plugin, loaded from a shared library by its five exported names, and the instances made of it.
// Instances are numbered from 0 in the order of their start, whatever numbers the plugin gives them.
class Plugin {
public:
    // Loads the library. Throws `PluginError` when that fails or one of the names is missing.
    explicit Plugin(const std::string& fileName);

    // Unloads the library; instances must be terminated before.
    ~Plugin();

    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    // The plugin's usage text; it belongs to the plugin.
    const char* help() const;

    unsigned int numInstances() const { return static_cast<unsigned int>(m_instances.size()); }

    // Starts one more instance.
    void initialise(TracePluginCallbacks* callbacks, const std::string& arguments);

    void clock(unsigned int instance) const;
    void notify(unsigned int instance, unsigned int notification) const;
    void terminate(unsigned int instance) const;

private:
    template<class Function>
    void find(Function*& function, const char* name) const;

    std::string m_fileName;
    void* m_library = nullptr;
    unsigned int (*m_initialise)(TracePluginCallbacks*, const char*) = nullptr;
    void (*m_clock)(unsigned int) = nullptr;
    void (*m_notify)(unsigned int, unsigned int) = nullptr;
    void (*m_terminate)(unsigned int) = nullptr;
    const char* (*m_help)() = nullptr;
    std::vector<unsigned int> m_instances; // the plugin's own numbers
};
