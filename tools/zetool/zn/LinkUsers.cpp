#include "tools/zetool/zn/LinkUsers.h"

#include "tools/zetool/Crc32.h"
#include "tools/zetool/JsonStream.h"
#include "tools/zetool/zn/ModelText.h"

#include <algorithm>
#include <string>

namespace {

constexpr std::size_t s_pieceSize = 1 << 15;

bool isPlain(char c) {
    return c >= ' ' && c <= '~' && c != '"' && c != '\\';
}

void appendJson(std::string& text, const ZNLoader::Node* node) {
    if (!node) {
        text += "null";
    } else if (std::all_of(node->m_id.begin(), node->m_id.end(), isPlain)) {
        text += '"';
        text += node->m_id;
        text += '"';
    } else {
        text += jsonLine(jsonText(node->m_id));
    }
}

} // namespace

void writeUsers(JsonStream& json, const ZNLoader::Zlink& link) {
    std::string pair;
    for (const auto& [source, destination] : link.m_users) {
        pair.clear();
        pair += '[';
        appendJson(pair, source);
        pair += ", ";
        appendJson(pair, destination);
        pair += ']';
        json.addWritten(pair);
    }
}

std::uint32_t userCrc32(const ZNLoader::Zlink& link) {
    Crc32 crc;
    std::string piece;
    for (const auto& [source, destination] : link.m_users) {
        piece += idOf(source);
        piece += '\t';
        piece += idOf(destination);
        piece += '\n';
        if (piece.size() >= s_pieceSize) {
            crc.add(piece);
            piece.clear();
        }
    }
    crc.add(piece);
    return crc.value();
}

void writeUsers(OutputFile& output, const ZNLoader::Zlink& link) {
    const ZNLoader::Node* last = nullptr;
    bool isFirst = true;
    for (const auto& [source, destination] : link.m_users) {
        if (isFirst || source != last) {
            output.write(isFirst ? "  " : "\n  ");
            output.write(source ? idOf(source) : s_noNode);
            output.write(" >");
        }
        isFirst = false;
        last = source;
        output.write(" ");
        output.write(destination ? idOf(destination) : s_noNode);
    }
    if (!isFirst)
        output.write("\n");
}
