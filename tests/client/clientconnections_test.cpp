// Connections of the CIM client: when there is none, how long they are kept, and how long an answer
// is waited for.
#include "calllimits.h"
#include "clientfixture.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <optional>
#include <thread>

using namespace velmora_clp;

namespace {

class Connections : public testing::Test {
protected:
    ~Connections() override { cimclient::setLimits({}); }

    CimClient connect(const std::string& port, const char* user = nullptr) {
        return CimClient(
            cmciConnect("127.0.0.1", "http", port.c_str(), user, "secret", status.out()));
    }
    bool call(const CimClient& client) {
        return CimEnumeration(client->ft->enumInstanceNames(client.get(), name.get(),
                                                            status.out())) != nullptr;
    }
    void prepareReplies(StandIn& server, int count) {
        for (int i = 0; i < count; ++i)
            server.returns("");
    }
    static std::string freePort() {
        // A server that has ended leaves a port where nothing listens.
        StandIn server;
        return server.port();
    }

    CimPath name = thing();
    CimStatus status;
};

TEST_F(Connections, ToNowhereAreRefusedWithTheReason) {
    EXPECT_FALSE(connect(freePort()));
    EXPECT_EQ(outcome(status), (Outcome{1, "Couldn't connect to server"}));
    EXPECT_FALSE(connect("port"));
    EXPECT_EQ(outcome(status), (Outcome{1, "URL using bad/illegal format or missing URL"}));
    EXPECT_FAILS(cmciConnect("127.0.0.1", "ftp", "21", nullptr, nullptr, status.out()), 1,
                 "Unsupported protocol");
    EXPECT_FAILS(cmciConnect("evil/path?", "http", "1", nullptr, nullptr, status.out()), 1,
                 "URL using bad/illegal format or missing URL");
    EXPECT_FAILS(cmciConnect("no-such-host.invalid", "http", "1", nullptr, nullptr, status.out()),
                 1, "Couldn't resolve host name");
    EXPECT_EQ(cmciConnect("127.0.0.1", "http", freePort().c_str(), nullptr, nullptr, nullptr),
              nullptr);
}

TEST_F(Connections, AreKeptAndSharedByTheClientsOfOneUser) {
    StandIn server;
    prepareReplies(server, 5);
    {
        const CimClient first = connect(server.port(), "a");
        EXPECT_TRUE(call(first) && call(first));
    }
    const CimClient second = connect(server.port(), "a");
    EXPECT_TRUE(call(second));
    EXPECT_EQ(server.usedConnections(), 1U);
    const CimClient other = connect(server.port(), "b");
    EXPECT_TRUE(call(other));
    EXPECT_EQ(server.usedConnections(), 2U);
    EXPECT_TRUE(call(second));
    EXPECT_EQ(server.usedConnections(), 2U);
}

TEST_F(Connections, ThatTheServerEndedAreMadeAnew) {
    StandIn server;
    const std::string body = replyMessage("<IMETHODRESPONSE NAME=\"X\"/>");
    server.reply("HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
                     body,
                 true);
    server.returns("");
    const CimClient client = connect(server.port());
    EXPECT_TRUE(call(client)) << status.message();
    EXPECT_TRUE(call(client)) << status.message();
    EXPECT_EQ(server.usedConnections(), 2U);
}

TEST_F(Connections, ThatAreDroppedUnderARequestAreTriedOnceMore) {
    StandIn server;
    server.returns("");
    server.drop();
    server.returns("");
    const CimClient client = connect(server.port());
    EXPECT_TRUE(call(client));
    EXPECT_TRUE(call(client)) << status.message();
    EXPECT_EQ(server.requestCount(), 3U);
    EXPECT_EQ(server.request(1), server.request(2));
}

TEST_F(Connections, ThatAreDroppedTwiceAreAFailureAndNoThirdAttempt) {
    StandIn server;
    server.returns("");
    const CimClient client = connect(server.port());
    EXPECT_TRUE(call(client));
    for (int i = 0; i < 6; ++i)
        server.drop();
    EXPECT_FALSE(call(client));
    EXPECT_EQ(outcome(status), (Outcome{1, "Server returned nothing (no headers, no data)"}));
    EXPECT_EQ(server.requestCount(), 3U);
    EXPECT_FALSE(call(client));
    EXPECT_EQ(server.requestCount(), 4U);
}

TEST_F(Connections, ThatBreakWithinAReplyAreNotTriedAgain) {
    StandIn server;
    server.returns("");
    server.reply("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n", true);
    const CimClient client = connect(server.port());
    EXPECT_TRUE(call(client));
    EXPECT_FALSE(call(client));
    EXPECT_EQ(server.requestCount(), 2U);
}

TEST_F(Connections, ThatAreKeptCountAsAnAnswerButNotWhenTheServerIsGone) {
    std::optional<StandIn> server(std::in_place);
    prepareReplies(*server, 2);
    const CimClient client = connect(server->port());
    EXPECT_TRUE(call(client));
    EXPECT_TRUE(connect(server->port()));
    const std::string port = server->port();
    server.reset();
    EXPECT_FALSE(call(client));
    EXPECT_EQ(outcome(status), (Outcome{1, "Couldn't connect to server"}));
    EXPECT_FALSE(connect(port));
    EXPECT_EQ(outcome(status), (Outcome{1, "Couldn't connect to server"}));
}

TEST_F(Connections, WithASilentServerEndWithTheIdleLimitOrTheOperations) {
    cimclient::Limits idle, operation;
    idle.idle = std::chrono::seconds(1);
    operation.operation = std::chrono::milliseconds(200);
    for (const cimclient::Limits& limits : {idle, operation}) {
        cimclient::setLimits(limits);
        StandIn server;
        server.staySilent();
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(call(connect(server.port())));
        EXPECT_EQ(outcome(status), (Outcome{1, "Timeout was reached"}));
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
        EXPECT_EQ(server.requestCount(), 1U);
    }
}

TEST_F(Connections, GoThroughAUnixSocketWhenThePortIsAPath) {
    char directory[] = "/tmp/cimclientXXXXXX";
    ASSERT_NE(mkdtemp(directory), nullptr);
    const std::string path = std::string(directory) + "/cim.sock";
    {
        StandIn server(path);
        server.returns("<INSTANCENAME CLASSNAME=\"A\"/>");
        const CimClient client(
            cmciConnect(nullptr, "http", path.c_str(), nullptr, nullptr, status.out()));
        ASSERT_TRUE(client) << status.message();
        EXPECT_TRUE(call(client)) << status.message();
        EXPECT_EQ(server.request().find("\r\nHost: localhost\r\n"), 20U);
    }
    EXPECT_FALSE(cmciConnect(nullptr, "http", path.c_str(), nullptr, nullptr, status.out()));
    unlink(path.c_str());
    rmdir(directory);
}

TEST_F(Connections, OnThisMachineIgnoreAProxyOfTheEnvironment) {
    setenv("http_proxy", ("http://127.0.0.1:" + freePort()).c_str(), 1);
    StandIn server;
    server.returns("");
    const CimClient client = connect(server.port());
    ASSERT_TRUE(client) << status.message();
    EXPECT_TRUE(call(client)) << status.message();
}

TEST_F(Connections, ServeManyThreadsEachWithItsOwnClient) {
    StandIn server;
    constexpr int threads = 8, calls = 50;
    prepareReplies(server, threads * calls);
    std::vector<std::thread> running;
    running.reserve(threads);
    std::vector<int> succeeded(threads, 0);
    for (int t = 0; t < threads; ++t)
        running.emplace_back([&, t] {
            const CimPath path = thing();
            CimStatus own;
            const CimClient client(cmciConnect("127.0.0.1", "http", server.port().c_str(), nullptr,
                                               nullptr, own.out()));
            for (int i = 0; i < calls; ++i)
                succeeded[static_cast<std::size_t>(t)] +=
                    CimEnumeration(
                        client->ft->enumInstanceNames(client.get(), path.get(), own.out()))
                        ? 1
                        : 0;
        });
    for (std::thread& thread : running)
        thread.join();
    EXPECT_EQ(succeeded, std::vector<int>(threads, calls));
    EXPECT_LE(server.usedConnections(), static_cast<std::size_t>(threads));
}

} // namespace
