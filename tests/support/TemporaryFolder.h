#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// A fresh folder below the system's temporary folder, removed with all it holds when the object goes.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

    // The full path of a name in the folder; makes nothing.
    std::string file(std::string_view name) const;

    // Writes a file, its folders included, and returns its full path.
    std::string write(std::string_view name, std::string_view bytes) const;

    // The bytes of a file in the folder; empty when there is none.
    std::string read(std::string_view name) const;

private:
    std::filesystem::path m_path;
};

// The bytes of any file; empty when it can't be read.
std::string readFile(const std::filesystem::path& path);
