// Every line that the command language refuses, through a whole session, in the three forms of a
// response.
#include "tests/support/clp_session.h"
#include "tests/support/simulator_process.h"
#include "velclp/optionsymbol.h"
#include "velclp/verbsymbol.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

namespace {

struct Refusal {
    std::string line; // "@" stands for what chooses the form
    int code;
    std::string tag;
};

const std::vector<Refusal> REFUSALS{
    {"create@", 242, "MISSING REQUIRED TARGET"},
    {"create@ name=x", 242, "MISSING REQUIRED TARGET"},
    {"dump@ /admin1", 245, "REQUIRED OPTION MISSING"},
    {"load@", 245, "REQUIRED OPTION MISSING"},
    {"delete@ admin", 246, "INVALID TARGET"},
    {"cd@ system*", 246, "INVALID TARGET"},
    {"set@ =>log x=y", 246, "INVALID TARGET"},
    {"version@ -keep 5", 247, "OPTION NOT SUPPORTED"},
    {"load@ -force", 247, "OPTION NOT SUPPORTED"},
    {"show@ -level", 248, "MISSING ARGUMENT"},
    {"show@ -display -all", 248, "MISSING ARGUMENT"},
    {"show@ -level 0", 250, "INVALID ARGUMENT"},
    {"show@ -display targets=", 250, "INVALID ARGUMENT"},
    {"load@ -source nouri", 250, "INVALID ARGUMENT"},
    {"show@ -q", 251, "INVALID OPTION"},
    {"exit@ -wait", 251, "INVALID OPTION"},
    {"show@ -all -a", 252, "COMMAND SYNTAX ERROR"},
    {"show@ /admin1 -all", 252, "COMMAND SYNTAX ERROR"},
    {"set@ a=1 a=2", 252, "COMMAND SYNTAX ERROR"},
    {"show@ -level 2 system*", 252, "COMMAND SYNTAX ERROR"},
};

std::string inForm(const Refusal& refusal, const std::string& option) {
    std::string line = refusal.line;
    return line.replace(line.find('@'), 1, option);
}

std::string textResponse(const Refusal& refusal, const std::string&) {
    return "cmdstat\r\n"
           "\tstatus       : 2\r\n"
           "\tstatus_tag   : COMMAND PROCESSING FAILED\r\n"
           "\terror        : " +
           std::to_string(refusal.code) +
           "\r\n"
           "\terror_tag    : " +
           refusal.tag + "\r\n";
}

std::string keywordResponse(const Refusal& refusal, const std::string& line) {
    return "commandline=" + line +
           "\r\n"
           "status=2\r\n"
           "status_tag=COMMAND PROCESSING FAILED\r\n"
           "error=" +
           std::to_string(refusal.code) + "\r\nerror_tag=" + refusal.tag + "\r\nendoutput\r\n";
}

std::string xmlResponse(const Refusal& refusal, const std::string& line) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
           "<response xmlns=\"http://schemas.dmtf.org/smash/commandresponse/1.0.0/dsp0224.xsd\" \n"
           "           xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" \n"
           "           xsi:schemaLocation=\"http://schemas.dmtf.org/smash/commandresponse/1.0.0/"
           "dsp0224.xsd smclp_command_response.xsd\">"
           "<command><inputline>" +
           line +
           "</inputline></command>"
           "<cmdstat><status>2</status><status_tag>COMMAND PROCESSING FAILED</status_tag>"
           "<error>" +
           std::to_string(refusal.code) + "</error><error_tag>" + refusal.tag +
           "</error_tag></cmdstat></response>\r\n";
}

class LanguageErrors : public testing::Test {
protected:
    std::string answer(const std::string& input, const std::string& privileges = "511") {
        SessionOptions options;
        options.privileges = privileges;
        const SessionResult result = runSession(directory, simulator.port(), input, options);
        EXPECT_EQ(result.status, 0) << result.errors;
        return result.output;
    }

    // Every document of the output is well-formed.
    void expectWellFormed(const std::string& output) {
        std::string files;
        std::size_t begin = output.find("<?xml");
        for (int i = 0; begin != std::string::npos; ++i) {
            const std::size_t end = output.find("<?xml", begin + 1);
            const std::string name = "response" + std::to_string(i) + ".xml";
            std::string document = output.substr(begin, end - begin);
            document.erase(document.find("</response>") + std::string("</response>").size());
            directory.write(name, document);
            files += " " + directory.file(name);
            begin = end;
        }
        ASSERT_NE(files, "");
        EXPECT_EQ(std::system(("xmllint --nonet --noout" + files).c_str()), 0);
    }

    // A session of all refusals in one form gives these responses, and nothing between them.
    template<typename Response>
    std::string expectResponses(const std::string& option, Response response) {
        std::string input;
        std::string expected;
        for (const Refusal& refusal : REFUSALS) {
            const std::string line = inForm(refusal, option);
            input += line + "\n";
            expected += response(refusal, line);
        }
        const std::string output = answer(input + "exit\n");
        EXPECT_EQ(output, expected + "CLP Session terminated\n");
        return output;
    }

    RunDirectory directory;
    SimulatorProcess simulator{directory};
};

TEST_F(LanguageErrors, AreAnsweredInText) {
    expectResponses("", textResponse);
    expectResponses(" -output format=text,verbose", textResponse);
}

TEST_F(LanguageErrors, AreAnsweredInKeywords) {
    expectResponses(" -output format=keyword", keywordResponse);
}

TEST_F(LanguageErrors, AreAnsweredInXml) {
    expectWellFormed(expectResponses(" -output format=clpxml", xmlResponse));
}

TEST_F(LanguageErrors, OfAnUnknownVerbFollowTheFormOfTheSession) {
    const Refusal unknown{"foo -output format=text", 253, "COMMAND NOT RECOGNIZED"};
    const std::string output = answer("foo -output format=text\n"
                                      "set -output terse SESSION outputformat=4\n"
                                      "foo -output format=text\n"
                                      "set -output terse SESSION outputformat=5\n"
                                      "foo -output format=text\n");
    EXPECT_EQ(output.find(textResponse(unknown, unknown.line)), 0u) << output;
    EXPECT_NE(output.find(keywordResponse(unknown, unknown.line)), std::string::npos) << output;
    EXPECT_NE(output.find(xmlResponse(unknown, unknown.line)), std::string::npos) << output;
    expectWellFormed(output);
}

TEST_F(LanguageErrors, IncludeAVerbThatTheLoginMayNotUse) {
    const Refusal denied{"", 255, "MISSING REQUIRED CLP PRIVILEGE"};
    std::string expected;
    std::string input;
    const auto add = [&](const std::string& line, const std::string& response) {
        input += line + "\n";
        expected += response;
    };
    std::string line = "delete /admin1/system1";
    add(line, textResponse(denied, line));
    line = "set -o format=keyword -help /admin1 name=x";
    add(line, keywordResponse(denied, line));
    line = "stop -o format=clpxml -examine";
    add(line, xmlResponse(denied, line));
    EXPECT_EQ(answer(input, "1"), expected + "CLP Session terminated\n");
}

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

class OptionMatrix : public LanguageErrors,
                     public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(OptionMatrix, IsAnsweredInWhole) {
    const auto [form, mark] = GetParam();
    const std::vector<std::string> options{"-all",    "-destination", "-display", "-examine",
                                           "-force",  "-help",        "-keep",    "-level",
                                           "-source", "-version",     "-wait"};
    std::vector<std::pair<std::string, int>> lines; // with the code of its error
    std::string input;
    for (const std::string& verb : getSupportedVerbs()) {
        for (const std::string& option : options) {
            std::string name;
            const short token =
                lookupOptionSymbol(lookupVerbSymbol(verb.c_str()), option.c_str(), name);
            // Help never refuses a line.
            const int code = verb == "help" ? 0 : token == 295 ? 251 : token == 296 ? 247 : 0;
            lines.emplace_back(completed(verb, option, form), code);
            input += lines.back().first + "\nversion -output format=keyword\n";
        }
    }
    std::string rest = answer(input);
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
                                         std::make_pair("clpxml", "<error>")));

} // namespace
