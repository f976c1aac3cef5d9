#pragma once

#include <string>
#include <utility>
#include <vector>

// The search paths of the system's tools, one list for each kind of file, and the look-ups in them. A new
// object has empty lists; the `parse` operations append what the environment says, each time they are called.
//
// A file exists if it can be opened for reading: one that can't be counts as missing, and a folder counts as
// existing. What is missing gives an empty string, or, where it must exist, throws a `std::string` with the
// text that the operation names.
class ZCCPaths {
public:
    // 2 is reserved; the target paths have no number, and are reached through the target operations alone.
    enum PathType : int {
        LIBRARY_PATH = 0,
        DEVICE_PATH = 1,
        INCLUDE_PATH = 3,
        ZC_INCLUDE_PATH = 4,
        C_INCLUDE_PATH = 5,
        CPLUS_INCLUDE_PATH = 6,
        ASSEMBLER_INCLUDE_PATH = 7,
    };

    // A target's name and the full path of its network description.
    using TargetInfo = std::pair<std::string, std::string>;

    // ZCC_DEFAULT_TARGET and ZCC_EXEC_PREFIX; empty if unset.
    static std::string parseDefaultTarget();
    static std::string parseExecPath();

    // Appends ZCC_DEVICE_PATH and ZCC_TARGET_PATH.
    void parseDeviceAndTargetPath();

    // Appends the include and library paths of the environment.
    void parseEnv();

    // A type without a list is a programming fault (assertion), here and wherever one is given.
    const std::vector<std::string>& getPaths(PathType type) const;
    std::vector<std::string>& getPaths(PathType type);
    void addPath(const std::string& path, PathType type);

    // Puts the sub-directories of each library path, the last one first, in front of the path itself.
    void addMultilibDirectories(const std::vector<std::string>& subdirs);
    void addMultilibDirectories(const std::string& subdir);

    // The first path, in list order, joined with the name, that exists; else "cannot find " and the name.
    std::string findFileInPaths(const std::string& name, PathType type, bool mustExist) const;
    std::string findFileInPaths(const std::string& name, const std::vector<std::string>& paths,
                                bool mustExist) const;

    // The network description of a target, by its name or an old name of it (the name as it stands goes
    // first); else "cannot find target " and the name as asked.
    std::string findTarget(const std::string& name, bool mustExist) const;

    // Appends every target in the target paths, in the order in which the system lists each folder. A target
    // in two paths is listed twice.
    void getTargets(std::vector<TargetInfo>& targets) const;

private:
    std::string findTargetAux(const std::string& name) const;

    std::vector<std::string> m_libraryPaths;          // ZCC_LIBRARY_PATH
    std::vector<std::string> m_devicePaths;           // ZCC_DEVICE_PATH
    std::vector<std::string> m_targetPaths;           // ZCC_TARGET_PATH
    std::vector<std::string> m_includePaths;          // ZCC_INCLUDE_PATH
    std::vector<std::string> m_zcIncludePaths;        // ZCC_ZC_INCLUDE_PATH
    std::vector<std::string> m_cIncludePaths;         // ZCC_C_INCLUDE_PATH
    std::vector<std::string> m_cplusIncludePaths;     // ZCC_CPLUS_INCLUDE_PATH
    std::vector<std::string> m_assemblerIncludePaths; // ZCC_ASSEMBLER_INCLUDE_PATH
};

// Appends the paths in an environment variable, which are split at colons; an unset one leaves the list
// alone. A colon at the start of a path belongs to it: ":a:b" gives ":a" and "b". A closing colon gives an
// empty last path, and an empty variable one empty path.
void getPathsFromEnv(const char* varname, std::vector<std::string>& paths);
