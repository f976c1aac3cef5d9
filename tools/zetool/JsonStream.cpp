#include "tools/zetool/JsonStream.h"

namespace {

constexpr int s_indent = 2;

} // namespace

void JsonStream::add(std::string_view key, const Json& value) {
    startEntry(key);
    // A line end within a text is escaped, so that those that stand here are the form's.
    const std::string text = value.dump(s_indent, ' ', true);
    std::size_t from = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', from)) {
        m_output.write(std::string_view(text).substr(from, end - from));
        m_output.write(m_lineStart);
        from = end + 1;
    }
    m_output.write(std::string_view(text).substr(from));
}

void JsonStream::addWritten(std::string_view text) {
    startEntry({});
    m_output.write(text);
}

void JsonStream::addMembers(const Json& object) {
    for (const auto& [key, value] : object.items())
        add(key, value);
}

void JsonStream::end() {
    const Open closed = m_open.back();
    m_open.pop_back();
    m_lineStart.resize(1 + s_indent * m_open.size());
    if (!closed.isEmpty)
        m_output.write(m_lineStart);
    m_output.write({&closed.closing, 1});
    if (m_open.empty())
        m_output.write("\n");
}

void JsonStream::begin(std::string_view key, char opening, char closing) {
    startEntry(key);
    m_output.write({&opening, 1});
    m_open.push_back({closing});
    m_lineStart.append(s_indent, ' ');
}

void JsonStream::startEntry(std::string_view key) {
    if (m_open.empty())
        return;
    if (!m_open.back().isEmpty)
        m_output.write(",");
    m_open.back().isEmpty = false;
    m_output.write(m_lineStart);
    if (key.empty())
        return;
    m_output.write("\"");
    m_output.write(key);
    m_output.write("\": ");
}
