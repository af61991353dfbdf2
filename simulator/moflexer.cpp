#include "simulator/moflexer.h"

#include "simulator/names.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace velclp_sim {

namespace {

bool isWordStart(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_' || (c & 0x80) != 0;
}

bool isWordPart(char c) {
    return isWordStart(c) || std::isdigit(static_cast<unsigned char>(c)) != 0;
}

void appendUtf8(std::string& out, unsigned code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | code >> 6U);
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | code >> 12U);
        out += static_cast<char>(0x80 | (code >> 6U & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

/// An integer in one of MOF's four notations; nothing when the text is none or is too large.
std::optional<Value> integerValue(std::string_view text) {
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') {
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && foldCase(text[1]) == 'x') {
        base = 16;
        text.remove_prefix(2);
    } else if (text.size() > 1 && foldCase(text.back()) == 'b') {
        base = 2;
        text.remove_suffix(1);
    } else if (text.size() > 1 && text[0] == '0') {
        base = 8;
    }
    std::uint64_t magnitude = 0;
    const auto [stop, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, base);
    constexpr std::uint64_t lowest = std::uint64_t{1} << 63U;
    if (text.empty() || error != std::errc() || stop != text.data() + text.size() ||
        (negative && magnitude > lowest)) {
        return std::nullopt;
    }
    return negative ? Value(static_cast<std::int64_t>(-magnitude)) : Value(magnitude);
}

std::optional<Value> realValue(std::string_view text) {
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    double value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || stop != text.data() + text.size()) {
        return std::nullopt;
    }
    return Value(value);
}

} // namespace

MofLexer::MofLexer(std::string_view text, const std::string& file)
    : text_(text), file_(std::make_shared<const std::string>(file)) {
    if (text_.substr(0, 3) == "\xEF\xBB\xBF") {
        text_.remove_prefix(3);
    }
}

MofPlace MofLexer::here() const {
    return {file_, line_, column_};
}

char MofLexer::take() {
    const char c = text_[at_++];
    if (c == '\n') {
        ++line_;
        column_ = 1;
    } else {
        ++column_;
    }
    return c;
}

void MofLexer::skipBlanks() {
    while (!atEnd()) {
        if (std::isspace(static_cast<unsigned char>(peek())) != 0) {
            take();
        } else if (peek() == '/' && (peek(1) == '/' || peek(1) == '*')) {
            skipComment();
        } else {
            return;
        }
    }
}

void MofLexer::skipComment() {
    const MofPlace place = here();
    take();
    if (take() == '/') {
        while (!atEnd() && peek() != '\n') {
            take();
        }
        return;
    }
    while (!(peek() == '*' && peek(1) == '/')) {
        if (atEnd()) {
            throw MofError(place, "comment without an end");
        }
        take();
    }
    take();
    take();
}

MofToken MofLexer::next() {
    skipBlanks();
    MofToken token;
    token.place = here();
    if (atEnd()) {
        return token;
    }
    const char c = peek();
    const char second = peek(1);
    const bool digit = std::isdigit(static_cast<unsigned char>(c)) != 0;
    const bool signedDigit =
        (c == '+' || c == '-' || c == '.') &&
        (std::isdigit(static_cast<unsigned char>(second)) != 0 || second == '.');
    if (isWordStart(c)) {
        token.kind = MofToken::Kind::word;
        return word(std::move(token));
    }
    if (digit || signedDigit) {
        return number(std::move(token));
    }
    if (c == '"' || c == '\'') {
        return quoted(std::move(token), c);
    }
    take();
    if ((c == '$' || c == '#') && isWordStart(peek())) {
        token.kind = c == '$' ? MofToken::Kind::alias : MofToken::Kind::pragma;
        return word(std::move(token));
    }
    if (std::string_view("[]{}();:,=").find(c) == std::string_view::npos) {
        throw MofError(token.place, std::string("unexpected character '") + c + "'");
    }
    token.kind = MofToken::Kind::symbol;
    token.text = std::string(1, c);
    return token;
}

MofToken MofLexer::word(MofToken token) {
    while (!atEnd() && isWordPart(peek())) {
        token.text += take();
    }
    return token;
}

MofToken MofLexer::number(MofToken token) {
    std::string text;
    const auto inside = [&](char c) {
        const bool exponentSign = (c == '+' || c == '-') && text.size() > 1 &&
                                  foldCase(text.back()) == 'e' &&
                                  foldCase(text[text[0] == '0' ? 1 : 0]) != 'x';
        return text.empty() || isWordPart(c) || c == '.' || exponentSign;
    };
    while (!atEnd() && inside(peek())) {
        text += take();
    }
    const bool real = text.find('.') != std::string::npos;
    const std::optional<Value> value = real ? realValue(text) : integerValue(text);
    if (!value) {
        throw MofError(token.place, "'" + text + "' is no number of up to 64 bits");
    }
    token.kind = real ? MofToken::Kind::real : MofToken::Kind::integer;
    token.number = *value;
    token.text = std::move(text);
    return token;
}

MofToken MofLexer::quoted(MofToken token, char quote) {
    token.kind = quote == '"' ? MofToken::Kind::string : MofToken::Kind::character;
    take();
    while (peek() != quote) {
        if (atEnd() || peek() == '\n') {
            throw MofError(token.place, "text without a closing quote");
        }
        if (peek() == '\\') {
            escape(token.text);
        } else {
            token.text += take();
        }
    }
    take();
    return token;
}

void MofLexer::escape(std::string& out) {
    const MofPlace place = here();
    take();
    static constexpr std::string_view names = "btnfr\"'\\";
    static constexpr std::string_view values = "\b\t\n\f\r\"'\\";
    const char c = atEnd() ? '\0' : take();
    if (foldCase(c) == 'x') {
        unsigned code = 0;
        int digits = 0;
        for (; digits < 4 && std::isxdigit(static_cast<unsigned char>(peek())) != 0; ++digits) {
            const char digit = foldCase(take());
            code = code * 16 + static_cast<unsigned>(digit >= 'a' ? digit - 'a' + 10 : digit - '0');
        }
        if (digits == 0 || code == 0) {
            throw MofError(place, "\\x needs one to four hexadecimal digits that are not all zero");
        }
        appendUtf8(out, code);
        return;
    }
    const auto known = names.find(c);
    if (c == '\0' || known == std::string_view::npos) {
        throw MofError(place, "unknown escape in a text");
    }
    out += values[known];
}

} // namespace velclp_sim
