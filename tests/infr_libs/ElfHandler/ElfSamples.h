#pragma once

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "tests/support/ChildProcess.h"

#include <csignal>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <istream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

// What the tests of the ELF family share.

inline std::unique_ptr<ElfHandler> readElf(ErrorHandler& errorHandler, const std::string& bytes) {
    std::istringstream stream(bytes);
    return std::make_unique<ElfHandler>(&errorHandler, stream);
}

// Holds that the body ends its process with an assertion of this condition.
inline void expectAssertion(const std::string& condition, const std::function<void()>& body) {
    const ChildResult result = runInChild(body);
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_THAT(result.error, testing::HasSubstr("Assertion `" + condition + "' failed."));
}

// An array as the builders take it.
inline unsigned char* newArray(std::string_view bytes) {
    auto* array = new unsigned char[bytes.size()];
    bytes.copy(reinterpret_cast<char*>(array), bytes.size());
    return array;
}

// The section's contents as `writeSectionData` gives them.
inline std::string sectionData(const ElfHandler& elf, unsigned int section) {
    std::string bytes(elf.getSectionSize(section), '?');
    elf.writeSectionData(section, bytes.data());
    return bytes;
}
