// The responses of the verbs other than show, where a session's transcript does not show them.
#include "tests/support/run_directory.h"
#include "tests/unit/output_support.h"
#include "velclp/clpman.h"
#include "velclp/coutputer.h"

#include <gtest/gtest.h>

using namespace output_test;
using velmora_clp::CommandStatus;
using velmora_clp::COutputer;
using velmora_clp::JobError;

namespace {

class VerbResponse : public testing::Test {
protected:
    std::string cd(const std::string& line, Outcome& outcome) {
        return bytesOf([&](Transport& out) {
            std::string address = "/admin1/system1";
            COutputer(nullptr, &out).cd_output(parsed(line), &outcome.record, &address);
        });
    }
    std::string deleted(const std::string& line, std::list<std::string> addresses) {
        return bytesOf([&](Transport& out) {
            COutputer(nullptr, &out).delete_output(parsed(line), &done.record, &addresses);
        });
    }
    static std::string head(const std::string& line) {
        return "commandline=" + line +
               "\r\nstatus=0\r\nstatus_tag=COMMAND COMPLETED\r\njob_id=7\r\n";
    }
    static std::string xmlHead(const std::string& line) {
        return XML_BEGIN + ("<command><inputline>" + line) +
               "</inputline></command><cmdstat><status>0</status><status_tag>COMMAND COMPLETED"
               "</status_tag><job><job_id>7</job_id></job></cmdstat>\r\n";
    }

    Outcome done{CommandStatus::COMMAND_COMPLETED};
};

} // namespace

TEST_F(VerbResponse, SpawnedAndUnprocessedCommandsHaveNoBody) {
    Outcome spawned(CommandStatus::COMMAND_SPAWNED);
    EXPECT_EQ("cmdstat\r\n\tstatus     : 1\r\n\tstatus_tag : COMMAND SPAWNED\r\n"
              "job\r\n\tjob_id     : 7\r\n",
              cd("cd system1", spawned));
    Outcome unprocessed(CommandStatus::COMMAND_PROCESSING_FAILED);
    EXPECT_EQ("", cd("cd system1", unprocessed));
    EXPECT_EQ("", bytesOf([](Transport& out) {
                  std::string address = "/admin1";
                  COutputer(nullptr, &out).cd_output(parsed("cd"), nullptr, &address);
              }));
}

TEST_F(VerbResponse, DeleteListsWhatIsGoneInTheOrderThatTheLineNames) {
    EXPECT_EQ("/a1 deleted\r\n/b1 deleted\r\n",
              deleted("delete -o order=default log*", {"/a1", "/b1"}));
    EXPECT_EQ("/b1 deleted\r\n/a1 deleted\r\n",
              deleted("delete -o order=reverse log*", {"/a1", "/b1"}));
    EXPECT_EQ("Delete failed\r\n", deleted("delete log*", {}));
}

TEST_F(VerbResponse, HelpEscapesItsTextInXmlAndSaysWhenThereIsNone) {
    const auto help = [&](const std::string& line, std::string text) {
        return bytesOf([&](Transport& out) {
            COutputer(nullptr, &out).help_output(parsed(line), &done.record, text);
        });
    };
    EXPECT_EQ("Cannot find this help topic\r\n", help("help show", ""));
    EXPECT_EQ(xmlHead("help -o format=clpxml show") +
                  "<help><text>a &lt;b&gt;\nc</text></help></response>\r\n",
              help("help -o format=clpxml show", "a <b>\nc"));
}

TEST_F(VerbResponse, DumpHasNoBody) {
    const std::string dump = "dump -destination http://h/f -o verbose system1";
    EXPECT_EQ("cmdstat\r\n\tstatus     : 0\r\n\tstatus_tag : COMMAND COMPLETED\r\n",
              bytesOf([&](Transport& out) {
                  COutputer(nullptr, &out).dump_output(parsed(dump), &done.record);
              }));
}

TEST_F(VerbResponse, ACompletedVerbWithoutWhatItGivesEndsTheProcess) {
    const auto create = [&](std::string* address) {
        bytesOf([&](Transport& out) {
            COutputer(nullptr, &out)
                .create_output(parsed("create user1"), &done.record, address, nullptr);
        });
    };
    std::string address = "/admin1/user1";
    EXPECT_DEATH(create(&address), "\\(pobjpath != __null\\)");
    EXPECT_DEATH(create(nullptr), "\\(pufip != __null\\)");
    std::list<std::string>* none = nullptr;
    EXPECT_DEATH(
        bytesOf([&](Transport& out) {
            COutputer(nullptr, &out).delete_output(parsed("delete log1"), &done.record, none);
        }),
        "\\(pufiplist != __null\\)");
}

TEST_F(VerbResponse, ExitHasNoStatusBlock) {
    const auto exitBytes = [](const std::string& line) {
        return bytesOf([&](Transport& out) { COutputer(nullptr, &out).exit_output(parsed(line)); });
    };
    EXPECT_EQ("CLP Session End\r\n", exitBytes("exit"));
    EXPECT_EQ("command=exit\r\nendoutput\r\n", exitBytes("exit -o format=keyword"));
    EXPECT_EQ("<exit></exit></response>\r\n", exitBytes("exit -o format=clpxml"));
    EXPECT_EQ("<exit><version>Version of exit</version></exit></response>\r\n",
              exitBytes("exit -version -o format=clpxml"));
}

TEST_F(VerbResponse, TheAnswerOfAnOptionTakesThePlaceOfTheBody) {
    const RunDirectory directory;
    directory.write("topics.txt", "{cd}\nUse <target>.\nSecond line.\n{help}\nHelp on help.\n");
    CLP_Man_Init(directory.file("topics.txt"));
    const std::string help = "Use <target>.\nSecond line.\r\n";
    const struct {
        std::string line, keyword, xml;
    } cases[] = {
        {"cd -help", "help=" + help, "<help><text>Use &lt;target&gt;.\nSecond line.</text></help>"},
        {"cd -version", "version=version of cd\r\n", "<version>Version of cd</version>"},
        {"cd -examine", "examine=[cd -examine -o format=keyword] pass syntax checking\r\n",
         "<examine><text>[cd -examine -o format=clpxml] pass syntax checking</text></examine>"}};
    for (const auto& c : cases) {
        const std::string keyword = c.line + " -o format=keyword";
        EXPECT_EQ(head(keyword) + "command=cd\r\n" + c.keyword + "endoutput\r\n",
                  cd(keyword, done));
        const std::string xml = c.line + " -o format=clpxml";
        EXPECT_EQ(xmlHead(xml) + "<cd>" + c.xml + "</cd></response>\r\n", cd(xml, done));
    }
    EXPECT_EQ(help, cd("cd -examine -version -help", done));
    EXPECT_EQ("version of cd\r\n", cd("cd -examine -version", done));
    Outcome notFound{CommandStatus::COMMAND_EXECUTION_FAILED};
    notFound.failed(JobError::Unavailable_Resource_Error, JobError::CIM_ERR_NOT_FOUND,
                    JobError::S_Low);
    const std::string bytes = cd("cd -help", notFound);
    EXPECT_EQ("\t\tseverity_desc : Low\r\n" + help, bytes.substr(bytes.rfind("\t\tseverity_desc")));
    std::string address = "/admin1/system1";
    EXPECT_EQ(
        "Cannot find help for start\r\n", bytesOf([&](Transport& out) {
            COutputer(nullptr, &out).start_output(parsed("start -help"), &done.record, &address);
        }));
    CLP_Man_Fini();
}
