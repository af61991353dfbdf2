// Every verb with every option, and what else the command language refuses, through a whole session
// in the three forms of a response.
#include "tests/support/clp_session.h"
#include "tests/support/simulator_process.h"
#include "velclp/optionsymbol.h"
#include "velclp/verbsymbol.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

namespace {

// Lines with the codes of their errors, 0 for none; "@" stands for what chooses the form.
const std::vector<std::pair<std::string, int>> REFUSALS{
    {"create@", 242},
    {"create@ name=x", 242},
    {"dump@ /admin1", 245},
    {"load@", 245},
    {"delete@ admin", 246},
    {"cd@ system*", 246},
    {"set@ =>log x=y", 246},
    {"version@ -keep 5", 247},
    {"load@ -force", 247},
    {"show@ -level", 248},
    {"show@ -display -all", 248},
    {"show@ -level 0", 250},
    {"show@ -display targets=", 250},
    {"load@ -source nouri", 250},
    {"show@ -q", 251},
    {"exit@ -wait", 251},
    {"show@ -all -a", 252},
    {"show@ /admin1 -all", 252},
    {"set@ a=1 a=2", 252},
    {"show@ -level 2 system*", 252},
    {"help@ sys*", 0},
    {"help@ a.b", 0},
    {"help@ nosuch", 0},
};

// A line with the option in this form, complete with what the verb and the option need; "-help"
// keeps a verb from acting.
std::string completed(const std::string& verb, const std::string& option, const std::string& form) {
    static const std::map<std::string, std::string> arguments{{"-keep", " 5"},
                                                              {"-level", " 2"},
                                                              {"-display", " all"},
                                                              {"-source", " http://h/f"},
                                                              {"-destination", " http://h/f"}};
    const auto argument = arguments.find(option);
    return verb + " -output format=" + form + (option == "-help" ? " " : " -help ") + option +
           (argument == arguments.end() ? "" : argument->second) + (verb == "set" ? " name=x" : "");
}

// The code that follows a response's mark for it; 0 without one.
int errorIn(const std::string& response, const std::string& mark) {
    const std::size_t at = response.find(mark);
    return at == std::string::npos ? 0 : std::atoi(response.c_str() + at + mark.size());
}

class OptionMatrix : public testing::TestWithParam<std::pair<const char*, const char*>> {};

TEST_P(OptionMatrix, IsAnsweredInWhole) {
    const auto [form, mark] = GetParam();
    const std::vector<std::string> options{"-all",    "-destination", "-display", "-examine",
                                           "-force",  "-help",        "-keep",    "-level",
                                           "-source", "-version",     "-wait"};
    std::vector<std::pair<std::string, int>> lines; // with the code of its error
    for (const std::string& verb : getSupportedVerbs()) {
        for (const std::string& option : options) {
            std::string name;
            const short token =
                lookupOptionSymbol(lookupVerbSymbol(verb.c_str()), option.c_str(), name);
            // Help never refuses a line.
            const int code = verb == "help" ? 0 : token == 295 ? 251 : token == 296 ? 247 : 0;
            lines.emplace_back(completed(verb, option, form), code);
        }
    }
    for (auto [line, code] : REFUSALS) {
        line.replace(line.find('@'), 1, std::string(" -output format=") + form);
        lines.emplace_back(line, code);
    }
    std::string input;
    for (const auto& line : lines)
        input += line.first + "\nversion -output format=keyword\n";
    const RunDirectory directory;
    const SimulatorProcess simulator(directory);
    std::string rest = runSession(directory, simulator.port(), input).output;
    const std::string nextLine = "commandline=version -output format=keyword\r\n";
    const std::string nextEnd = "endoutput\r\n";
    for (const auto& [line, code] : lines) {
        const std::size_t end = rest.find(nextLine);
        ASSERT_NE(end, std::string::npos) << line;
        const std::string response = rest.substr(0, end);
        rest.erase(0, rest.find(nextEnd, end) + nextEnd.size());
        EXPECT_NE(response, "") << line;
        EXPECT_EQ(errorIn(response, mark), code) << line << "\n" << response;
    }
}

INSTANTIATE_TEST_SUITE_P(InEveryForm, OptionMatrix,
                         testing::Values(std::make_pair("text", "error        : "),
                                         std::make_pair("keyword", "\r\nerror="),
                                         std::make_pair("clpxml", "<error>")),
                         [](const auto& test) { return test.param.first; });

} // namespace
