// A program of its own, because it replaces the allocation of the whole process.

#include "infr_libs/XmlParser/XmlNode.h"

#include "tests/support/ChildProcess.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

namespace {

bool s_noMemoryLeft = false;

} // namespace

void* operator new(std::size_t size) {
    void* memory = s_noMemoryLeft ? nullptr : std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

TEST(XmlNode, LetsNoFailureOutOfItsDestructor) {
    const ChildResult result = runInChild([] {
        auto* root = new XmlNode("a", "doc.xml", 1, nullptr);
        auto* subNode = new XmlNode("b", "doc.xml", 1, nullptr);
        root->addNode(subNode);
        subNode->addNode(new XmlNode("c", "doc.xml", 1, nullptr));
        subNode->addNode(new XmlNode("d", "doc.xml", 1, nullptr));
        s_noMemoryLeft = true; // the list of what is still to be deleted can't grow
        delete root;
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "INTERNAL ERROR.\n");
}
