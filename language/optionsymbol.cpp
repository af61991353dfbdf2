#include "velclp/optionsymbol.h"

#include <algorithm>
#include <iterator>

#include "language/syntax.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"

namespace {

struct Option {
    const char* names; // long name, then the short one if there is any
    short token;
};

constexpr Option OPTIONS[] = {
    {"-all:-a", TK_OPT_ALL},         {"-destination", TK_OPT_DESTINATION},
    {"-display:-d", TK_OPT_DISPLAY}, {"-examine:-x", TK_OPT_EXAMINE},
    {"-force:-f", TK_OPT_FORCE},     {"-help:-h", TK_OPT_HELP},
    {"-keep:-k", TK_OPT_KEEP},       {"-level:-l", TK_OPT_LEVEL},
    {"-output:-o", TK_OPT_OUTPUT},   {"-source:-s", TK_OPT_SOURCE},
    {"-version:-v", TK_OPT_VERSION}, {"-wait:-w", TK_OPT_WAIT},
};

// The rows of the two matrices below.
constexpr short verbs[] = {TK_CD,    TK_CREATE, TK_DELETE, TK_DUMP,  TK_EXIT, TK_HELP,   TK_LOAD,
                           TK_RESET, TK_SET,    TK_SHOW,   TK_START, TK_STOP, TK_VERSION};
constexpr int VERB_COUNT = static_cast<int>(std::size(verbs));

constexpr short END = TK_OPT_INVALID;
constexpr short COMMON_WAIT[] = {TK_OPT_EXAMINE, TK_OPT_HELP, TK_OPT_KEEP, TK_OPT_OUTPUT,
                                 TK_OPT_VERSION, TK_OPT_WAIT, END};
constexpr short COMMON_FORCE_WAIT[] = {TK_OPT_EXAMINE, TK_OPT_FORCE,   TK_OPT_HELP, TK_OPT_KEEP,
                                       TK_OPT_OUTPUT,  TK_OPT_VERSION, TK_OPT_WAIT, END};
constexpr short OF_CREATE[] = {TK_OPT_EXAMINE, TK_OPT_SOURCE,  TK_OPT_HELP, TK_OPT_KEEP,
                               TK_OPT_OUTPUT,  TK_OPT_VERSION, TK_OPT_WAIT, END};
constexpr short OF_DUMP[] = {TK_OPT_DESTINATION, TK_OPT_EXAMINE, TK_OPT_FORCE,
                             TK_OPT_HELP,        TK_OPT_KEEP,    TK_OPT_OUTPUT,
                             TK_OPT_VERSION,     TK_OPT_WAIT,    END};
constexpr short OF_EXIT[] = {TK_OPT_EXAMINE, TK_OPT_HELP,    TK_OPT_KEEP,
                             TK_OPT_OUTPUT,  TK_OPT_VERSION, END};
constexpr short OF_LOAD[] = {TK_OPT_EXAMINE, TK_OPT_FORCE,  TK_OPT_HELP,
                             TK_OPT_KEEP,    TK_OPT_OUTPUT, TK_OPT_SOURCE,
                             TK_OPT_VERSION, TK_OPT_WAIT,   END};
constexpr short OF_SHOW[] = {
    TK_OPT_ALL,   TK_OPT_DISPLAY, TK_OPT_EXAMINE, TK_OPT_FORCE, TK_OPT_HELP, TK_OPT_KEEP,
    TK_OPT_LEVEL, TK_OPT_OUTPUT,  TK_OPT_VERSION, TK_OPT_WAIT,  END};

// What each verb may take, in the order in which it is listed.
constexpr const short* legal_verb_options[] = {
    COMMON_WAIT,       OF_CREATE,         COMMON_FORCE_WAIT, OF_DUMP,           OF_EXIT,
    COMMON_WAIT,       OF_LOAD,           COMMON_FORCE_WAIT, COMMON_FORCE_WAIT, OF_SHOW,
    COMMON_FORCE_WAIT, COMMON_FORCE_WAIT, COMMON_WAIT,
};

constexpr short NONE[] = {END};
constexpr short KEEP[] = {TK_OPT_KEEP, END};
constexpr short KEEP_WAIT[] = {TK_OPT_KEEP, TK_OPT_WAIT, END};
constexpr short FORCE_KEEP_WAIT[] = {TK_OPT_FORCE, TK_OPT_KEEP, TK_OPT_WAIT, END};

// What of this is refused as not implemented.
constexpr const short* unsupported_verb_options[] = {
    NONE, NONE, NONE, FORCE_KEEP_WAIT, KEEP, KEEP_WAIT, FORCE_KEEP_WAIT, NONE, KEEP, NONE,
    NONE, NONE, KEEP,
};

bool contains(const short* list, short token) {
    while (*list != END && *list != token)
        ++list;
    return *list == token;
}

int verbIndex(short verb) {
    const int vindex = static_cast<int>(std::find(verbs, verbs + VERB_COUNT, verb) - verbs);
    VELCLP_ASSERT(vindex != VERB_COUNT, "vindex!=sizeof(verbs)/sizeof(short)");
    VELCLP_ASSERT(vindex < static_cast<int>(std::size(legal_verb_options)),
                  "vindex<static_cast<int>(sizeof(legal_verb_options)/sizeof(short *))");
    return vindex;
}

std::vector<std::string> namesOf(const Option& option) {
    auto tmp = velmora_clp::splitString(option.names, ":");
    VELCLP_ASSERT(!tmp.empty(), "!tmp.empty()");
    return tmp;
}

bool isNamed(const std::vector<std::string>& names, const char* word) {
    return std::any_of(names.begin(), names.end(), [word](const std::string& name) {
        return velmora_clp::strcmp_nocase(name.c_str(), word) == 0;
    });
}

} // namespace

short lookupOptionSymbol(short verb, const char* option, std::string& name) {
    VELCLP_TRACE("CLP.lookupOptionSymbol");
    VELCLP_ASSERT(option != nullptr, "option!=__null");
    short token = TK_OPT_INVALID;
    for (const Option& row : OPTIONS) {
        const auto names = namesOf(row);
        if (isNamed(names, option)) {
            name = names.front();
            token = row.token;
        }
    }
    if (token == TK_OPT_INVALID)
        return TK_OPT_INVALID;
    const int vindex = verbIndex(verb);
    if (!contains(legal_verb_options[vindex], token))
        return TK_OPT_INVALID;
    return contains(unsupported_verb_options[vindex], token) ? short{TK_OPT_UNSUPPORTED} : token;
}

std::vector<std::string> getSupportedOptions(short verb) {
    VELCLP_TRACE("CLP.getSupportedOptions");
    const int vindex = verbIndex(verb);
    std::vector<std::string> result;
    for (const short* token = legal_verb_options[vindex]; *token != END; ++token) {
        if (contains(unsupported_verb_options[vindex], *token))
            continue;
        for (const Option& row : OPTIONS)
            if (row.token == *token)
                result.push_back(namesOf(row).front());
    }
    return result;
}
