#include "velclp/verbsymbol.h"

#include "language/syntax.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"

namespace {

struct Verb {
    const char* name;
    short token;
};

// In the order in which the verbs are listed.
constexpr Verb VERBS[] = {
    {"cd", TK_CD},           {"create", TK_CREATE}, {"delete", TK_DELETE}, {"exit", TK_EXIT},
    {"help", TK_HELP},       {"dump", TK_DUMP},     {"load", TK_LOAD},     {"reset", TK_RESET},
    {"set", TK_SET},         {"show", TK_SHOW},     {"start", TK_START},   {"stop", TK_STOP},
    {"version", TK_VERSION},
};

} // namespace

short lookupVerbSymbol(const char* ele) {
    VELCLP_TRACE("CLP.lookupVerbSymbol");
    VELCLP_ASSERT(ele != nullptr, "ele!=__null");
    for (const Verb& verb : VERBS)
        if (velmora_clp::strcmp_nocase(verb.name, ele) == 0)
            return verb.token;
    return *ele == '\0' ? TK_OEM_VERB : TK_UNKNOWN_VERB;
}

std::vector<std::string> getSupportedVerbs() {
    VELCLP_TRACE("CLP.getSupportedVerbs");
    std::vector<std::string> names;
    for (const Verb& verb : VERBS)
        names.emplace_back(verb.name);
    return names;
}
