#include "language/scanner.h"

#include <algorithm>
#include <cstring>

#include "language/syntax.h"
#include "uri/uriparser.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/optionsymbol.h"
#include "velclp/reservedsymbol.h"
#include "velclp/verbsymbol.h"

const std::string* lex_buf = nullptr;
unsigned lex_buf_position = 0;
bool flex_help = false;
int target_length = 0;
int target_limit = 0;

int my_yyinput(char* buf, int max_size) {
    VELCLP_ASSERT(buf != nullptr && max_size > 0, "buf!=__null&&max_size>0");
    if (!lex_buf)
        return 0;
    const std::size_t count =
        lex_buf->copy(buf, static_cast<std::size_t>(max_size),
                      std::min<std::size_t>(lex_buf_position, lex_buf->size()));
    // A NUL would cut the text of its token short; another control byte is refused like it.
    std::replace(buf, buf + count, '\0', '\x7f');
    lex_buf_position += static_cast<unsigned>(count);
    return static_cast<int>(count);
}

std::string format_property_array(const char* str) {
    VELCLP_ASSERT(str != nullptr, "str!=__null");
    std::string path(str);
    std::replace(path.begin(), path.end(), '[', ':');
    path.erase(std::remove(path.begin(), path.end(), ']'), path.end());
    return path;
}

namespace velmora_clp {

namespace {

constexpr std::size_t MAX_TOKEN = 254;

// The verb of the line, which decides what its options mean.
short currentVerb = TK_UNKNOWN_VERB;

bool tooLong(const char* text) {
    return std::strlen(text) > MAX_TOKEN;
}

int storeString(const std::string& text, short token) {
    static_assert(sizeof yylval.sval > MAX_TOKEN, "every accepted token fits");
    yylval.sval[text.copy(yylval.sval, MAX_TOKEN)] = '\0';
    return token;
}

// Only the first character is looked at: the rules see to the last one.
std::string strip(const std::string& text, char wrapper) {
    if (text.size() < 2 || text.front() != wrapper)
        return text;
    return text.substr(1, text.size() - 2);
}

} // namespace

int storeText(const char* text, short token) {
    return tooLong(text) ? TK_ILLEGAL : storeString(text, token);
}

int storeLower(const char* text, short token) {
    return tooLong(text) ? TK_ILLEGAL : storeString(lowerString(text), token);
}

int storeUnwrapped(const char* text, short token) {
    return tooLong(text) ? TK_ILLEGAL : storeString(lowerString(strip(text, '(')), token);
}

int storeUnquoted(const char* text, short token) {
    return tooLong(text) ? TK_ILLEGAL : storeString(strip(text, '"'), token);
}

int storeNameList(const char* text, short token) {
    if (tooLong(text))
        return TK_ILLEGAL;
    std::string names = lowerString(strip(text, '('));
    std::replace(names.begin(), names.end(), ',', ':');
    return storeString(names, token);
}

int scanVerb(const char* text) {
    currentVerb = lookupVerbSymbol(text);
    return storeText(text, currentVerb);
}

int scanOption(const char* text) {
    if (tooLong(text))
        return TK_ILLEGAL;
    std::string name;
    const short token = lookupOptionSymbol(currentVerb, text, name);
    return storeString(name, token);
}

int scanTarget(const char* text, short token) {
    target_length += static_cast<int>(std::strlen(text));
    return storeText(text, flex_help ? static_cast<short>(TK_HELP_TERM) : token);
}

int scanPropertyName(const char* text) {
    if (lookupVerbSymbol(text) != TK_UNKNOWN_VERB)
        return TK_ILLEGAL;
    return storeText(text, TK_PROP_NAME);
}

int scanArrayName(const char* text) {
    if (tooLong(text))
        return TK_ILLEGAL;
    return storeString(format_property_array(text), TK_PROP_ARRAY_NAME);
}

int scanValue(const char* text) {
    return lookupReservedSymbol(text) ? TK_ILLEGAL : storeText(text, TK_PROP_VALUE);
}

int scanRange(const char* text) {
    if (tooLong(text))
        return TK_ILLEGAL;
    const auto ret = splitString(strip(text, '('), "-");
    VELCLP_ASSERT(ret.size() == 2, "ret.size()==2");
    const int first = std::stoi(ret[0]); // five digits at most
    const int last = std::stoi(ret[1]);
    if (first > last)
        return TK_BAD_ARG;
    yylval.range[0] = first;
    yylval.range[1] = last;
    return TK_NUMBER_VALUE;
}

int scanUri(const char* text) {
    const std::string uri = std::strlen(text) >= 3 ? strip(text, '"') : text;
    if (tooLong(text))
        return TK_ILLEGAL;
    URIParserInit();
    URIRecord record;
    const bool valid = URIParseString(&record, uri.c_str()) == 0;
    if (valid)
        URIFree(&record);
    URIParserCleanup();
    return valid ? storeString(uri, TK_URI) : TK_BAD_ARG;
}

} // namespace velmora_clp
