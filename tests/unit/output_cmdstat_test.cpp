// The status block of a response, where a session's transcript does not show it.
#include "tests/unit/output_support.h"
#include "velclp/coutputer.h"

#include <gtest/gtest.h>

using namespace output_test;
using velmora_clp::COutputer;
using velmora_clp::JobError;
using velmora_clp::ProcessingError;

namespace {

std::string completed(const std::string& line, int form) {
    return bytesOf([&](Transport& out) {
        COutputer(nullptr, &out)
            .output_cmdstat_complete(parsed(line), 12, "Start the target", form);
    });
}

std::string failed(const std::string& line, JobError* error, int form) {
    return bytesOf([&](Transport& out) {
        COutputer(nullptr, &out).output_cmdstat_je(parsed(line), error, 12, form);
    });
}

} // namespace

TEST(ResponseForm, IsWhatTheLineAsksForAndTextOtherwise) {
    EXPECT_EQ(1, COutputer::output_format(nullptr));
    EXPECT_EQ(1, COutputer::output_format(parsed("version")));
    EXPECT_EQ(1, COutputer::output_format(parsed("version -o format=csv")));
    EXPECT_EQ(2, COutputer::output_format(parsed("version -o format=(KEYWORD)")));
    EXPECT_EQ(3, COutputer::output_format(parsed("version -o terse,format=clpxml")));
}

TEST(ResponseVerbosity, IsTerseUnlessTheLineSaysVerboseOrError) {
    EXPECT_EQ(4, COutputer::output_verbose(nullptr));
    EXPECT_EQ(4, COutputer::output_verbose(parsed("version")));
    EXPECT_EQ(5, COutputer::output_verbose(parsed("version -o verbose")));
    const auto line = parsed("version -o error");
    EXPECT_EQ(6, COutputer::output_verbose(line));
    line->_Options.addNode({"option", "-output", "verbose"});
    EXPECT_EQ(5, COutputer::output_verbose(line));
    line->_Options.addNode({"option", "-output", "terse"});
    EXPECT_EQ(4, COutputer::output_verbose(line));
}

TEST(XmlEscaping, TouchesTheAngleBracketsAlone) {
    EXPECT_EQ("a&lt;b&gt; & \"c\" '&amp;'", bytesOf([](Transport& out) {
                  COutputer output(nullptr, &out);
                  EXPECT_EQ("", output.xml_escaping_output("a<b> & \"c\" '&amp;'"));
                  EXPECT_EQ("", output.xml_escaping_output(""));
                  EXPECT_EQ("", output.xml_escaping_output(nullptr));
              }));
}

TEST(CompletedStatus, TellsHowLongTheResultIsKept) {
    EXPECT_EQ("", completed("start -o error system1", 1));
    EXPECT_EQ("cmdstat\r\n\tstatus     : 0\r\n\tstatus_tag : COMMAND COMPLETED\r\n"
              "Start the target and keep command result for 10 minutes 30 seconds \r\n",
              completed("start -keep 10.30 -o verbose system1", 1));
    EXPECT_EQ("Start the target and keep command result for 1 minutes 2.3 seconds \r\n",
              completed("start -k 1.2.3 system1", 1));
}

TEST(CompletedStatus, NumbersTheMessagesOfOneRenderer) {
    const std::string bytes = bytesOf([](Transport& out) {
        COutputer output(nullptr, &out);
        output.output_cmdstat_complete(parsed("start -k 5 system1"), 1, "A", 2);
        output.output_cmdstat_complete(parsed("start -k 5 system1"), 1, "A", 2);
    });
    EXPECT_NE(std::string::npos, bytes.find("message_id=1\r\n"));
    EXPECT_NE(std::string::npos, bytes.find("message_id=2\r\n"));
}

TEST(SpawnedStatus, IsAWholeResponse) {
    const auto spawned = [](const std::string& line, int form) {
        return bytesOf([&](Transport& out) {
            COutputer(nullptr, &out).output_cmdstat_spawn(parsed(line), 3, form);
        });
    };
    EXPECT_EQ("cmdstat\r\n\tstatus     : 1\r\n\tstatus_tag : COMMAND SPAWNED\r\n"
              "job\r\n\tjob_id     : 3\r\n",
              spawned("version", 1));
    EXPECT_EQ("", spawned("version -o error", 1));
    EXPECT_EQ("commandline=version\r\nstatus=1\r\nstatus_tag=COMMAND SPAWNED\r\njob_id=3\r\n"
              "endoutput\r\n",
              spawned("version", 2));
    EXPECT_EQ(std::string(XML_BEGIN) +
                  "<command><inputline>version</inputline></command><cmdstat><status>1</status>"
                  "<status_tag>COMMAND SPAWNED</status_tag><job><job_id>3</job_id></job>"
                  "</cmdstat></response>\r\n",
              spawned("version", 3));
}

TEST(FailedStatus, IsPrintedAtEveryVerbosityAndWithoutARecordIsASoftwareError) {
    JobError error;
    error.setCode(JobError::Other, JobError::CIM_ERR_ACCESS_DENIED, JobError::S_Unknown);
    const std::string block = failed("start system1", &error, 1);
    EXPECT_NE(std::string::npos, block.find("\t\tcimstat_desc  : CIM_ERR_ACCESS_DENIE\r\n"));
    EXPECT_EQ(block, failed("start -o error system1", &error, 1));
    EXPECT_NE(std::string::npos, failed("version", nullptr, 2)
                                     .find("errtype=4\r\nerrtype_desc=Software Error\r\n"
                                           "cimstat=1\r\ncimstat_desc=CIM_ERR_FAILED\r\n"));
}

TEST(ProcessingErrorResponse, RepeatsTheLineAsItWasTyped) {
    ProcessingError error(ProcessingError::INVALID_TARGET);
    const std::string bytes = bytesOf([&](Transport& out) {
        COutputer(nullptr, &out).pe_output(parsed("show -o format=clpxml <x>"), &error);
    });
    EXPECT_NE(std::string::npos, bytes.find("<inputline>show -o format=clpxml <x></inputline>"));
}

TEST(ResponseWithoutALine, EndsTheProcess) {
    EXPECT_DEATH(bytesOf([](Transport& out) {
                     COutputer(nullptr, &out).output_cmdstat_complete(nullptr, 1, "", 1);
                 }),
                 "px != 0");
}
