#pragma once

#include "infr_libs/ZCC/ZCCPaths.h"

#include <string>
#include <vector>

// What the environment says of where files are, and what is there. Everything is looked up through the
// library, as a network's reader does.
class TargetPaths {
public:
    // One value of a variable: a folder of a path, or the value as it stands.
    struct Setting {
        const char* variable;
        bool isSet;
        std::string value;
        std::string state; // what there is under the value
    };

    // A file of a kind that goes by a name.
    struct NamedFile {
        const char* kind;
        std::string name;
        std::string file;
        std::string note; // why the name doesn't lead there, or why another name does; else empty
    };

    TargetPaths();

    // In the order of the variables' table, and of the folders in each; a variable that isn't set has one
    // entry too.
    std::vector<Setting> settings() const;

    // Targets, node types and packages, in the order of the folders, sorted by name in each.
    std::vector<NamedFile> files() const;

    // The files that a name leads to, one for each kind that has it.
    std::vector<NamedFile> find(const std::string& name) const;

private:
    void addTargets(std::vector<NamedFile>& files) const;
    void addDeviceFiles(std::vector<NamedFile>& files) const;

    ZCCPaths m_paths;
    std::vector<std::string> m_targetFolders;
};
