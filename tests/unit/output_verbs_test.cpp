// The responses of the verbs other than show, byte for byte, in their three forms.
#include "tests/support/run_directory.h"
#include "tests/unit/output_support.h"
#include "velclp/clpman.h"
#include "velclp/coutputer.h"

#include <gtest/gtest.h>

#include <regex>

using namespace output_test;
using velmora_clp::CommandStatus;
using velmora_clp::COutputer;
using velmora_clp::JobError;

namespace {

constexpr char const* TIME =
    "(Mon|Tue|Wed|Thu|Fri|Sat|Sun) [A-Z][a-z][a-z] [ 0-9][0-9] [0-9:]{8} [0-9]{4}\n";

// A response with the moment replaced by "TIME\n".
std::string timeless(const std::string& bytes) {
    return std::regex_replace(bytes, std::regex(TIME), "TIME\n");
}

class VerbResponse : public testing::Test {
protected:
    std::string cd(const std::string& line, Outcome& outcome) {
        return bytesOf([&](Transport& out) {
            std::string address = "/admin1/system1";
            COutputer(nullptr, &out).cd_output(parsed(line), &outcome.record, &address);
        });
    }
    std::string start(const std::string& line, Outcome& outcome) {
        return timeless(bytesOf([&](Transport& out) {
            std::string address = "/admin1/system1";
            COutputer(nullptr, &out).start_output(parsed(line), &outcome.record, &address);
        }));
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
    Outcome notFound{CommandStatus::COMMAND_EXECUTION_FAILED};

    VerbResponse() {
        notFound.failed(JobError::Unavailable_Resource_Error, JobError::CIM_ERR_NOT_FOUND,
                        JobError::S_Low);
    }
};

} // namespace

TEST_F(VerbResponse, CdShowsTheDefaultTarget) {
    EXPECT_EQ("/admin1/system1\r\n", cd("cd system1", done));
    const std::string keyword = "cd -o format=keyword system1";
    EXPECT_EQ(head(keyword) + "command=cd\r\nufip=/admin1/system1\r\nendoutput\r\n",
              cd(keyword, done));
    const std::string xml = "cd -o format=clpxml system1";
    EXPECT_EQ(xmlHead(xml) + "<cd><ufip>/admin1/system1</ufip></cd></response>\r\n", cd(xml, done));
}

TEST_F(VerbResponse, CdThatFailedShowsTheBlockAndTheTargetThatStays) {
    EXPECT_EQ("cmdstat\r\n\tstatus     : 3\r\n\tstatus_tag : COMMAND EXECUTION FAILED\r\n"
              "job\r\n\tjob_id     : 7\r\n\tjoberr\r\n\t\terrtype       : 9\r\n"
              "\t\terrtype_desc  : Unavailable Resource Error\r\n\t\tcimstat       : 6\r\n"
              "\t\tcimstat_desc  : CIM_ERR_NOT_FOUND\r\n\t\tseverity      : 2\r\n"
              "\t\tseverity_desc : Low\r\n/admin1/system1\r\n",
              cd("cd system9", notFound));
}

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

TEST_F(VerbResponse, StartTellsTheMomentAndItsLineFeed) {
    EXPECT_EQ("/admin1/system1 started at TIME\n\r\n", start("start system1", done));
    const std::string keyword = "start -o format=keyword system1";
    EXPECT_EQ(head(keyword) +
                  "command=start\r\nufip=/admin1/system1\r\ntimestamp=TIME\n\r\nendoutput\r\n",
              start(keyword, done));
    const std::string xml = "start -o format=clpxml system1";
    EXPECT_EQ(xmlHead(xml) +
                  "<start><instance><ufit ufct=\"system\" instance=\"1\">system1</ufit>"
                  "<ufip>/admin1/system1</ufip></instance><timestamp>TIME\n</timestamp></start>"
                  "</response>\r\n",
              start(xml, done));
}

TEST_F(VerbResponse, StopAndResetHaveWordsOfTheirOwn) {
    std::string address = "/admin1/system1";
    const auto stop = [&](Transport& out) {
        COutputer(nullptr, &out).stop_output(parsed("stop system1"), &done.record, &address);
    };
    const auto reset = [&](Transport& out) {
        COutputer(nullptr, &out).reset_output(parsed("reset system1"), &done.record, &address);
    };
    EXPECT_EQ("/admin1/system1 stopped at TIME\n\r\n", timeless(bytesOf(stop)));
    EXPECT_EQ("/admin1/system1 reset at TIME\n\r\n", timeless(bytesOf(reset)));
}

TEST_F(VerbResponse, AFailedStartSaysSoBehindTheBlock) {
    const std::string bytes = start("start system1", notFound);
    EXPECT_NE(std::string::npos,
              bytes.find("\t\tseverity_desc : Low\r\n/admin1/system1 started FAILED at TIME\n\r\n"))
        << bytes;
}

TEST_F(VerbResponse, DeleteListsWhatIsGone) {
    EXPECT_EQ("/admin1/log1 deleted\r\n/admin1/log2 deleted\r\n",
              deleted("delete log*", {"/admin1/log1", "/admin1/log2"}));
    EXPECT_EQ("Delete failed\r\n", deleted("delete log*", {}));
    const std::string keyword = "delete -o format=keyword log1";
    EXPECT_EQ(head(keyword) + "command=delete\r\nufip=/admin1/log1\r\nendoutput\r\n",
              deleted(keyword, {"/admin1/log1"}));
    const std::string xml = "delete -o format=clpxml log1";
    EXPECT_EQ(xmlHead(xml) +
                  "<delete><target><instance><ufit ufct=\"log\" instance=\"1\">log1</ufit>"
                  "<ufip>/admin1/log1</ufip></instance></target></delete></response>\r\n",
              deleted(xml, {"/admin1/log1"}));
}

TEST_F(VerbResponse, DeleteListsInReverseWhenAsked) {
    EXPECT_EQ("/b1 deleted\r\n/a1 deleted\r\n",
              deleted("delete -o order=reverse log*", {"/a1", "/b1"}));
    EXPECT_EQ("/a1 deleted\r\n/b1 deleted\r\n",
              deleted("delete -o order=default log*", {"/a1", "/b1"}));
}

TEST_F(VerbResponse, AFailedDeleteIsTheBlockAlone) {
    std::list<std::string> addresses = {"/admin1/log1"};
    const std::string bytes = bytesOf([&](Transport& out) {
        COutputer(nullptr, &out).delete_output(parsed("delete log1"), &notFound.record, &addresses);
    });
    EXPECT_EQ("\t\tseverity_desc : Low\r\n", bytes.substr(bytes.rfind("\t\t")));
}

TEST_F(VerbResponse, VersionShowsBothVersions) {
    std::string clp = "1.0.2", addressing = "1.0.0b";
    const auto version = [&](const std::string& line) {
        return bytesOf([&](Transport& out) {
            COutputer(nullptr, &out).version_output(parsed(line), &done.record, &clp, &addressing);
        });
    };
    EXPECT_EQ("SM CLP Version: 1.0.2\r\nSM ME Addressing Version: 1.0.0b\r\n", version("version"));
    EXPECT_EQ(
        head("version -o format=keyword") +
            "command=version\r\nclpversion=1.0.2\r\naddressingversion=1.0.0b\r\nendoutput\r\n",
        version("version -o format=keyword"));
    EXPECT_EQ(xmlHead("version -o format=clpxml") +
                  "<version><clpversion>1.0.2</clpversion><addressingversion>1.0.0b"
                  "</addressingversion></version></response>\r\n",
              version("version -o format=clpxml"));
}

TEST_F(VerbResponse, HelpPrintsItsTextInEveryForm) {
    const auto help = [&](const std::string& line, std::string text) {
        return bytesOf([&](Transport& out) {
            COutputer(nullptr, &out).help_output(parsed(line), &done.record, text);
        });
    };
    EXPECT_EQ("a <b>\nc\r\n", help("help show", "a <b>\nc"));
    EXPECT_EQ("Cannot find this help topic\r\n", help("help show", ""));
    EXPECT_EQ(head("help -o format=keyword show") + "command=help\r\na <b>\nc\r\nendoutput\r\n",
              help("help -o format=keyword show", "a <b>\nc"));
    EXPECT_EQ(xmlHead("help -o format=clpxml show") +
                  "<help><text>a &lt;b&gt;\nc</text></help></response>\r\n",
              help("help -o format=clpxml show", "a <b>\nc"));
}

TEST_F(VerbResponse, LoadAndDumpHaveNoBodyAndStayOpen) {
    const auto load = [&](const std::string& line) {
        return bytesOf([&](Transport& out) {
            COutputer(nullptr, &out).load_output(parsed(line), &done.record);
        });
    };
    EXPECT_EQ("", load("load -source http://h/f system1"));
    const std::string keyword = "load -source http://h/f -o format=keyword system1";
    EXPECT_EQ(head(keyword), load(keyword));
    const std::string xml = "load -source http://h/f -o format=clpxml system1";
    EXPECT_EQ(xmlHead(xml), load(xml));
    EXPECT_EQ("cmdstat\r\n\tstatus     : 0\r\n\tstatus_tag : COMMAND COMPLETED\r\n",
              bytesOf([&](Transport& out) {
                  COutputer(nullptr, &out)
                      .dump_output(parsed("dump -destination http://h/f -o verbose system1"),
                                   &done.record);
              }));
}

TEST_F(VerbResponse, CreateWithoutAnObjectPrintsNothingInTextAndAnEmptyBodyOtherwise) {
    std::string address;
    const auto create = [&](const std::string& line) {
        const std::string bytes = bytesOf([&](Transport& out) {
            COutputer(nullptr, &out)
                .create_output(parsed(line), &notFound.record, &address, nullptr);
        });
        return bytes;
    };
    EXPECT_EQ("severity_desc : Low\r\n",
              create("create user1").substr(create("create user1").rfind("severity_desc")));
    const std::string keyword = create("create -o format=keyword user1");
    EXPECT_EQ("severity_desc=Low\r\ncommand=create\r\nendoutput\r\n",
              keyword.substr(keyword.rfind("severity_desc")));
    const std::string xml = create("create -o format=clpxml user1");
    EXPECT_EQ("</cmdstat>\r\n<create></create></response>\r\n",
              xml.substr(xml.rfind("</cmdstat>")));
}

TEST_F(VerbResponse, ACompletedCreateWithoutAnObjectEndsTheProcess) {
    std::string address = "/admin1/user1";
    EXPECT_DEATH(bytesOf([&](Transport& out) {
                     COutputer(nullptr, &out)
                         .create_output(parsed("create user1"), &done.record, &address, nullptr);
                 }),
                 "\\(pobjpath != __null\\)");
    EXPECT_DEATH(bytesOf([&](Transport& out) {
                     COutputer(nullptr, &out)
                         .create_output(parsed("create user1"), &done.record, nullptr, nullptr);
                 }),
                 "\\(pufip != __null\\)");
}

TEST_F(VerbResponse, ACompletedDeleteWithoutAListEndsTheProcess) {
    EXPECT_DEATH(
        bytesOf([&](Transport& out) {
            std::list<std::string>* none = nullptr;
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

namespace {

class OptionResponse : public VerbResponse {
protected:
    OptionResponse() {
        directory.write("topics.txt", "{cd}\nUse <target>.\nSecond line.\n{help}\nHelp on help.\n");
        CLP_Man_Init(directory.file("topics.txt"));
    }
    ~OptionResponse() override { CLP_Man_Fini(); }

    RunDirectory directory;
};

} // namespace

TEST_F(OptionResponse, HelpPrintsTheTopicOfTheVerb) {
    EXPECT_EQ("Use <target>.\nSecond line.\r\n", cd("cd -help", done));
    EXPECT_EQ("Cannot find help for start\r\n", start("start -help", done));
    EXPECT_EQ(head("cd -help -o format=keyword") +
                  "command=cd\r\nhelp=Use <target>.\nSecond line.\r\nendoutput\r\n",
              cd("cd -help -o format=keyword", done));
    EXPECT_EQ(xmlHead("cd -help -o format=clpxml") +
                  "<cd><help><text>Use &lt;target&gt;.\nSecond line.</text></help></cd>"
                  "</response>\r\n",
              cd("cd -help -o format=clpxml", done));
}

TEST_F(OptionResponse, VersionNamesTheVerb) {
    EXPECT_EQ("version of cd\r\n", cd("cd -version", done));
    EXPECT_EQ(head("cd -version -o format=keyword") +
                  "command=cd\r\nversion=version of cd\r\nendoutput\r\n",
              cd("cd -version -o format=keyword", done));
    EXPECT_EQ(xmlHead("cd -version -o format=clpxml") +
                  "<cd><version>Version of cd</version></cd></response>\r\n",
              cd("cd -version -o format=clpxml", done));
}

TEST_F(OptionResponse, ExamineRepeatsTheLine) {
    EXPECT_EQ("[cd -examine] pass syntax checking\r\n", cd("cd -examine", done));
    EXPECT_EQ(head("cd -x -o format=keyword") +
                  "command=cd\r\nexamine=[cd -x -o format=keyword] pass syntax checking\r\n"
                  "endoutput\r\n",
              cd("cd -x -o format=keyword", done));
    EXPECT_EQ(xmlHead("cd -x -o format=clpxml") +
                  "<cd><examine><text>[cd -x -o format=clpxml] pass syntax checking</text>"
                  "</examine></cd></response>\r\n",
              cd("cd -x -o format=clpxml", done));
}

TEST_F(OptionResponse, HelpWinsOverVersionAndExamine) {
    EXPECT_EQ("Use <target>.\nSecond line.\r\n", cd("cd -examine -version -help", done));
    EXPECT_EQ("version of cd\r\n", cd("cd -examine -version", done));
}

TEST_F(OptionResponse, ComesBehindTheBlockOfAFailure) {
    const std::string bytes = cd("cd -help", notFound);
    EXPECT_EQ("\t\tseverity_desc : Low\r\nUse <target>.\nSecond line.\r\n",
              bytes.substr(bytes.rfind("\t\tseverity_desc")));
}
