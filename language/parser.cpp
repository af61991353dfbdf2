#include "velclp/parser.h"

#include "language/parsestate.h"
#include "velclp/assertion.h"
#include "velclp/log.h"
#include "velclp/token.h"

namespace velmora_clp {

int CLPParser::parse(const std::string& line, CLPToken* token, ProcessingError* pe) {
    VELCLP_ENTER("CLP.CLPParser.parse");
    VELCLP_ASSERT(!line.empty() && token != nullptr && pe != nullptr,
                  "!line.empty()&&token!=__null&&pe!=__null");
    const ParseScope scope(token, pe);
    int result = call_214(line);
    if (result != 0 && token->_Verb == "help")
        result = 0;
    VELCLP_LEAVE_VALUE("CLP.CLPParser.parse", result);
    return result;
}

} // namespace velmora_clp
