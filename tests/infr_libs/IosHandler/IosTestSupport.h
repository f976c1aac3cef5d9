#pragma once

#include "infr_libs/AutoDefines/AutoDefines.h"
#include "infr_libs/IosHandler/IosHandler.h"
#include "tests/infr_libs/XmlParser/XmlTestSupport.h"
#include "tests/support/OwnedUtils.h"

#include <memory>
#include <sstream>
#include <string>

// The pin map of a document given as the text of its `System`, on a zs1b device. The document goes before the
// map is asked.
template<typename Handler = CatchableErrorHandler>
class BuiltMap {
public:
    explicit BuiltMap(const std::string& contents, unsigned jtagId = 0x2731)
        : m_defines(AutoDefines::createAutoDefines(jtagId, &m_utils.handler)) {
        m_utils.utils.autoDefines = m_defines.get();
        std::istringstream stream("<System>" + contents + "</System>");
        const XmlParser parser("doc.xml", m_utils.get(), &stream);
        m_map = std::make_unique<IosHandler>(parser.getRoot(), m_utils.get());
    }

    const IosHandler* operator->() const { return m_map.get(); }
    Handler& handler() { return m_utils.handler; }

private:
    OwnedUtils<Handler> m_utils;
    std::unique_ptr<AutoDefines> m_defines;
    std::unique_ptr<IosHandler> m_map;
};
