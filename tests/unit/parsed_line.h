// One command line as the parser sees it.
#ifndef VELCLP_TESTS_PARSED_LINE_H
#define VELCLP_TESTS_PARSED_LINE_H

#include <string>

#include "velclp/parser.h"
#include "velclp/processingerror.h"
#include "velclp/token.h"

struct ParsedLine {
    explicit ParsedLine(const std::string& line) {
        token._Options.addNode({"option"});
        velmora_clp::ProcessingError pe;
        result = velmora_clp::CLPParser().parse(line, &token, &pe);
        code = pe.getErrorCode();
    }

    // The value of an option; "<present>" for one without a value, "<absent>" for none.
    std::string option(const std::string& path) const {
        std::string value;
        if (!token.hasOption(path))
            return "<absent>";
        return token.getOption(path, value) ? value : "<present>";
    }

    // What the line comes to: 0, or the code of its processing error.
    int outcome() const { return result == 0 ? 0 : code; }

    CLPToken token;
    int result;
    int code;
};

// "name=value name=value", in order.
inline std::string listed(const CLPToken::PropertyList& properties) {
    std::string text;
    for (const auto& property : properties)
        text += (text.empty() ? "" : " ") + property.first + "=" + property.second;
    return text;
}

#endif
