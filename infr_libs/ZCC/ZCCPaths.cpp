#include "infr_libs/ZCC/ZCCPaths.h"

#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ZCC/TargetAliases.h"

#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <memory>
#include <utility>

namespace {

std::string readVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool exists(const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "r");
    if (!file)
        return false;
    std::fclose(file);
    return true;
}

// A target has a folder of its own, which holds a description of the same name.
std::string targetFile(const std::string& path, const std::string& name) {
    return path + "/" + name + "/" + name + ".zn";
}

// The names in a folder, in the system's order; none where there is no folder.
std::vector<std::string> listFolder(const std::string& path) {
    std::vector<std::string> names;
    const auto close = [](DIR* folder) { closedir(folder); };
    const std::unique_ptr<DIR, decltype(close)> folder(opendir(path.c_str()), close);
    if (!folder)
        return names;
    while (const dirent* entry = readdir(folder.get()))
        names.emplace_back(entry->d_name);
    return names;
}

} // namespace

void getPathsFromEnv(const char* varname, std::vector<std::string>& paths) {
    ZELM_ASSERT(varname != __null);
    const char* value = std::getenv(varname);
    if (!value)
        return;
    const std::string text = value;
    std::string::size_type start = 0;
    // The search begins behind a path's first character, so a colon there doesn't end it: wanted.
    for (auto colon = text.find(':', 1); colon != std::string::npos; colon = text.find(':', start + 1)) {
        paths.push_back(text.substr(start, colon - start));
        start = colon + 1;
    }
    paths.push_back(text.substr(start));
}

std::string ZCCPaths::parseDefaultTarget() {
    return readVariable("ZCC_DEFAULT_TARGET");
}

std::string ZCCPaths::parseExecPath() {
    return readVariable("ZCC_EXEC_PREFIX");
}

void ZCCPaths::parseDeviceAndTargetPath() {
    getPathsFromEnv("ZCC_DEVICE_PATH", m_devicePaths);
    getPathsFromEnv("ZCC_TARGET_PATH", m_targetPaths);
}

void ZCCPaths::parseEnv() {
    getPathsFromEnv("ZCC_INCLUDE_PATH", m_includePaths);
    getPathsFromEnv("ZCC_ZC_INCLUDE_PATH", m_zcIncludePaths);
    getPathsFromEnv("ZCC_C_INCLUDE_PATH", m_cIncludePaths);
    getPathsFromEnv("ZCC_CPLUS_INCLUDE_PATH", m_cplusIncludePaths);
    getPathsFromEnv("ZCC_ASSEMBLER_INCLUDE_PATH", m_assemblerIncludePaths);
    getPathsFromEnv("ZCC_LIBRARY_PATH", m_libraryPaths);
}

const std::vector<std::string>& ZCCPaths::getPaths(PathType type) const {
    switch (type) {
    case LIBRARY_PATH:
        return m_libraryPaths;
    case DEVICE_PATH:
        return m_devicePaths;
    case INCLUDE_PATH:
        return m_includePaths;
    case ZC_INCLUDE_PATH:
        return m_zcIncludePaths;
    case C_INCLUDE_PATH:
        return m_cIncludePaths;
    case CPLUS_INCLUDE_PATH:
        return m_cplusIncludePaths;
    case ASSEMBLER_INCLUDE_PATH:
        return m_assemblerIncludePaths;
    }
    ZELM_ASSERT(0 && "Unknown file type");
    std::abort(); // not reached
}

std::vector<std::string>& ZCCPaths::getPaths(PathType type) {
    return const_cast<std::vector<std::string>&>(std::as_const(*this).getPaths(type));
}

void ZCCPaths::addPath(const std::string& path, PathType type) {
    getPaths(type).push_back(path);
}

void ZCCPaths::addMultilibDirectories(const std::vector<std::string>& subdirs) {
    std::vector<std::string> paths;
    paths.reserve(m_libraryPaths.size() * (subdirs.size() + 1));
    for (const std::string& path : m_libraryPaths) {
        for (auto subdir = subdirs.rbegin(); subdir != subdirs.rend(); ++subdir)
            paths.push_back(path + "/" + *subdir);
        paths.push_back(path);
    }
    m_libraryPaths = std::move(paths);
}

void ZCCPaths::addMultilibDirectories(const std::string& subdir) {
    addMultilibDirectories(std::vector<std::string>{subdir});
}

std::string ZCCPaths::findFileInPaths(const std::string& name, PathType type, bool mustExist) const {
    return findFileInPaths(name, getPaths(type), mustExist);
}

std::string ZCCPaths::findFileInPaths(const std::string& name, const std::vector<std::string>& paths,
                                      bool mustExist) const {
    for (const std::string& path : paths) {
        std::string candidate = path + "/" + name;
        if (exists(candidate))
            return candidate;
    }
    if (mustExist)
        throw "cannot find " + name;
    return "";
}

std::string ZCCPaths::findTargetAux(const std::string& name) const {
    for (const std::string& path : m_targetPaths) {
        std::string candidate = targetFile(path, name);
        if (exists(candidate))
            return candidate;
    }
    return "";
}

std::string ZCCPaths::findTarget(const std::string& name, bool mustExist) const {
    std::string found = findTargetAux(name);
    if (!found.empty())
        return found;
    if (const char* alias = targetAliases.lookup(name)) {
        found = findTargetAux(alias);
        if (!found.empty())
            return found;
    }
    if (mustExist)
        throw "cannot find target " + name;
    return "";
}

void ZCCPaths::getTargets(std::vector<TargetInfo>& targets) const {
    for (const std::string& path : m_targetPaths) {
        for (const std::string& name : listFolder(path)) {
            std::string candidate = targetFile(path, name);
            if (exists(candidate))
                targets.emplace_back(name, std::move(candidate));
        }
    }
}
