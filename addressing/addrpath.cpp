#include "velclp/addrpath.h"

#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"

#include <algorithm>
#include <cctype>

namespace velmora_clp {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isTerm(const std::string& term, bool last) {
    if (term.empty() || std::isalpha(static_cast<unsigned char>(term.front())) == 0)
        return false;
    return isDigit(term.back()) || (last && term.back() == '*');
}

// The way up ends at /admin1, and at the root for what does not begin there.
void climb(std::vector<std::string>& terms) {
    if (!terms.empty() && !(terms.size() == 1 && terms.front() == "admin1"))
        terms.pop_back();
}

// The words of an address with "." and ".." worked off; false for a word that is no term.
bool walk(const std::vector<std::string>& words, std::vector<std::string>& terms) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == ".")
            continue;
        if (word == "..")
            climb(terms);
        else if (isTerm(word, i + 1 == words.size()))
            terms.push_back(word);
        else
            return false;
    }
    return true;
}

// Where a term is cut: the position of its tag's last character, and whether a "*" was passed.
struct Cut {
    std::size_t tagEnd;
    bool wildcard;
};

Cut cutTerm(const std::string& addrTerm) {
    VELCLP_ASSERT(!addrTerm.empty(), "!addrTerm.empty()");
    const char first = addrTerm.front();
    const char last = addrTerm.back();
    VELCLP_ASSERT(last == '*' || isDigit(last),
                  "addrTerm[addrTerm.length()-1]=='*'|| (addrTerm[addrTerm.length()-1]>='0'&&"
                  "addrTerm[addrTerm.length()-1]<='9')");
    VELCLP_ASSERT(first != '*' && !isDigit(first),
                  "addrTerm[0]!='*'&&(addrTerm[0]>'9'||addrTerm[0]<'0')");
    std::size_t n = addrTerm.size() - 1;
    while (n > 0 && isDigit(addrTerm[n]))
        --n;
    const bool wildcard = n > 0 && addrTerm[n] == '*';
    if (wildcard)
        --n;
    VELCLP_ASSERT(n != addrTerm.length() - 1, "n!=addrTerm.length()-1&&n>=0");
    return {n, wildcard};
}

} // namespace

CLPAddrpath::CLPAddrpath(const std::string& cdt, const std::string& address) : path("/") {
    VELCLP_ASSERT(!cdt.empty() && address != "SESSION", "!cdt.empty()&&path!=\"SESSION\"");
    const bool flag = setPath(cdt, address);
    VELCLP_ASSERT(flag, "flag");
}

bool CLPAddrpath::setPath(const std::string& cdt, const std::string& address) {
    VELCLP_ASSERT(!cdt.empty() && address != "SESSION", "!cdt.empty()&&path!=\"SESSION\"");
    const char* const function = "CLP.CLPAddrpath.setPath";
    VELCLP_TRACE(function);
    path = "/";
    type = 0;
    if (address.empty()) {
        path = cdt;
        return true;
    }
    std::string text = address;
    std::replace(text.begin(), text.end(), '\\', '/');
    std::vector<std::string> words;
    if (text.front() != '/')
        words = splitString(cdt, "/");
    const std::vector<std::string> typed = splitString(text, "/");
    words.insert(words.end(), typed.begin(), typed.end());

    std::vector<std::string> terms;
    if (!walk(words, terms)) {
        VELCLP_LOG_BRANCH(function, "no address=[%s]", address.c_str());
        return false;
    }
    for (const std::string& term : terms) {
        VELCLP_ASSERT(!term.empty(), "!r->empty()");
        if (path.size() > 1)
            path += '/';
        path += term;
    }
    if (!terms.empty() && terms.back().back() == '*')
        type = 1;
    return true;
}

std::string CLPAddrpath::getResultantTarget() const {
    return path != "/" && type != 0 ? path.substr(0, path.rfind('/')) : path;
}

std::vector<std::string> CLPAddrpath::getTerms() const {
    return splitString(path, "/");
}

std::string CLPAddrpath::getUfct(const std::string& addrTerm) const {
    return addrTerm.substr(0, cutTerm(addrTerm).tagEnd + 1);
}

std::string CLPAddrpath::getUfis(const std::string& addrTerm) const {
    const Cut cut = cutTerm(addrTerm);
    return cut.wildcard ? "*" : addrTerm.substr(cut.tagEnd + 1);
}

} // namespace velmora_clp
