#include "replyscan.h"

#include "status.h"

#include <algorithm>
#include <string_view>

namespace cimclient {

namespace {

constexpr std::size_t maxElements = 4'000'000;
constexpr std::size_t maxDepth = 256;

constexpr auto npos = std::string_view::npos;

bool startsWith(std::string_view text, std::size_t position, std::string_view prefix) {
    return text.compare(position, prefix.size(), prefix) == 0;
}

// Behind the mark that ends a section; behind the text when it never ends.
std::size_t skipPast(std::string_view text, std::size_t position, std::string_view mark) {
    const std::size_t found = text.find(mark, position);
    return found == npos ? text.size() : found + mark.size();
}

// The '>' that ends a tag, which may also stand in its attributes.
std::size_t tagEnd(std::string_view text, std::size_t position) {
    for (; position < text.size(); ++position) {
        const char c = text[position];
        if (c == '>')
            return position;
        if (c == '"' || c == '\'')
            position = std::min(text.find(c, position + 1), text.size());
    }
    return npos;
}

std::string_view elementName(std::string_view tag) {
    return tag.substr(0, tag.find_first_of(" \t\r\n/"));
}

class Scan {
public:
    explicit Scan(std::string& text) : m_text(text), m_view(text) {}

    void run() {
        std::size_t position = m_view.find('<');
        while (position != npos)
            position = m_view.find('<', markup(position + 1));
    }

private:
    // Behind the '<'; gives a position behind the markup, as far as it matters here.
    std::size_t markup(std::size_t position) {
        if (startsWith(m_view, position, "![CDATA["))
            return skipPast(m_view, position, "]]>");
        if (startsWith(m_view, position, "!--"))
            return skipPast(m_view, position, "-->");
        if (startsWith(m_view, position, "!") || startsWith(m_view, position, "?"))
            return position;
        const std::size_t end = tagEnd(m_view, position);
        if (end == npos)
            return m_view.size();
        tag(position, m_view.substr(position, end - position));
        return end;
    }

    void tag(std::size_t position, std::string_view tag) {
        if (!tag.empty() && tag.front() == '/') {
            m_depth -= m_depth > 0 ? 1 : 0;
            return;
        }
        const bool isEmpty = !tag.empty() && tag.back() == '/';
        m_depth += isEmpty ? 0 : 1;
        if (++m_elements > maxElements || m_depth > maxDepth)
            throw Failure{CMPI_RC_ERR_FAILED,
                          "The reply has too many or too deeply nested elements"};
        const std::string_view name = isEmpty ? elementName(tag) : std::string_view();
        if (name == "VALUE" || name == "KEYVALUE")
            m_text[position] = static_cast<char>(m_text[position] - 'A' + 'a');
    }

    std::string& m_text;
    std::string_view m_view;
    std::size_t m_elements = 0;
    std::size_t m_depth = 0;
};

} // namespace

void scanReply(std::string& text) {
    Scan(text).run();
}

} // namespace cimclient
