#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

IndexedName::IndexedName(const std::string& text) {
    const std::string::size_type opening = text.find('[');
    const std::string::size_type closing = text.find(']');
    m_hasOpening = opening != std::string::npos;
    m_hasClosing = closing != std::string::npos;
    m_base = isIndexed() ? text.substr(0, opening) : text;
    if (isIndexed() && opening < closing)
        m_index = text.substr(opening + 1, closing - opening - 1);
}

int readCoreNumber(ZNLoader& loader, const std::string& text, const XmlNode* element) {
    char* end = nullptr;
    const long number = std::strtol(text.c_str(), &end, 0);
    if (*end)
        loader.m_utils.throwError(11052, ElementLocation(element), "Invalid core number \"%s\".\n",
                                  text.c_str());
    return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}
