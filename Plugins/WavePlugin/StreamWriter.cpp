#include "Plugins/WavePlugin/StreamWriter.h"

#include <stdio_ext.h>
#include <unistd.h>

void writeThrough(FILE* fp, const char* text, std::size_t length) {
    // While nothing waits in the stream's own buffer, the text may go straight to the descriptor: a third
    // of the instructions of the way through the buffer.
    if (__fpending(fp) == 0) {
        const int descriptor = fileno(fp);
        if (descriptor >= 0) {
            const ssize_t written = write(descriptor, text, length);
            if (written == static_cast<ssize_t>(length))
                return;
            if (written > 0) {
                text += written;
                length -= static_cast<std::size_t>(written);
            }
        }
    }
    // Lines wait before this one, the stream has no descriptor, or the system took a part or nothing: the
    // stream takes what is left, and keeps the error if it fails again.
    std::fwrite(text, 1, length, fp);
    std::fflush(fp);
}
