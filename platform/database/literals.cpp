#include "database/literals.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <string_view>
#include <strings.h>

namespace database {

namespace {

constexpr std::size_t mostLiterals = 64;
constexpr std::size_t mostDigits = 18;
constexpr std::array<const char*, 4> liftedVerbs = {"SELECT", "INSERT", "UPDATE", "DELETE"};
constexpr std::array<const char*, 3> patternWords = {"LIKE", "GLOB", "ESCAPE"};

bool isWord(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || (c & 0x80) != 0;
}

bool beginsWithLiftedVerb(const std::string& sql) {
    return std::any_of(liftedVerbs.begin(), liftedVerbs.end(), [&sql](const char* verb) {
        return strncasecmp(sql.c_str(), verb, std::strlen(verb)) == 0;
    });
}

bool endsInPatternWord(const std::string& text) {
    auto end = text.size();
    while (end > 0 && std::isspace(static_cast<unsigned char>(text[end - 1])) != 0)
        --end;
    auto begin = end;
    while (begin > 0 && isWord(text[begin - 1]))
        --begin;
    if (begin == end)
        return false;
    const std::string word = text.substr(begin, end - begin);
    return std::any_of(patternWords.begin(), patternWords.end(), [&word](const char* pattern) {
        return strcasecmp(word.c_str(), pattern) == 0;
    });
}

// Reads the literal whose opening quote stands at position; the position of what follows, or npos
// when it does not end.
std::size_t readLiteral(const std::string& sql, std::size_t position, std::string& value) {
    for (std::size_t at = position + 1;;) {
        const auto quote = sql.find('\'', at);
        if (quote == std::string::npos)
            return quote;
        value.append(sql, at, quote - at);
        if (quote + 1 >= sql.size() || sql[quote + 1] != '\'')
            return quote + 1;
        value += '\'';
        at = quote + 2;
    }
}

// An INSERT of given values: its lists hold values or names alone.
bool isPlainInsert(const std::string& sql) {
    return strncasecmp(sql.c_str(), "INSERT", 6) == 0 &&
           strcasestr(sql.c_str(), "SELECT") == nullptr;
}

// The length of the whole number at a position right behind one of the borders; 0 when there is
// none, or one that a 64-bit integer may not hold.
std::size_t numberAt(const std::string& sql, std::size_t at, const char* borders) {
    if (sql[at] < '0' || sql[at] > '9' || at == 0 || std::strchr(borders, sql[at - 1]) == nullptr)
        return 0;
    const std::size_t length = std::min(sql.find_first_not_of("0123456789", at), sql.size()) - at;
    const bool ends =
        at + length == sql.size() || (!isWord(sql[at + length]) && sql[at + length] != '.');
    return ends && length <= mostDigits ? length : 0;
}

// What makes a text doubtful wherever it stands, and what begins a comment or a literal.
constexpr std::string_view alwaysDoubtful = "\"`[?:@$#;";
constexpr std::string_view beginnings = "-/'0123456789";

bool isDoubtful(const std::string& sql, std::size_t at) {
    return alwaysDoubtful.find(sql[at]) != std::string_view::npos ||
           sql.compare(at, 2, "--") == 0 || sql.compare(at, 2, "/*") == 0;
}

// All other characters are copied as they stand.
constexpr std::array<bool, 256> specialCharacters() {
    std::array<bool, 256> table = {};
    for (const std::string_view characters : {alwaysDoubtful, beginnings})
        for (const char c : characters)
            table[static_cast<unsigned char>(c)] = true;
    return table;
}

constexpr std::array<bool, 256> special = specialCharacters();

bool mayLiftBehind(const std::string& text) {
    return (text.empty() || !isWord(text.back())) && !endsInPatternWord(text);
}

} // namespace

bool liftLiterals(const std::string& sql, LiftedSql& lifted) {
    if (!beginsWithLiftedVerb(sql))
        return false;
    const char* const borders = isPlainInsert(sql) ? "=(," : "=";
    lifted.text.reserve(sql.size());
    for (std::size_t at = 0; at < sql.size();) {
        const std::size_t begin = at;
        while (at < sql.size() && !special[static_cast<unsigned char>(sql[at])])
            ++at;
        lifted.text.append(sql, begin, at - begin);
        if (at == sql.size())
            break;
        const std::size_t digits = numberAt(sql, at, borders);
        if (sql[at] != '\'' && digits == 0) {
            if (isDoubtful(sql, at))
                return false;
            lifted.text += sql[at++];
            continue;
        }
        if (!mayLiftBehind(lifted.text) || lifted.values.size() == mostLiterals)
            return false;
        Literal& literal = lifted.values.emplace_back();
        if (digits != 0) {
            literal = {sql.substr(at, digits), true};
            at += digits;
        } else {
            at = readLiteral(sql, at, literal.text);
        }
        if (at == std::string::npos)
            return false;
        lifted.text += '?';
    }
    return !lifted.values.empty();
}

} // namespace database
