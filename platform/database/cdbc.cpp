#include "database/cdbc.h"

#include <algorithm>
#include <utility>

void CDBC_Exception::set(char* text, int code, int extendedCode) {
    m_text = text;
    m_code = code;
    m_extendedCode = extendedCode;
}

void CDBC_Exception::set(char* text, int code, int extendedCode, std::string statement) {
    set(text, code, extendedCode);
    m_statement = std::move(statement);
}

CDBC_Exception::~CDBC_Exception() = default;

namespace {

constexpr char timeoutOption[] = "?timeout=";

bool isNumber(const std::string& text) {
    return !text.empty() && text.size() <= 9 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

DBUrl::DBUrl(const std::string& url) {
    const auto colon = url.find(':');
    if (colon == std::string::npos) {
        m_path = url;
        return;
    }
    m_scheme = url.substr(0, colon);
    m_path = url.substr(colon + 1);
    // Only what is surely an option is taken as one: a path may hold any character.
    const auto mark = m_path.rfind(timeoutOption);
    if (mark == std::string::npos)
        return;
    const std::string value = m_path.substr(mark + sizeof timeoutOption - 1);
    if (!isNumber(value))
        return;
    m_options["timeout"] = value;
    m_path.erase(mark);
}

std::string DBUrl::option(const std::string& name) const {
    const auto found = m_options.find(name);
    return found != m_options.end() ? found->second : "";
}

DBTransaction::~DBTransaction() {
    if (!m_open)
        return;
    try {
        m_connection.rollback();
    } catch (const CDBC_Exception&) {
        // The connection rolls back by itself when it is closed.
    }
}

void DBTransaction::commit() {
    m_connection.commit();
    m_open = false;
}
