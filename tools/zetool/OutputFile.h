#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

// Where a command's result goes: a file, or standard output for `-`. A file comes into being whole: the bytes
// go to a temporary name beside it, and `close` gives it its own. What was there before stays until then, and
// stays for good when the command fails. Every failure throws a ToolFailure that names the file.
class OutputFile {
public:
    // Refuses a file that exists, unless `force`.
    OutputFile(std::string_view path, bool force);

    // Without a `close` before it, leaves nothing behind.
    ~OutputFile();

    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::string_view bytes);

    // Room for `size` bytes, at most s_largestReserve, to be filled in place and then counted in by `commit`.
    char* reserve(std::size_t size) {
        if (s_bufferSize - m_used < size)
            flush();
        return m_buffer.get() + m_used;
    }
    void commit(std::size_t size) { m_used += size; }

    // Writes what is left and gives the file its name.
    void close();

    static constexpr std::size_t s_largestReserve = 1 << 16;

private:
    static constexpr std::size_t s_bufferSize = 1 << 18;

    void flush();
    void writeAll(const char* bytes, std::size_t size);
    [[noreturn]] void fail(std::string_view text) const;

    std::string m_path;
    std::string m_temporary; // empty where the bytes go to their place at once
    bool m_force;
    int m_descriptor = -1;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_used = 0;
};
