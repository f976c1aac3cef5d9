#pragma once

#include "tests/support/ImageBuilder.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

// An image whose second sector has a payload of a gigabyte, almost all of it a hole in the file.
inline void writeLargeImage(const std::string& file) {
    constexpr std::uint32_t s_payload = (1U << 30) - 12;
    constexpr std::uint64_t s_start = 32;
    const std::string head =
        ImageBuilder().zn("A").binary(1, 2, 0x10000, "").setNumber(36, 8, s_payload + 8).bytes();
    std::ofstream(file, std::ios::binary) << head.substr(0, s_start + 16 + 12);
    std::filesystem::resize_file(file, s_start + 16 + s_payload + 4); // the CRC is 0
    const std::string end = ImageBuilder().end().bytes().substr(8);
    std::ofstream(file, std::ios::binary | std::ios::app) << end;
}

// In front of a command: what it may have of memory. A sanitizer has more than that of its own.
#if defined(__SANITIZE_ADDRESS__)
#define ZETOOL_WITH_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZETOOL_WITH_SANITIZER
#endif
#endif
#ifdef ZETOOL_WITH_SANITIZER
inline const std::string s_littleMemory = "";
#else
inline const std::string s_littleMemory = "ulimit -v 65536; ";
#endif
