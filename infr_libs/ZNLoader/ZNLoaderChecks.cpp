// The checks between the parts of a network, and the binding of links to nodes.

#include "infr_libs/ZNLoader/ZNLoaderReading.h"

bool ZNLoader::checkNodes() {
    return false;
}

bool ZNLoader::checkCoreRefs() {
    return false;
}

bool ZNLoader::checkPackages() {
    return false;
}

bool ZNLoader::checkJTAGChain() {
    return false;
}

bool ZNLoader::associateNodesWithLinks() {
    return false;
}

bool ZNLoader::checkLinks() {
    return false;
}

bool ZNLoader::checkLinkDups() {
    return false;
}
