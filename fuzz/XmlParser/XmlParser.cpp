// Parses the input as a document, with a handler that throws and with one that returns, and walks what comes
// of it. A copy must print as its original does, and everything must end.

#include "infr_libs/XmlParser/XmlParser.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/StringLibrary/StringLibrary.h"
#include "tests/support/XmlText.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

// Counts instead of printing, and returns.
class ReturningHandler : public ErrorHandler {
public:
    void fatalError(bool, const char*, ...) override { ++m_numReports; }

private:
    unsigned m_numReports = 0;
};

std::string printed(const XmlNode& node) {
    char* text = nullptr;
    std::size_t size = 0;
    FILE* file = open_memstream(&text, &size);
    node.print(file, 0, false);
    std::fclose(file);
    std::string result(text, size);
    std::free(text);
    return result;
}

void readAttributes(const XmlNode& node) {
    static const char* const known[] = {"a", "b", nullptr};
    node.checkSubNodes(known);
    node.checkAttributes(known);
    // Each getter looks at every attribute: a few of them show as much as all, and keep the target fast.
    for (unsigned i = 0; i < std::min(node.numAttributes(), 4U); ++i) {
        const char* name = node.getAttribute(i)->getName()->c_str();
        unsigned long long number = 0;
        bool truth = false;
        double real = 0;
        node.getUInt64Attribute(name, number, true);
        node.getBoolAttribute(name, truth, true);
        node.getDoubleAttribute(name, real, true);
        RequiredText(node, name);
    }
    for (unsigned i = 0; i < node.numNodes(); ++i)
        readAttributes(*node.getNode(i));
}

void parse(const std::string& text, ErrorHandler& handler, bool walk) {
    StringLibrary strings(&handler);
    ZelmUtils utils{&handler, &strings};
    std::istringstream stream(text);
    try {
        const XmlParser parser("fuzz", &utils, &stream);
        if (!parser.getRoot())
            return;
        const XmlNode& root = *parser.getRoot();
        if (printed(XmlNode(root)) != printed(root))
            std::abort();
        if (walk)
            readAttributes(root);
    } catch (const std::string&) {
        // the handler's message
    } catch (const std::out_of_range&) {
        // the input ended in a comment within a text value
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = withoutStatedEnd(std::string(reinterpret_cast<const char*>(data), size));
    CatchableErrorHandler throwing;
    parse(text, throwing, false);
    ReturningHandler returning;
    parse(text, returning, size < 8192); // the walk is recursive
    return 0;
}
