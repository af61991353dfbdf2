// The simulator as a process: its command line, its port, its connections and how it ends.
#include "tests/support/child_process.h"
#include "tests/support/connection.h"
#include "tests/support/run_directory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <memory>

namespace {

constexpr const char* model = "class T { [Key] string Name; uint16 Number; };\n"
                              "instance of T { Name = \"one\"; Number = 3; };\n";

std::string http(const std::string& method, const std::string& target, const std::string& body,
                 const std::string& headers = "") {
    return method + " " + target + " HTTP/1.1\r\nHost: x\r\n" + headers +
           "Content-Type: application/xml\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
}

std::string getInstance() {
    return http(
        "POST", "/cimom",
        "<?xml version=\"1.0\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
        "PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"GetInstance\">"
        "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"zorm\"/>"
        "</LOCALNAMESPACEPATH><IPARAMVALUE NAME=\"InstanceName\"><INSTANCENAME "
        "CLASSNAME=\"T\"><KEYBINDING NAME=\"Name\"><KEYVALUE>one</KEYVALUE></KEYBINDING>"
        "</INSTANCENAME></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>",
        "CIMOperation: MethodCall\r\nCIMMethod: GetInstance\r\n");
}

class SimulatorServer : public testing::Test {
protected:
    SimulatorServer() { m_folder.write("t.mof", model); }

    std::string file() const { return m_folder.file("t.mof"); }

    void start(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(),
                         {VELCLP_SIMULATOR_PROGRAM, "--port", "0", "--model", file()});
        m_process = std::make_unique<ChildProcess>(arguments);
        ASSERT_TRUE(m_process->waitForOutput("\n")) << m_process->errors();
        const std::string greeting = "listening on 127.0.0.1:";
        ASSERT_EQ(m_process->output().substr(0, greeting.size()), greeting);
        m_port = m_process->output().substr(greeting.size());
        m_port.erase(m_port.find('\n'));
    }

    std::string control(const std::string& method, const std::string& target,
                        const std::string& body = "") const {
        const Connection client(m_port);
        client.send(http(method, target, body, "Connection: close\r\n"));
        const std::string reply = client.receive("");
        const auto head = reply.find("\r\n\r\n");
        return reply.substr(9, 3) + " " + (head == std::string::npos ? "" : reply.substr(head + 4));
    }

    /// Status and error text of a start that must fail.
    static std::string failure(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), VELCLP_SIMULATOR_PROGRAM);
        ChildProcess process(arguments);
        const int status = process.wait();
        return std::to_string(status) + " " + process.errors();
    }

    RunDirectory m_folder;
    std::unique_ptr<ChildProcess> m_process;
    std::string m_port;
};

TEST_F(SimulatorServer, AnswersManyRequestsOnOneConnectionAndEndsCleanlyOnASignal) {
    for (const int signal : {SIGTERM, SIGINT}) {
        start();
        const Connection client(m_port);
        for (int i = 0; i < 300; ++i) {
            client.send(getInstance());
            const std::string reply = client.receive("</CIM>\n");
            ASSERT_EQ(reply.substr(0, 15), "HTTP/1.1 200 OK");
            ASSERT_NE(reply.find("\r\nCIMOperation: MethodResponse\r\n"), std::string::npos);
            ASSERT_NE(reply.find("<VALUE>3</VALUE>"), std::string::npos);
        }
        m_process->signal(signal);
        EXPECT_EQ(m_process->wait(), 0);
        EXPECT_EQ(m_process->errors(), "");
    }
}

TEST_F(SimulatorServer, HoldsHundredsOfKeptConnectionsWithoutStarvingOne) {
    start();
    std::vector<std::unique_ptr<Connection>> clients;
    for (int i = 0; i < 200; ++i) {
        clients.push_back(std::make_unique<Connection>(m_port));
    }
    for (int round = 0; round < 2; ++round) {
        for (const auto& client : clients) {
            client->send(getInstance());
            ASSERT_NE(client->receive("</CIM>\n").find("<VALUE>3</VALUE>"), std::string::npos);
        }
    }
    m_process->signal(SIGTERM);
    EXPECT_EQ(m_process->wait(), 0);
}

TEST_F(SimulatorServer, DropsAndCutsRepliesOnTheWire) {
    start();
    EXPECT_EQ(control("POST", "/sim/faults", "kind=drop\nkind=cut bytes=30 nth=2"), "200 1\n2\n");
    const Connection dropped(m_port);
    dropped.send(getInstance());
    EXPECT_EQ(dropped.receive(""), "");
    const Connection cut(m_port);
    cut.send(getInstance());
    const std::string part = cut.receive("");
    EXPECT_NE(part.find("Content-Length: "), std::string::npos);
    EXPECT_EQ(part.substr(part.find("\r\n\r\n") + 4),
              std::string("<?xml version=\"1.0\" encoding=\"utf-8\"?>").substr(0, 30));
    const Connection whole(m_port);
    whole.send(getInstance());
    EXPECT_NE(whole.receive("</CIM>\n").find("<VALUE>3</VALUE>"), std::string::npos);
}

TEST_F(SimulatorServer, IsWatchedAndChangedThroughItsControlRequests) {
    start({"--scale", "T=3"});
    const Connection client(m_port);
    client.send(getInstance());
    client.receive("</CIM>\n");
    EXPECT_EQ(
        control("GET", "/sim/stats"),
        "200 {\"total\":1,\"operations\":{\"GetInstance\":{\"total\":1,\"classes\":{\"T\":1}}},"
        "\"methods\":{}}\n");
    EXPECT_EQ(control("DELETE", "/sim/stats"),
              "200 {\"total\":0,\"operations\":{},\"methods\":{}}\n");
    EXPECT_EQ(control("GET", "/sim/log"), "200 GetInstance T.Name=\"one\" 0\n");
    EXPECT_EQ(control("POST", "/sim/model?do=add", "instance of T { Name = \"new\"; };"), "200 ");
    EXPECT_EQ(control("POST", "/sim/model?do=remove", "T.Name=\"one-1\""), "200 ");
    EXPECT_EQ(control("POST", "/sim/model?do=reorder&class=T", "reverse"), "200 ");
    EXPECT_EQ(control("GET", "/sim/model?class=T"), "200 root/zorm:T.Name=\"new\"\n"
                                                    "root/zorm:T.Name=\"one-2\"\n"
                                                    "root/zorm:T.Name=\"one\"\n");
    EXPECT_EQ(control("POST", "/sim/model?do=add", "instance of T { Name = 1; };"),
              "400 text:1:24: CIM_ERR_TYPE_MISMATCH: Name is string\n");
    EXPECT_EQ(control("POST", "/sim/model", ""), "400 do=add, do=remove or do=reorder is needed\n");
    EXPECT_EQ(control("POST", "/sim/faults", "kind=banana"), "400 unknown kind banana\n");
    EXPECT_EQ(control("GET", "/nowhere").substr(0, 3), "404");
}

TEST_F(SimulatorServer, TakesWhateverBytesAClientSends) {
    start();
    for (const std::string& bytes :
         {std::string("\0\xFF\r\n\r\n", 6), std::string("POST /cimom HTTP/1.1\r\n\r\n"),
          std::string(20000, 'A'), http("BREW", "/cimom", ""), http("POST", "/cimom", "<CIM"),
          std::string("POST /cimom HTTP/1.1\r\nContent-Length: 99999999999\r\n\r\nx")}) {
        const Connection client(m_port);
        client.send(bytes);
    }
    const Connection refused(m_port);
    refused.send(http("POST", "/cimom", "<CIM"));
    const std::string refusal = refused.receive("\r\n\r\n");
    EXPECT_NE(refusal.find("CIMError: request-not-well-formed\r\n"), std::string::npos);
    EXPECT_NE(refusal.find("Keep-Alive: timeout=600,"), std::string::npos) << "as it is kept";
    for (const std::string method : {"BREW", "M-POST"}) {
        const Connection other(m_port);
        other.send(http(method, "/cimom", "<CIM"));
        const std::string replies = other.receive("");
        EXPECT_EQ(replies.substr(0, 13), method == "BREW" ? "HTTP/1.1 400 " : "HTTP/1.1 501 ");
        EXPECT_EQ(replies.rfind("HTTP/1.1 "), 0U) << "one reply, and then the end";
    }
    const Connection client(m_port);
    client.send(getInstance());
    EXPECT_NE(client.receive("</CIM>\n").find("<VALUE>3</VALUE>"), std::string::npos);
}

TEST_F(SimulatorServer, SaysWhatIsWrongWithItsCommandLineModelOrPort) {
    EXPECT_EQ(failure({"--port", "70000"}), "2 velclp-sim: --port goes up to 65535\n");
    EXPECT_EQ(failure({"--port", "x"}), "2 velclp-sim: --port needs a number\n");
    EXPECT_EQ(failure({"--speed", "0"}), "2 velclp-sim: --speed needs a number above 0, not 0\n");
    EXPECT_EQ(failure({"--scale", "T"}), "2 velclp-sim: CLASS=N is needed\n");
    EXPECT_EQ(failure({"extra"}), "2 velclp-sim: unexpected argument extra\n");
    EXPECT_EQ(failure({"--model", "/nonexistent.mof"}),
              "1 velclp-sim: /nonexistent.mof: cannot be read\n");
    m_folder.write("t.mof", "class");
    EXPECT_EQ(failure({"--model", file()}),
              "1 velclp-sim: " + std::filesystem::canonical(file()).string() +
                  ":1:6: expected a class name, found the end of the file\n");
    m_folder.write("t.mof", model);
    start();
    EXPECT_EQ(failure({"--model", file(), "--port", m_port}),
              "1 velclp-sim: cannot listen on 127.0.0.1:" + m_port + "\n");
}

} // namespace
