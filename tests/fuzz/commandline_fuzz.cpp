// Any bytes as a command line: it ends in a parsed command or in one processing error of the
// language, the tab key gives an answer, and the next line is parsed as if it were the first.
#include "tests/fuzz/require.h"
#include "velclp/parser.h"
#include "velclp/processingerror.h"
#include "velclp/token.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string>

// A line feed in a line goes to the scanner's output stream.
void yyset_out(std::FILE* out);

namespace {

using velmora_clp::ProcessingError;

struct Parsed {
    explicit Parsed(const std::string& line) {
        token._Options.addNode({"option"});
        result = velmora_clp::CLPParser().parse(line, &token, &error);
    }
    CLPToken token;
    ProcessingError error;
    int result;
};

bool isLanguageError(ProcessingError::error code) {
    switch (code) {
    case ProcessingError::MISSING_REQUIRED_TARGET:
    case ProcessingError::REQUIRED_OPTION_MISSING:
    case ProcessingError::INVALID_TARGET:
    case ProcessingError::OPTION_NOT_SUPPORTED:
    case ProcessingError::MISSING_ARGUMENT:
    case ProcessingError::INVALID_ARGUMENT:
    case ProcessingError::INVALID_OPTION:
    case ProcessingError::COMMAND_SYNTAX_ERROR:
    case ProcessingError::COMMAND_NOT_RECOGNIZED:
        return true;
    default:
        return false;
    }
}

void checkProperties(const CLPToken& token) {
    for (const auto type : {CLPToken::ASSIGN_PROPERTY, CLPToken::FILTER_PROPERTY})
        for (const std::string& name : token.getPropertyNames(type)) {
            std::string value;
            require(!name.empty() && token.getProperty(name, value, type));
        }
    const auto names = token.getPropertyNames(CLPToken::PROPERTY_NAME);
    require(
        std::none_of(names.begin(), names.end(), [](const auto& name) { return name.empty(); }));
}

void check(const Parsed& parsed, const std::string& line) {
    require(parsed.token._CommandLine == line);
    checkProperties(parsed.token);
    if (parsed.result != 0)
        require(isLanguageError(parsed.error.getErrorCode()));
    else
        require(parsed.token._Verb == "help" ||
                (!parsed.token._Verb.empty() &&
                 parsed.error.getErrorCode() == ProcessingError::COMMAND_ERROR_UNSPECIFIED));
    for (const std::string& option : parsed.token.getOptionNames())
        require(parsed.token.hasOption(option));
}

void checkNextLine() {
    const std::string line = "show -output begin,count=5,terse /admin1 n==v";
    const Parsed next(line);
    std::string count;
    require(next.result == 0 && next.token._Target == "/admin1" &&
            next.token.getOption("-output:count", count) && count == "5" &&
            next.token._FilterProperties == CLPToken::PropertyList{{"n", "v"}});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::FILE* const nowhere = std::fopen("/dev/null", "w");
    yyset_out(nowhere);
    if (size == 0)
        return 0;
    const std::string line(reinterpret_cast<const char*>(data), size);
    check(Parsed(line), line);
    checkNextLine();
    velmora_clp::CLPParser().tabContinue(line);
    checkNextLine();
    return 0;
}
