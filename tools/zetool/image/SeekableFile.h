#pragma once

#include <string>

// An input that several readers open, each for itself: the file, or a copy in memory of what can be read only
// once.
class SeekableFile {
public:
    // `-` is standard input. Throws a ToolFailure for a file that can't be read.
    explicit SeekableFile(const std::string& file);
    ~SeekableFile();

    SeekableFile(const SeekableFile&) = delete;
    SeekableFile& operator=(const SeekableFile&) = delete;

    // What readers open.
    const std::string& path() const { return m_path; }

    // A reader's message with the file's own name in the place of that path.
    std::string withName(std::string text) const;

private:
    std::string m_file;
    std::string m_path;
    int m_descriptor = -1; // of the copy
};
