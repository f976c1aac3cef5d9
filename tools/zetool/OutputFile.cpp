#include "tools/zetool/OutputFile.h"

#include "tools/zetool/Messages.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

OutputFile::OutputFile(std::string_view path, bool force)
    : m_path(path), m_force(force), m_buffer(std::make_unique_for_overwrite<char[]>(s_bufferSize)) {
    if (m_path == "-") {
        m_descriptor = STDOUT_FILENO;
        return;
    }
    struct stat status = {};
    const bool exists = stat(m_path.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode))
        throw ToolFailure(m_path, "is a folder");
    if (exists && !S_ISREG(status.st_mode)) {
        // A device or a pipe has no bytes to lose, and no other name to be written under first.
        m_descriptor = open(m_path.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_descriptor < 0)
            fail("can't be opened for writing");
        return;
    }
    if (exists && !m_force)
        throw ToolFailure(m_path, "exists; --force replaces it");
    m_temporary = m_path + ".part" + std::to_string(getpid());
    m_descriptor = open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (m_descriptor < 0) {
        m_temporary.clear();
        fail("can't be made");
    }
}

OutputFile::~OutputFile() {
    if (m_descriptor > STDERR_FILENO)
        ::close(m_descriptor);
    if (!m_temporary.empty())
        unlink(m_temporary.c_str());
}

void OutputFile::write(std::string_view bytes) {
    if (s_bufferSize - m_used < bytes.size())
        flush();
    if (bytes.size() > s_bufferSize) {
        writeAll(bytes.data(), bytes.size());
        return;
    }
    std::memcpy(m_buffer.get() + m_used, bytes.data(), bytes.size());
    m_used += bytes.size();
}

void OutputFile::close() {
    flush();
    if (m_descriptor == STDOUT_FILENO) {
        m_descriptor = -1;
        return;
    }
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    if (::close(descriptor) != 0)
        fail("can't be written");
    if (m_temporary.empty())
        return;
    // Without force the name must still be free: a link fails where a file has appeared meanwhile, a rename
    // would replace it. Where the file system has no links, the look at the start has to do.
    if (!m_force && link(m_temporary.c_str(), m_path.c_str()) == 0) {
        unlink(m_temporary.c_str());
        m_temporary.clear();
        return;
    }
    if (!m_force && errno == EEXIST)
        throw ToolFailure(m_path, "exists; --force replaces it");
    if (std::rename(m_temporary.c_str(), m_path.c_str()) != 0)
        fail("can't be made");
    m_temporary.clear();
}

void OutputFile::flush() {
    writeAll(m_buffer.get(), m_used);
    m_used = 0;
}

void OutputFile::writeAll(const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(m_descriptor, bytes, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail("can't be written");
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

void OutputFile::fail(std::string_view text) const {
    const std::string whole = withSystemError(text);
    throw ToolFailure(m_path == "-" ? "(standard output)" : m_path, whole);
}
