#include "tools/tracehost/Plugin.h"

#include "tools/tracehost/PluginWatch.h"

#include <dlfcn.h>

Plugin::Plugin(const std::string& fileName) : m_fileName(fileName) {
    // Without a slash the loader would look in the system's folders alone.
    const bool hasFolder = fileName.find('/') != std::string::npos;
    m_library = dlopen((hasFolder ? fileName : "./" + fileName).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_library)
        throw PluginError("can't load the plugin: " + std::string(dlerror()));
    try {
        find(m_initialise, "PluginInitialise");
        find(m_clock, "PluginClock");
        find(m_notify, "PluginNotify");
        find(m_terminate, "PluginTerminate");
        find(m_help, "PluginHelp");
    } catch (const PluginError&) {
        dlclose(m_library);
        throw;
    }
}

Plugin::~Plugin() {
    dlclose(m_library);
}

template<class Function>
void Plugin::find(Function*& function, const char* name) const {
    function = reinterpret_cast<Function*>(dlsym(m_library, name));
    if (!function)
        throw PluginError("not a trace plugin: " + m_fileName + " has no " + name);
}

const char* Plugin::help() const {
    const PluginWatch::Call call("PluginHelp", 0);
    return m_help();
}

void Plugin::initialise(TracePluginCallbacks* callbacks, const std::string& arguments) {
    const PluginWatch::Call call("PluginInitialise", numInstances());
    m_instances.push_back(m_initialise(callbacks, arguments.c_str()));
}

void Plugin::clock(unsigned int instance) const {
    const PluginWatch::Call call("PluginClock", instance);
    m_clock(m_instances[instance]);
}

void Plugin::notify(unsigned int instance, unsigned int notification) const {
    const PluginWatch::Call call("PluginNotify", instance);
    m_notify(m_instances[instance], notification);
}

void Plugin::terminate(unsigned int instance) const {
    const PluginWatch::Call call("PluginTerminate", instance);
    m_terminate(m_instances[instance]);
}
