#include "tests/support/XmlText.h"

std::string configurationText(std::size_t numBytes) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<ZSystem xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">\n";
    for (std::size_t node = 0; text.size() < numBytes; ++node) {
        const std::string number = std::to_string(node);
        text += "  <!-- node " + number + " -->\n";
        text += "  <Node number=\"" + number + "\" jtagId=\"0x00002731\" routingId=\"0x" + number + "\">\n";
        text += "    <Description>Node " + number + " &amp; its cores</Description>\n";
        for (int core = 0; core < 4; ++core) {
            text += "    <Processor number=\"" + std::to_string(core) + "\" codeReference=\"stdcore[" +
                    number + "]\" numThreads=\"8\">\n";
            for (int port = 0; port < 4; ++port)
                text += "      <Port location=\"ZS1_PORT_" + std::to_string(port) + "A\" name=\"PORT_LED_" +
                        std::to_string(port) + "\" width=\"1\" inUse=\"true\"/>\n";
            text += "    </Processor>\n";
        }
        text += "  </Node>\n";
    }
    return text + "</ZSystem>\n";
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string nestedText(std::size_t numLevels) {
    return repeated("<a>", numLevels) + repeated("</a>", numLevels);
}

std::string withoutStatedEnd(std::string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool last = i + 1 == text.size() || text[i + 1] == '\0';
        const bool lastOfLine = i + 2 == text.size() && text[i + 1] == '\n';
        if (text[i] == '\\' && (last || lastOfLine))
            text[i] = '/';
    }
    return text;
}
