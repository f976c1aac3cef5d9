#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

TemporaryFolder::TemporaryFolder() {
    std::string pattern = std::filesystem::temp_directory_path() / "zelm-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("can't make a folder like " + pattern);
    m_path = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::file(std::string_view name) const {
    return m_path / name;
}

std::string TemporaryFolder::write(std::string_view name, std::string_view bytes) const {
    const std::filesystem::path path = m_path / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path;
}

std::string TemporaryFolder::read(std::string_view name) const {
    return readFile(m_path / name);
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return std::move(bytes).str();
}
