// How operations of the CIM client fail: errors of the server, replies that are no replies, and
// replies that are more than a client should take.
#include "calllimits.h"
#include "clientfixture.h"

using namespace velmora_clp;

namespace {

class Failures : public WithServer {
protected:
    ~Failures() override { cimclient::setLimits({}); }

    void replyError(const std::string& error) {
        server.replyXml(
            replyMessage("<IMETHODRESPONSE NAME=\"X\">" + error + "</IMETHODRESPONSE>"));
    }
    // The reply is no good, and the client says so instead of ending the process.
    void expectRefused(const std::string& xml) {
        server.replyXml(xml);
        EXPECT_FALSE(names()) << xml;
        EXPECT_EQ(status.rc(), CMPI_RC_ERR_FAILED) << xml;
        EXPECT_NE(status.message(), "") << xml;
    }
};

TEST_F(Failures, OfTheServerComeWithItsCodeAndWordsDecoded) {
    replyError("<ERROR CODE=\"6\" DESCRIPTION=\"not &lt;there&gt; &amp; &#65;\"/>");
    EXPECT_FAILS(names(), 6, "not <there> & A");
    replyError("<ERROR CODE=\"27\"><INSTANCE CLASSNAME=\"CIM_Error\"/></ERROR>");
    EXPECT_FAILS(names(), 27, "The server reported CIM error 27");
    replyError("<ERROR CODE=\"0\" DESCRIPTION=\"zero\"/>");
    EXPECT_FAILS(names(), 1, "zero");
    replyError("<ERROR CODE=\"many\" DESCRIPTION=\"words\"/>");
    EXPECT_FAILS(names(), 1, "words");
    server.methodReturns("<ERROR CODE=\"16\" DESCRIPTION=\"no method\"/>");
    const CMPIData result = table().invokeMethod(c(), op(), "Run", nullptr, nullptr, rc());
    EXPECT_EQ(show(result), "0000/0500 null");
    EXPECT_EQ(outcome(status), (Outcome{16, "no method"}));
}

TEST_F(Failures, InHeadersOrTrailersCountBeforeTheBody) {
    const std::string body = replyMessage("<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE/>"
                                          "</IMETHODRESPONSE>");
    server.reply("HTTP/1.1 200 OK\r\nCIMStatusCode: 2\r\nCIMStatusCodeDescription:  denied \r\n"
                 "Content-Length: " +
                 std::to_string(body.size()) + "\r\n\r\n" + body);
    EXPECT_FAILS(names(), 2, "denied");
    char size[16];
    std::snprintf(size, sizeof size, "%zx", body.size());
    const std::string chunks = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n"
                               "Trailer: CIMStatusCode\r\n\r\n" +
                               std::string(size) + "\r\n" + body + "\r\n0\r\n";
    server.reply(chunks + "CIMStatusCode: 7\r\n\r\n");
    EXPECT_FAILS(names(), 7, "CIM status code 7");
    server.reply(chunks + "CIMStatusCode: 0\r\n\r\n");
    EXPECT_TRUE(names()) << status.message();
    EXPECT_EQ(server.usedConnections(), 1U);
}

TEST_F(Failures, OfHttpAreFailuresWhateverTheBodySays) {
    const std::string body = replyMessage("<IMETHODRESPONSE NAME=\"X\"/>");
    const auto withStatus = [&body](const std::string& line) {
        return "HTTP/1.1 " + line + "\r\nCIMError: request-not-well-formed\r\nContent-Length: " +
               std::to_string(body.size()) + "\r\n\r\n" + body;
    };
    server.reply(withStatus("401 Unauthorized"));
    EXPECT_FAILS(names(), 1, "Invalid username/password");
    for (const char* line :
         {"400 Bad Request", "403 Forbidden", "404 Not Found", "501 No", "503 No"}) {
        server.reply(withStatus(line));
        EXPECT_FAILS(names(), 1, "HTTP response code said error");
    }
    server.reply(withStatus("302 Found\r\nLocation: http://127.0.0.1:1/"));
    EXPECT_TRUE(names()) << status.message();
    server.reply("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
    EXPECT_FAILS(names(), 1, "No data received from server");
}

TEST_F(Failures, AreWhatMalformedXmlEndsIn) {
    const std::string good = replyMessage("<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE>"
                                          "<INSTANCENAME CLASSNAME=\"A\"/></IRETURNVALUE>"
                                          "</IMETHODRESPONSE>");
    for (std::size_t cut = 1; cut < good.rfind("</CIM>") + 5; cut += 7)
        expectRefused(good.substr(0, cut));
    for (const char* bad :
         {"no XML at all", "<CIM", "<", "<CIM><MESSAGE></CIM>", "<CIM a=\"b>", "<![CDATA[", "<!-- ",
          "<!DOCTYPE", "<!DOCTYPE a [<b>", "<?", "\xff\xfe<"})
        expectRefused(bad);
}

TEST_F(Failures, AreWhatAReplyOfAnotherShapeEndsIn) {
    for (const char* bad :
         {"<html><body>hello</body></html>", "<CIM/>", "<CIM><MESSAGE/></CIM>",
          "<CIM><MESSAGE><SIMPLERSP/></MESSAGE></CIM>",
          "<CIM><MESSAGE><SIMPLERSP><METHODRESPONSE NAME=\"X\"/></SIMPLERSP></MESSAGE></CIM>",
          "<CIM><MESSAGE><SIMPLEREQ><IMETHODRESPONSE/></SIMPLEREQ></MESSAGE></CIM>"})
        expectRefused(bad);
}

TEST_F(Failures, AreWhatElementsInTheWrongPlaceEndIn) {
    for (const char* bad :
         {"<INSTANCE CLASSNAME=\"A\"/>", "<INSTANCENAME/>", "<VALUE>x</VALUE>", "<OBJECTPATH/>",
          "<OBJECTPATH><OBJECTPATH/></OBJECTPATH>", "<INSTANCEPATH/>",
          "<INSTANCEPATH><INSTANCENAME CLASSNAME=\"A\"/></INSTANCEPATH>",
          "<LOCALINSTANCEPATH><LOCALNAMESPACEPATH/></LOCALINSTANCEPATH>",
          "<LOCALINSTANCEPATH><LOCALNAMESPACEPATH/><LOCALINSTANCEPATH/></LOCALINSTANCEPATH>",
          "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING/></INSTANCENAME>",
          "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"/></INSTANCENAME>",
          "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><VALUE.REFERENCE/></KEYBINDING>"
          "</INSTANCENAME>",
          "<INSTANCENAME CLASSNAME=\"A\"><FOO/></INSTANCENAME>", "<CLASSNAME/>"})
        expectRefused(replyMessage("<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE>" + std::string(bad) +
                                   "</IRETURNVALUE></IMETHODRESPONSE>"));
    for (const char* bad :
         {"<INSTANCENAME CLASSNAME=\"A\"/>", "<INSTANCE CLASSNAME=\"A\"><PROPERTY/></INSTANCE>",
          "<INSTANCE CLASSNAME=\"A\"><FOO/></INSTANCE>",
          "<INSTANCE CLASSNAME=\"A\"><QUALIFIER/></INSTANCE>",
          "<INSTANCE CLASSNAME=\"A\"><PROPERTY.REFERENCE NAME=\"R\"><VALUE.REFERENCE><FOO/>"
          "</VALUE.REFERENCE></PROPERTY.REFERENCE></INSTANCE>"}) {
        server.returns(bad);
        EXPECT_FALSE(instance()) << bad;
        EXPECT_EQ(status.rc(), CMPI_RC_ERR_FAILED) << bad;
    }
    for (const char* bad : {"<INSTANCE CLASSNAME=\"A\"/>", "<CLASS/>",
                            "<CLASS NAME=\"A\"><METHOD NAME=\"M\"><FOO/></METHOD></CLASS>"}) {
        server.returns(bad);
        EXPECT_FALSE(table().getClass(c(), op(), 0, nullptr, rc())) << bad;
        EXPECT_EQ(status.rc(), CMPI_RC_ERR_FAILED) << bad;
    }
}

TEST_F(Failures, AreWhatEndlessNestingEndsIn) {
    std::string nested;
    for (int i = 0; i < 100000; ++i)
        nested += "<a>";
    expectRefused(nested);
    std::string reference = "<VALUE/>";
    for (int i = 0; i < 1000; ++i)
        reference = "<INSTANCENAME CLASSNAME=\"A\"><KEYBINDING NAME=\"K\"><VALUE.REFERENCE>" +
                    reference + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
    expectRefused(replyMessage("<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE>" + reference +
                               "</IRETURNVALUE></IMETHODRESPONSE>"));
    EXPECT_EQ(status.message(), "The reply has too many or too deeply nested elements");
}

TEST_F(Failures, AreWhatATooLargeReplyEndsIn) {
    cimclient::Limits limits;
    limits.reply = 100000;
    cimclient::setLimits(limits);
    server.replyXml(std::string(100001, 'x'));
    EXPECT_FAILS(names(), 1, "The reply is larger than 100000 bytes");
    server.returns("");
    EXPECT_TRUE(names()) << status.message();
}

TEST_F(Failures, AreWhatACutOffReplyEndsIn) {
    server.reply("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n<CIM", true);
    EXPECT_FAILS(names(), 1, "Transferred a partial file");
    server.reply("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n10\r\nshort", true);
    EXPECT_FALSE(names());
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_FAILED);
    server.reply("SSH-2.0-OpenSSH\r\n", true);
    EXPECT_FALSE(names());
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_FAILED);
}

TEST_F(Failures, OfEveryOperationWithoutItsArgumentsSendNothing) {
    EXPECT_FAILS(table().getClass(c(), nullptr, 0, nullptr, rc()), 4, "No object path given");
    EXPECT_FAILS(table().enumClassNames(c(), nullptr, 0, rc()), 4, "No object path given");
    EXPECT_FAILS(table().enumClasses(c(), nullptr, 0, rc()), 4, "No object path given");
    EXPECT_FAILS(table().getInstance(c(), nullptr, 0, nullptr, rc()), 4, "No object path given");
    EXPECT_FAILS(table().createInstance(c(), op(), nullptr, rc()), 4, "No instance given");
    EXPECT_FAILS(table().execQuery(c(), op(), nullptr, "WQL", rc()), 4, "No query given");
    EXPECT_FAILS(table().enumInstanceNames(c(), nullptr, rc()), 4, "No object path given");
    EXPECT_FAILS(table().enumInstances(c(), nullptr, 0, nullptr, rc()), 4, "No object path given");
    EXPECT_FAILS(table().clone(c(), rc()), 7, "");
    name->ft->setClassName(op(), nullptr);
    EXPECT_FAILS(table().getInstance(c(), op(), 0, nullptr, nullptr), 7, "");
    status = table().deleteInstance(c(), op());
    EXPECT_EQ(outcome(status), (Outcome{4, "No class name given"}));
    EXPECT_EQ(server.requestCount(), 0U);
}

} // namespace
