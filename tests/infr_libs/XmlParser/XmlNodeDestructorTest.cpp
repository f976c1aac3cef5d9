#include "infr_libs/XmlParser/XmlNode.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/ScarceMemory.h"

#include <gtest/gtest.h>

TEST(XmlNode, LetsNoFailureOutOfItsDestructor) {
    const ChildResult result = runInChild([] {
        auto* root = new XmlNode("a", "doc.xml", 1, nullptr);
        auto* subNode = new XmlNode("b", "doc.xml", 1, nullptr);
        root->addNode(subNode);
        subNode->addNode(new XmlNode("c", "doc.xml", 1, nullptr));
        subNode->addNode(new XmlNode("d", "doc.xml", 1, nullptr));
        leaveMemory(0); // the list of what is still to be deleted can't grow
        delete root;
    });
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.error, "INTERNAL ERROR.\n");
}
