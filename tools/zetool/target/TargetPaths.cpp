#include "tools/zetool/target/TargetPaths.h"

#include "infr_libs/ZCC/TargetAliases.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <set>
#include <string_view>

namespace {

// How the value of a variable is meant.
enum class Value { Path, Target, Folder };

struct VariableRow {
    const char* name;
    Value value;
    const char* kind; // of a file in its folders
    std::optional<ZCCPaths::PathType> type;
};

constexpr const char* s_target = "target";

constexpr VariableRow s_variables[] = {
    {"ZCC_TARGET_PATH", Value::Path, s_target, {}},
    {"ZCC_DEVICE_PATH", Value::Path, "device file", ZCCPaths::DEVICE_PATH},
    {"ZCC_LIBRARY_PATH", Value::Path, "library", ZCCPaths::LIBRARY_PATH},
    {"ZCC_INCLUDE_PATH", Value::Path, "include file", ZCCPaths::INCLUDE_PATH},
    {"ZCC_ZC_INCLUDE_PATH", Value::Path, "ZC include file", ZCCPaths::ZC_INCLUDE_PATH},
    {"ZCC_C_INCLUDE_PATH", Value::Path, "C include file", ZCCPaths::C_INCLUDE_PATH},
    {"ZCC_CPLUS_INCLUDE_PATH", Value::Path, "C++ include file", ZCCPaths::CPLUS_INCLUDE_PATH},
    {"ZCC_ASSEMBLER_INCLUDE_PATH", Value::Path, "assembler include file", ZCCPaths::ASSEMBLER_INCLUDE_PATH},
    {"ZCC_DEFAULT_TARGET", Value::Target, nullptr, {}},
    {"ZCC_EXEC_PREFIX", Value::Folder, nullptr, {}},
};

// The files of a device path that have names of their own.
struct DeviceFileRow {
    const char* kind;
    std::string_view start;
    std::string_view end;

    std::string fileOf(const std::string& name) const { return std::string(start) + name + std::string(end); }

    // The name that a file gives; nothing for other files.
    std::optional<std::string> nameOf(const std::string& file) const {
        if (file.size() <= start.size() + end.size() || !file.starts_with(start) || !file.ends_with(end))
            return std::nullopt;
        return file.substr(start.size(), file.size() - start.size() - end.size());
    }
};

constexpr DeviceFileRow s_deviceFiles[] = {{"node type", "config_", ".xml"}, {"package", "", ".pkg"}};

std::string stateOfFolder(const std::string& path) {
    if (path.empty())
        return "empty, which means /";
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return status.type() == std::filesystem::file_type::not_found ? "missing" : "can't be read";
    if (!std::filesystem::is_directory(status))
        return "no folder";
    const std::filesystem::directory_iterator entries(path, error);
    return error ? "can't be read" : "folder";
}

std::vector<std::string> sortedNames(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        names.push_back(entry->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// Why a name doesn't lead to a file, given where it does lead.
std::string noteOn(const std::string& file, const std::string& found) {
    if (found == file)
        return "";
    return found.empty() ? "can't be read" : "hidden by " + found;
}

} // namespace

TargetPaths::TargetPaths() {
    m_paths.parseDeviceAndTargetPath();
    m_paths.parseEnv();
    getPathsFromEnv("ZCC_TARGET_PATH", m_targetFolders);
}

std::vector<TargetPaths::Setting> TargetPaths::settings() const {
    std::vector<Setting> settings;
    for (const VariableRow& row : s_variables) {
        const char* text = std::getenv(row.name);
        if (!text) {
            settings.push_back({row.name, false, "", "not set"});
            continue;
        }
        switch (row.value) {
        case Value::Path: {
            std::vector<std::string> folders;
            getPathsFromEnv(row.name, folders);
            for (const std::string& folder : folders)
                settings.push_back({row.name, true, folder, stateOfFolder(folder)});
            break;
        }
        case Value::Target: {
            const std::string file = m_paths.findTarget(text, false);
            settings.push_back({row.name, true, text, file.empty() ? "no target" : file});
            break;
        }
        case Value::Folder:
            settings.push_back({row.name, true, text, stateOfFolder(text)});
            break;
        }
    }
    return settings;
}

std::vector<TargetPaths::NamedFile> TargetPaths::files() const {
    std::vector<NamedFile> files;
    addTargets(files);
    addDeviceFiles(files);
    return files;
}

// The library lists each folder in the system's order, which differs from one machine to the next.
void TargetPaths::addTargets(std::vector<NamedFile>& files) const {
    std::vector<ZCCPaths::TargetInfo> targets;
    m_paths.getTargets(targets);
    const std::set<ZCCPaths::TargetInfo> sorted(targets.begin(), targets.end());
    for (const std::string& folder : m_targetFolders) {
        for (const auto& [name, file] : sorted) {
            if (file == folder + "/" + name + "/" + name + ".zn")
                files.push_back({s_target, name, file, noteOn(file, m_paths.findTarget(name, false))});
        }
    }
}

void TargetPaths::addDeviceFiles(std::vector<NamedFile>& files) const {
    for (const std::string& folder : m_paths.getPaths(ZCCPaths::DEVICE_PATH)) {
        const std::vector<std::string> names = sortedNames(folder);
        for (const DeviceFileRow& row : s_deviceFiles) {
            for (const std::string& file : names) {
                const std::optional<std::string> name = row.nameOf(file);
                if (!name)
                    continue;
                const std::string path = folder + "/" + file;
                const std::string found = m_paths.findFileInPaths(file, ZCCPaths::DEVICE_PATH, false);
                files.push_back({row.kind, *name, path, noteOn(path, found)});
            }
        }
    }
}

std::vector<TargetPaths::NamedFile> TargetPaths::find(const std::string& name) const {
    std::vector<NamedFile> files;
    const auto add = [&](const char* kind, const std::string& file, const std::string& note) {
        if (!file.empty())
            files.push_back({kind, name, file, note});
    };
    const std::string target = m_paths.findTarget(name, false);
    const char* presentName = targetAliases.lookup(name);
    const bool isByPresentName = presentName && !target.ends_with("/" + name + ".zn");
    add(s_target, target, isByPresentName ? std::string("an old name of ") + presentName : "");
    for (const DeviceFileRow& row : s_deviceFiles)
        add(row.kind, m_paths.findFileInPaths(row.fileOf(name), ZCCPaths::DEVICE_PATH, false), "");
    for (const VariableRow& row : s_variables) {
        if (row.type)
            add(row.kind, m_paths.findFileInPaths(name, *row.type, false), "");
    }
    return files;
}
