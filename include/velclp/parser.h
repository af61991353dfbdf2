#ifndef VELCLP_PARSER_H
#define VELCLP_PARSER_H

#include <string>
#include <vector>

class CLPToken;

// The completion function that the host program defines; it forwards to CLPCore::parser_help.
// Takes 1 to 3 terms of a target and the word being typed, and gives the words that may stand
// there.
std::vector<std::string> parser_help(const std::vector<std::string>& terms,
                                     const std::string& word);

namespace velmora_clp {

class ProcessingError;

// The command language of DSP0214: turns one line into a CLPToken or a ProcessingError, and tells
// what may come next on an unfinished line. Scanner and grammar are state of the process, so one
// line is parsed at a time, on the session's line thread; each line is parsed as if it were the
// first.
class CLPParser {
public:
    CLPParser() = default;
    CLPParser(const CLPParser&) = delete;
    CLPParser& operator=(const CLPParser&) = delete;
    virtual ~CLPParser() = default;

    // Parses a line into a token, which must be empty but for the root node "option" of its option
    // tree. Gives 0 on success; otherwise pe holds the error and the token what was read before it.
    // A line of the verb help always gives 0. The line must not be empty and the pointers, which
    // stay the caller's, not null, or the process ends.
    int parse(const std::string& line, CLPToken* token, ProcessingError* pe);

    // The words that may stand in place of the last word of a line, for the tab key; empty when
    // there are none. Never reports a failure and never walks the CIM server for a target. For the
    // host's thread, between commands.
    std::vector<std::string> tabContinue(const std::string& line);
};

} // namespace velmora_clp

#endif
