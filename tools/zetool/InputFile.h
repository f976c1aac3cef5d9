#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// A file, or standard input for `-`, read once from front to end. Every failure throws a ToolFailure that
// names the file.
class InputFile {
public:
    explicit InputFile(std::string_view path);

    // A file that is open already, from where it stands on; closed with the object. Messages tell the name.
    InputFile(int descriptor, std::string_view name);

    ~InputFile();

    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // Reads up to `size` bytes; gives how many, 0 at the end alone.
    std::size_t read(char* bytes, std::size_t size);

    // Passes over up to `count` bytes; gives how many there were. A regular file isn't read for that.
    std::uint64_t skip(std::uint64_t count);

    const std::string& path() const { return m_path; }

    // The file's size in bytes, or 0 where that can't be known.
    std::uint64_t size() const { return m_size; }

private:
    std::string m_path;
    int m_descriptor = -1;
    std::uint64_t m_size = 0;
};
