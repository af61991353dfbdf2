// What the engine knows for the tab key: addresses from the address cache alone, association tags
// from the schema, property names from the class of a target.
#include "velclp/core.h"

#include "core/defaulttarget.h"
#include "velclp/addrpath.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/clpsession.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/log.h"
#include "velclp/schema.h"

#include <algorithm>
#include <strings.h>

namespace velmora_clp {

namespace {

using Words = std::vector<std::string>;

const char* const SESSION = "SESSION";
const char* const DIGITS = "0123456789";
const std::string ADMIN = "admin1";

bool beginsWith(const std::string& text, const std::string& beginning) {
    return text.compare(0, beginning.size(), beginning) == 0;
}

bool beginsWithNoCase(const std::string& text, const std::string& beginning) {
    return strncasecmp(text.c_str(), beginning.c_str(), beginning.size()) == 0;
}

void addOnce(Words& words, const std::string& word) {
    if (std::find(words.begin(), words.end(), word) == words.end())
        words.push_back(word);
}

// The object paths that an operation of CLPAddrSVC gave, released at the end.
std::vector<CimPath> owned(const std::vector<CMPIObjectPath*>& paths) {
    return std::vector<CimPath>(paths.begin(), paths.end());
}

std::string sessionAddress(CLPAddrSVC& addrsvc) {
    const CLPSession* session = CLPSession::getInstance();
    return session && session->getObjectPath() ? addrsvc.getUfip(session->getObjectPath()) : "";
}

// Takes a target over as typed: the session's object and the root have addresses of their own.
// False when it is no address.
bool parseTarget(CLPAddrSVC& addrsvc, const std::string& cdt, const std::string& term,
                 CLPAddrpath& address) {
    const std::string text = term == SESSION ? sessionAddress(addrsvc) : term;
    if ((text.empty() && !term.empty()) || !address.setPath(cdt, text))
        return false;
    return address.getResultantAddress() != "/" || address.setPath(cdt, ROOT_TARGET);
}

std::string lastTag(const CLPAddrpath& address) {
    return address.getUfct(address.getTerms().back());
}

// The tags of the associations that objects of a class take part in.
Words associationTags(const std::string& cimclass, const std::string& beginning) {
    const CLPSchema* schema = CLPSchema::getInstance();
    Words tags;
    for (const std::string& assoc : schema->getAssoc(cimclass))
        for (const std::string& ufct : schema->getUfcts(assoc)) {
            const std::string tag = lowerString(ufct);
            if (beginsWith(tag, lowerString(beginning)))
                addOnce(tags, tag);
        }
    return tags;
}

// The objects that the three parts of a finished target stand for.
std::vector<CimPath> targetObjects(CLPAddrSVC& addrsvc, const std::string& cdt,
                                   const Words& terms) {
    CLPAddrpath address(ROOT_TARGET, ROOT_TARGET);
    if (!parseTarget(addrsvc, cdt, terms[0], address))
        return {};
    if (terms[1].empty())
        return owned(addrsvc.getCIMObjectPath(address));
    std::string other;
    if (!terms[2].empty()) {
        CLPAddrpath ref(ROOT_TARGET, ROOT_TARGET);
        if (!parseTarget(addrsvc, cdt, terms[2], ref) || ref.getType() != 0)
            return {};
        other = ref.getResultantAddress();
    }
    if (address.getType() != 0 || CLPSchema::getInstance()->getCIMClass(terms[1]).empty())
        return {};
    return owned(addrsvc.getCIMObjectPath_Assoc(address.getResultantAddress(), terms[1], other));
}

Words propertyNames(CMCIClient* client, CLPAddrSVC& addrsvc, const std::string& cdt,
                    const Words& terms, const std::string& word) {
    const auto objects = targetObjects(addrsvc, cdt, terms);
    if (objects.empty())
        return {};
    Words names;
    for (const std::string& name : CLPMisc::getPropertyNames(client, objects.front().get()))
        if (word == " " || beginsWithNoCase(name, word))
            addOnce(names, name);
    return names;
}

// The user form of a cached term.
std::string realTerm(const std::string& term) {
    const auto digit = std::min(term.find_first_of(DIGITS), term.size());
    const std::string& real = CLPSchema::getInstance()->getRealUfct(term.substr(0, digit));
    return real.empty() ? term : real + term.substr(digit);
}

// Whether the schema declares every class tag of an address; nothing else can be in the cache.
bool isDeclared(const CLPAddrpath& address) {
    const Words terms = address.getTerms();
    return std::none_of(terms.begin(), terms.end(), [&](const std::string& term) {
        return CLPSchema::getInstance()->getCIMClass(address.getUfct(term)).empty();
    });
}

// The terms that the cache knows one level below an address of one object. The object itself is
// looked up as a row only: reading it again from the cache could ask the CIM server for its number.
Words cachedTermsBelow(CLPAddrSVC& addrsvc, const CLPAddrpath& address) {
    CLPAddrpath internal(ROOT_TARGET, ROOT_TARGET);
    addrsvc.internalPath(address, internal);
    if (!isDeclared(internal))
        return {};
    const std::string ufip = internal.getResultantAddress();
    const Words known = addrsvc.selectSubTargets(ufip);
    const CLPAddrpath user("/", addrsvc.normalUfip(ufip));
    if (std::find(known.begin(), known.end(), user.getTerms().back()) == known.end())
        return {};
    return addrsvc.selectSubTargets(ufip + "/");
}

// A target word cut at its last separator; an absolute word in the root has the base "/".
struct TargetWord {
    explicit TargetWord(std::string word) {
        std::replace(word.begin(), word.end(), '\\', '/');
        const auto separator = word.rfind('/');
        if (separator == std::string::npos) {
            last = word;
            return;
        }
        base = separator == 0 ? "/" : word.substr(0, separator);
        last = word.substr(separator + 1);
    }
    std::string base;
    std::string last;
};

} // namespace

std::vector<std::string> CLPCore::tab_target(const std::string& word) {
    VELCLP_TRACE("CLP.CLPCore.tab_target");
    if (!word.empty() && beginsWith(SESSION, word))
        return {SESSION};
    TargetWord target(word);
    if (target.base == "/") {
        if (beginsWith(ADMIN, target.last))
            return {ADMIN};
        target.base = ROOT_TARGET;
    }
    CLPAddrSVC addrsvc(m_client.get());
    CLPAddrpath address("/", "/");
    if (target.base == SESSION || !parseTarget(addrsvc, CDT(), target.base, address) ||
        address.getType() != 0)
        return {};
    Words candidates;
    for (const std::string& row : cachedTermsBelow(addrsvc, address)) {
        const std::string term = realTerm(row);
        if (beginsWith(term, target.last))
            candidates.push_back(term);
    }
    return candidates;
}

std::vector<std::string> CLPCore::parser_help(const std::vector<std::string>& terms,
                                              const std::string& word) {
    VELCLP_TRACE("CLP.CLPCore.parser_help");
    const auto n = terms.size();
    VELCLP_ASSERT(n <= 3 && n >= 1, "n<=3&&n>=1");
    if (word.empty() && n == 1)
        return tab_target(terms[0]);
    CLPAddrSVC addrsvc(m_client.get());
    if (!word.empty()) {
        VELCLP_ASSERT(n == 3, "n==3");
        return propertyNames(m_client.get(), addrsvc, CDT(), terms, word);
    }
    CLPAddrpath address("/", "/");
    if (!parseTarget(addrsvc, CDT(), terms[0], address) || !addrsvc.hasTarget(address))
        return {};
    const CLPSchema* schema = CLPSchema::getInstance();
    const std::string& cimclass = schema->getCIMClass(lastTag(address));
    VELCLP_ASSERT(!cimclass.empty(), "!cimclass.empty()");
    if (n == 3 && address.getType() == 0 && !schema->getCIMClass(terms[1]).empty() &&
        !owned(addrsvc.getCIMObjectPath_Assoc(address.getResultantAddress(), terms[1], "")).empty())
        return tab_target(terms[2]);
    return associationTags(cimclass, terms[1]);
}

} // namespace velmora_clp
