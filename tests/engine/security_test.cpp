// What a login must not reach: verbs beyond its privilege, and files, statements, markup, the log
// or the terminal by way of a line or of a value that the CIM server sends.
#include "tests/engine/command_session.h"
#include "tests/support/child_process.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>
#include <unistd.h>

namespace {

class Security : public testing::Test {
protected:
    CommandSession session(const std::string& privileges) const {
        SessionOptions options;
        options.privileges = privileges;
        return CommandSession(m_directory, m_simulator.port(), options);
    }

    // The changes that were asked of the CIM server, but for the session's own records.
    std::string changes() const {
        std::istringstream log(m_simulator.get("/sim/log"));
        std::string all;
        for (std::string line; std::getline(log, line);) {
            const bool reads = line.rfind("Get", 0) == 0 || line.rfind("Enumerate", 0) == 0 ||
                               line.rfind("Associator", 0) == 0 || line.rfind("Reference", 0) == 0;
            if (!reads && line.find("ZORM_CLPProtocolEndpoint") == std::string::npos &&
                line.find("ZORM_CLPConcreteJob") == std::string::npos)
                all += line + "\n";
        }
        return all;
    }

    RunDirectory m_directory;
    SimulatorProcess m_simulator{m_directory};
};

const std::vector<std::string> OPTIONS = {
    "", "-x ", "-f ", "-h ", "-k 5 ", "-o format=keyword ", "-o format=clpxml ", "-o verbose -x "};

// Lines of a verb that the grammar takes, with the option or without it.
std::vector<std::string> formsOf(const std::string& verb, const std::string& option) {
    const std::string head = verb + " " + option;
    if (verb == "set")
        return {head + "/admin1/system1 elementname=x", head + "elementname=x",
                head + "/admin1/system1=>systemsp=>/admin1/system1/sp1 elementname=x",
                head + "SESSION keeptime=5"};
    if (verb == "create")
        return {head + "/admin1/system1/sp1/user* name=eve",
                head + "/admin1/system1/sp1/user9 a=b"};
    if (verb == "load")
        return {head + "-source http://127.0.0.1/x /admin1/system1/sp1"};
    if (verb == "dump")
        return {head + "-destination http://127.0.0.1/x /admin1/system1/sp1"};
    if (verb == "show")
        return {head + "/admin1/system1", head + "/admin1/system1=>systemsp"};
    if (verb == "help" || verb == "version")
        return {head};
    return {head + "/admin1/system1/sp1/user1", head};
}

bool denied(const std::string& answer) {
    return answer.find("MISSING REQUIRED CLP PRIVILEGE") != std::string::npos;
}

TEST_F(Security, ALoginWithoutPrivilegesMayNothingAndAReaderMayOnlyRead) {
    const std::set<std::string> reading = {"cd", "help", "show", "version"};
    for (const std::string privileges : {"0", "1", "65536", "65537", "abc"}) {
        m_simulator.post("/sim/log", "");
        CommandSession operatorSession = session(privileges);
        const bool reader = privileges == "1" || privileges == "65537";
        for (const std::string verb : {"cd", "create", "delete", "dump", "help", "load", "reset",
                                       "set", "show", "start", "stop", "version"}) {
            const bool allowed = reader && reading.count(verb) != 0;
            for (const std::string& option : OPTIONS)
                for (const std::string& line : formsOf(verb, option)) {
                    const std::string answer = operatorSession.answer(line);
                    // Where an option is not the verb's, the line fails before privileges count.
                    const bool refused =
                        answer.find("COMMAND PROCESSING FAILED") != std::string::npos;
                    EXPECT_TRUE(allowed ? !denied(answer) : refused) << line << "\n" << answer;
                    if (!allowed && option.empty()) {
                        EXPECT_TRUE(denied(answer)) << line << "\n" << answer;
                    }
                }
        }
        EXPECT_EQ("", changes()) << privileges;
    }
}

TEST_F(Security, NothingThatIsTypedReachesTheDatabasesAsAStatement) {
    CommandSession console = session("511");
    console.answer("show -level all /admin1");
    const std::string rows = "SELECT ufip,cimclass,id FROM addrsvc_clp ORDER BY id";
    const std::string before = m_directory.query("clp.db3", rows);
    for (const char* line : {
             "show /admin1/x'OR'1'='1",
             "show /admin1/system1';DROP-TABLE-addrsvc_clp;--1",
             "show /admin1/system1'/**/OR/**/1=1--1",
             "show /admin1/sys%1",
             "show /admin1/system_1",
             "cd /admin1/'||ufip||'1",
             "show x'=>y'=>z'1",
             "create /admin1/system1/sp1/user* name=\"x');DELETE FROM addrsvc_clp;--\"",
             "show -display properties=(name=='x') /admin1/system1",
             "show -o count='1 /admin1",
             "help '; DROP TABLE addrsvc_clp; --",
             "set SESSION keeptime=\"1';DROP TABLE CLPSession;--\"",
         })
        EXPECT_NE("", console.answer(line)) << line;
    EXPECT_EQ(before, m_directory.query("clp.db3", rows));
    EXPECT_EQ("1\n", m_directory.query("clpsvc.db3", "SELECT count(*) FROM CLPSession"));
    EXPECT_EQ("/admin1\r\n", console.answer("cd"));
}

TEST_F(Security, NothingThatTheServerSendsReachesTheTerminalAsAControl) {
    CommandSession console = session("511");
    const std::string user = "/admin1/system1/sp1/user2";
    console.answer("show " + user);
    const std::string poison = "a\x1b[2J\x1b]0;owned\x07\x9b"
                               "31m\x08\x7f</name>&\"z";
    std::string escaped;
    for (const char c : poison)
        if (static_cast<unsigned char>(c) < 128)
            escaped += "&#" + std::to_string(static_cast<int>(c)) + ";";
    m_simulator.post("/sim/faults",
                     "operation=GetInstance class=ZORM_Account kind=reply count=always\n"
                     "<?xml version=\"1.1\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE "
                     "ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE "
                     "NAME=\"GetInstance\"><IRETURNVALUE><INSTANCE CLASSNAME=\"ZORM_Account\">"
                     "<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>" +
                         escaped +
                         "</VALUE></PROPERTY></INSTANCE></IRETURNVALUE></IMETHODRESPONSE>"
                         "</SIMPLERSP></MESSAGE></CIM>");
    for (const char* form : {"text", "keyword", "clpxml"}) {
        const std::string answer =
            console.answer("show -display properties -o format=" + std::string(form) + " " + user);
        const auto harmful = [](char c) {
            const unsigned char byte = static_cast<unsigned char>(c);
            return (byte < 32 && c != '\r' && c != '\n' && c != '\t') || byte == 127;
        };
        EXPECT_EQ(answer.end(), std::find_if(answer.begin(), answer.end(), harmful)) << answer;
    }
}

TEST_F(Security, FilesThatALineNamesAreNotOpened) {
    CommandSession console = session("511");
    m_directory.write("secret", "the secret of the directory");
    const std::vector<std::string> lines = {
        "help " + m_directory.file("secret"), "help ../secret", "show file:" + m_directory.path(),
        "dump -destination file://" + m_directory.file("dumped") + " /admin1/system1/sp1"};
    for (const std::string& line : lines)
        EXPECT_EQ(std::string::npos, console.answer(line).find("the secret")) << line;
    EXPECT_NE(0, access(m_directory.file("dumped").c_str(), F_OK));
}

TEST(SecurityOfPrograms, NoLibraryIsLoadedFromTheDirectoryThatTheyAreStartedIn) {
    const RunDirectory directory;
    for (const char* library :
         {"libvelclp.so.1", "libvelclp_platform.so.1", "libvelclp_cimclient.so.1", "libc.so.6",
          "libstdc++.so.6", "libsqlite3.so.0", "libcurl.so.4", "libpugixml.so.1"})
        directory.write(library, "planted");
    for (const char* program : {VELCLP_HOST_PROGRAM, VELCLP_SIMULATOR_PROGRAM}) {
        ChildProcess child(
            {"/bin/sh", "-c", "cd \"$0\" && exec \"$1\" --help", directory.path(), program});
        child.closeInput();
        EXPECT_EQ(0, child.wait()) << child.errors();
    }
}

} // namespace
