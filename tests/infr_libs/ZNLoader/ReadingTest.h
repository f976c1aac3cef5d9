#pragma once

#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/ThrownBy.h"

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>

// A loader over the node types of a `DeviceFolder`. Documents are called "zn".
class ReadingTest : public testing::Test {
protected:
    // Reads the document and runs none of the passes behind. What is thrown goes to the caller.
    void read(const std::string& text) {
        std::istringstream stream(text);
        loader.m_parser = new XmlParser("zn", loader.m_zelmUtils, &stream);
        ASSERT_FALSE(loader.readNetwork(loader.m_parser->getRoot()));
    }

    // Reads, checks and positions it.
    void open(const std::string& text) {
        std::istringstream stream(text);
        loader.open("zn", &stream);
    }

    ReadingTest() { loader.setWarningTarget(&warnings); }

    template<class Kind = ZNLoader::ProcNode>
    Kind& node(std::size_t index) {
        return dynamic_cast<Kind&>(*loader.m_nodes.at(index));
    }

    ZNLoader::FreeCore& core(std::size_t nodeIndex, std::size_t index) {
        return dynamic_cast<ZNLoader::FreeCore&>(*node(nodeIndex).m_cores.at(index));
    }

    DeviceFolder devices;
    std::string warnings;
    ZNLoader loader;
};
