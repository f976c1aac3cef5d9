#pragma once

#include <istream>
#include <streambuf>
#include <string_view>

// An input stream over bytes that stay where they are: a sector is parsed in place, without a copy. The bytes
// must outlive the stream.
class MemoryInput : private std::streambuf, public std::istream {
public:
    explicit MemoryInput(std::string_view bytes) : std::istream(static_cast<std::streambuf*>(this)) {
        // The buffer is never written: there is no output half, and a character put back is the one read.
        char* begin = const_cast<char*>(bytes.data());
        setg(begin, begin, begin + bytes.size());
    }

private:
    std::streampos seekoff(std::streamoff offset, std::ios_base::seekdir direction,
                           std::ios_base::openmode which) override {
        const std::streamoff base = direction == std::ios_base::beg   ? 0
                                    : direction == std::ios_base::cur ? gptr() - eback()
                                                                      : egptr() - eback();
        return seekpos(base + offset, which);
    }

    std::streampos seekpos(std::streampos position, std::ios_base::openmode which) override {
        const std::streamoff offset = position;
        if (which != std::ios_base::in && which != (std::ios_base::in | std::ios_base::out))
            return std::streampos(-1);
        if (offset < 0 || offset > egptr() - eback())
            return std::streampos(-1);
        setg(eback(), eback() + offset, egptr());
        return position;
    }
};
