#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"

#include <string>
#include <vector>

// Routing as one would write it down for a handful of nodes: ids compared as texts, every link looked at for
// every question, every way tried. It is slow beyond use, and what the loader's own routing must agree with
// in every result: identifiers, users of links and their order, walking order, verdict and message.
//
// It works on a loader's model in place of the loader's own operations. Failures that the loader throws are
// thrown here as the bare message.
class PlainTopology {
public:
    explicit PlainTopology(ZNLoader& loader) : m_loader(loader) {}

    void checkLinkDups();
    bool buildPositions();
    std::string findShortestRouteRoot(const std::string& from, const std::string& to);

private:
    using Matrix = std::vector<std::vector<unsigned>>;
    struct Group {
        std::string firstHop;
        std::vector<std::pair<std::string, std::string>> pairs;
    };
    struct Change {
        std::size_t row, column;
        unsigned word;
    };

    std::vector<std::string> linkedTo(const std::string& id) const;
    bool areLinked(const std::string& a, const std::string& b) const;

    bool buildAsHypercube();
    std::vector<std::string> walk() const;
    void addRoutes(const std::vector<std::string>& order, unsigned numDimensions);
    void addDeviceRouteInfo();

    bool buildAsPile();
    void search(const std::string& current, const std::string& to, std::vector<std::string>& best,
                std::string& bestRoot, std::vector<std::string>& path);
    bool beBrutish(std::size_t x, std::size_t y, Matrix& candidates, Matrix& result,
                   std::vector<std::vector<Group>>& groups);
    std::vector<unsigned> identifiers(const Matrix& bits, unsigned mask, unsigned topBit) const;
    bool orderLine();

    ZNLoader& m_loader;
};
