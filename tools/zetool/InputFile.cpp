#include "tools/zetool/InputFile.h"

#include "tools/zetool/Messages.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

InputFile::InputFile(std::string_view path) : m_path(path) {
    if (m_path == "-") {
        m_descriptor = STDIN_FILENO;
        return;
    }
    m_descriptor = open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
    if (m_descriptor < 0)
        throw ToolFailure(m_path, withSystemError("can't be opened"));
    struct stat status = {};
    if (fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode))
        m_size = static_cast<std::uint64_t>(status.st_size);
}

InputFile::InputFile(int descriptor, std::string_view name) : m_path(name), m_descriptor(descriptor) {}

InputFile::~InputFile() {
    if (m_descriptor > STDERR_FILENO)
        ::close(m_descriptor);
}

std::size_t InputFile::read(char* bytes, std::size_t size) {
    for (;;) {
        const ssize_t count = ::read(m_descriptor, bytes, size);
        if (count >= 0)
            return static_cast<std::size_t>(count);
        if (errno != EINTR)
            throw ToolFailure(m_path, withSystemError("can't be read"));
    }
}

std::uint64_t InputFile::skip(std::uint64_t count) {
    struct stat status = {};
    if (fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        const off_t at = lseek(m_descriptor, 0, SEEK_CUR);
        if (at >= 0) {
            const auto left = static_cast<std::uint64_t>(std::max<off_t>(status.st_size - at, 0));
            const std::uint64_t skipped = std::min(count, left);
            if (lseek(m_descriptor, static_cast<off_t>(skipped), SEEK_CUR) >= 0)
                return skipped;
        }
    }
    char piece[1 << 14];
    std::uint64_t skipped = 0;
    while (skipped < count) {
        const std::size_t size =
            read(piece, static_cast<std::size_t>(std::min<std::uint64_t>(sizeof piece, count - skipped)));
        if (size == 0)
            break;
        skipped += size;
    }
    return skipped;
}
