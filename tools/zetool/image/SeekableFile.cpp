#include "tools/zetool/image/SeekableFile.h"

#include "tools/zetool/InputFile.h"
#include "tools/zetool/Messages.h"

#include <cerrno>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

SeekableFile::SeekableFile(const std::string& file) : m_file(file), m_path(file) {
    struct stat status = {};
    if (file != "-" && stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        const InputFile canBeOpened(file);
        return;
    }
    InputFile input(file);
    m_descriptor = memfd_create("zetool", MFD_CLOEXEC);
    if (m_descriptor < 0)
        throw ToolFailure(file, withSystemError("no memory for a copy"));
    m_path = "/proc/self/fd/" + std::to_string(m_descriptor);
    char piece[1 << 16];
    while (const std::size_t size = input.read(piece, sizeof piece)) {
        for (std::size_t done = 0; done < size;) {
            const ssize_t written = write(m_descriptor, piece + done, size - done);
            if (written < 0 && errno != EINTR)
                throw ToolFailure(file, withSystemError("no memory for a copy"));
            done += static_cast<std::size_t>(written < 0 ? 0 : written);
        }
    }
}

SeekableFile::~SeekableFile() {
    if (m_descriptor >= 0)
        close(m_descriptor);
}

std::string SeekableFile::withName(std::string text) const {
    if (m_descriptor < 0)
        return text;
    const std::size_t at = text.find(m_path);
    return at == std::string::npos ? text : text.replace(at, m_path.size(), shownName(m_file));
}
