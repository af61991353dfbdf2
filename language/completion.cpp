// Completion: parses what has been typed with the real grammar and looks how far it got. Verbs and
// options are answered here; targets and properties by the engine, through the host.
#include <algorithm>
#include <iterator>

#include <cxxabi.h>

#include "language/parsestate.h"
#include "language/syntax.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"
#include "velclp/optionsymbol.h"
#include "velclp/parser.h"
#include "velclp/token.h"
#include "velclp/verbsymbol.h"

// A host program without a terminal need not define it.
std::vector<std::string> parser_help(const std::vector<std::string>& terms, const std::string& word)
    __attribute__((weak));

using namespace velmora_clp;
using Words = std::vector<std::string>;

namespace {

constexpr std::size_t MAX_TERMS = 3;
const char* const ASSOCIATES = "=>";

bool nothingTyped(const std::string& word) {
    return word.empty() || word == " ";
}

bool beginsWith(const std::string& text, const std::string& beginning) {
    return text.compare(0, beginning.size(), beginning) == 0;
}

void offer(const Words& words, const std::string& beginning) {
    std::copy_if(words.begin(), words.end(), std::back_inserter(*continueTerms),
                 [&](const std::string& word) { return beginsWith(word, beginning); });
}

void offerOptions(const std::string& verb, const std::string& word) {
    const short symbol = lookupVerbSymbol(verb.c_str());
    if (symbol != TK_UNKNOWN_VERB)
        offer(getSupportedOptions(symbol), word);
}

// Leaves the answer to the host's engine; more terms than a target has are no target.
void ask(const Words& terms, const std::string& word) {
    if (parser_help && terms.size() <= MAX_TERMS)
        *continueTerms = parser_help(terms, word);
}

// The target that the line holds so far, as it was typed.
std::string joinedTarget(const CLPToken& token) {
    std::string joined = token._Target;
    for (const std::string* part : {&token._AssocClass, &token._Ref})
        if (!part->empty())
            joined += ASSOCIATES + *part;
    return joined;
}

// Whether the word is the target itself and not a property behind it.
bool isTargetWord(const CLPToken& token, const std::string& word) {
    if (token._Target.empty() && token._AssocClass.empty())
        return true;
    if (word.size() > 2 && word.compare(word.size() - 2, 2, ASSOCIATES) == 0)
        return true;
    return lowerString(word) == lowerString(joinedTarget(token));
}

void offerTargetOrProperty(const CLPToken& token, const std::string& word) {
    if (isTargetWord(token, word))
        ask(splitString(nothingTyped(word) ? "" : word, ASSOCIATES, true), "");
    else
        ask({token._Target, token._AssocClass, token._Ref}, word);
}

// Lends a list of candidates to tab_parser for the length of a scope.
class TermsScope {
public:
    explicit TermsScope(Words* terms) { continueTerms = terms; }
    TermsScope(const TermsScope&) = delete;
    TermsScope& operator=(const TermsScope&) = delete;
    ~TermsScope() { continueTerms = nullptr; }
};

} // namespace

void tab_parser(const std::string& word) {
    VELCLP_TRACE("CLP.CLPParser.tab_parser");
    const std::string& verb = y_token->_Verb;
    const ProcessingError::error code = y_pe->getErrorCode();
    if (verb.empty()) {
        if (nothingTyped(word) && code != ProcessingError::COMMAND_SYNTAX_ERROR)
            offer(getSupportedVerbs(), "");
    } else if (code == ProcessingError::COMMAND_NOT_RECOGNIZED ||
               code == ProcessingError::COMMAND_NOT_SUPPORTED) {
        if (lowerString(word) == verb)
            offer(getSupportedVerbs(), verb);
    } else if (word[0] == '-') {
        offerOptions(verb, word);
    } else {
        offerTargetOrProperty(*y_token, word);
    }
}

namespace velmora_clp {

std::vector<std::string> CLPParser::tabContinue(const std::string& line) {
    const char* const function = "CLP.CLPParser.tabContinue";
    VELCLP_TRACE(function);
    CLPToken token;
    token._Options.addNode({"option"});
    ProcessingError pe;
    Words terms;
    const ParseScope parse(&token, &pe);
    const TermsScope scope(&terms);
    try {
        call_214(line);
        tab_parser(lastWord(line));
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        // A tab press must never cost the session: what cannot be completed has no candidates.
        VELCLP_LOG_FAILURE(function, "unknown error! in clp_parser::tabContinue!");
        terms.clear();
    }
    return terms;
}

} // namespace velmora_clp
