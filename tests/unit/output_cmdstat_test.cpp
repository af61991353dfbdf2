// The status block of a response, byte for byte, in its three forms.
#include "tests/unit/output_support.h"
#include "velclp/coutputer.h"

#include <gtest/gtest.h>

using namespace output_test;
using velmora_clp::CommandStatus;
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

std::string refused(const std::string& line, ProcessingError::error code) {
    ProcessingError error(code);
    return bytesOf(
        [&](Transport& out) { COutputer(nullptr, &out).pe_output(parsed(line), &error); });
}

std::string failed(const std::string& line, int form) {
    JobError error;
    error.setCode(JobError::Other, JobError::CIM_ERR_ACCESS_DENIED, JobError::S_Unknown);
    return bytesOf([&](Transport& out) {
        COutputer(nullptr, &out).output_cmdstat_je(parsed(line), &error, 12, form);
    });
}

} // namespace

TEST(ResponseForm, IsWhatTheLineAsksForAndTextOtherwise) {
    EXPECT_EQ(1, COutputer::output_format(nullptr));
    EXPECT_EQ(1, COutputer::output_format(parsed("version")));
    EXPECT_EQ(1, COutputer::output_format(parsed("version -output format=text")));
    EXPECT_EQ(2, COutputer::output_format(parsed("version -o format=(KEYWORD)")));
    EXPECT_EQ(3, COutputer::output_format(parsed("version -o terse,format=clpxml")));
}

TEST(ResponseForm, OfAFormatOptionThatWasCutOffIsText) {
    EXPECT_EQ(1, COutputer::output_format(parsed("version -o format=csv")));
}

TEST(ResponseVerbosity, IsTerseUnlessTheLineSaysVerboseOrError) {
    EXPECT_EQ(4, COutputer::output_verbose(nullptr));
    EXPECT_EQ(4, COutputer::output_verbose(parsed("version")));
    EXPECT_EQ(4, COutputer::output_verbose(parsed("version -o terse")));
    EXPECT_EQ(5, COutputer::output_verbose(parsed("version -o verbose")));
    EXPECT_EQ(6, COutputer::output_verbose(parsed("version -o error")));
    const auto line = parsed("version -o error");
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

TEST(CompletedStatus, InTextSaysNothingUnlessVerbose) {
    EXPECT_EQ("", completed("start system1", 1));
    EXPECT_EQ("", completed("start -o error system1", 1));
    EXPECT_EQ("cmdstat\r\n\tstatus     : 0\r\n\tstatus_tag : COMMAND COMPLETED\r\n",
              completed("start -o verbose system1", 1));
}

TEST(CompletedStatus, TellsHowLongTheResultIsKept) {
    EXPECT_EQ("Start the target and keep command result for 10 minutes \r\n",
              completed("start -keep 10 system1", 1));
    EXPECT_EQ("cmdstat\r\n\tstatus     : 0\r\n\tstatus_tag : COMMAND COMPLETED\r\n"
              "Start the target and keep command result for 10 minutes 30 seconds \r\n",
              completed("start -keep 10.30 -o verbose system1", 1));
    EXPECT_EQ("Start the target and keep command result for 1 minutes 2.3 seconds \r\n",
              completed("start -k 1.2.3 system1", 1));
}

TEST(CompletedStatus, InKeywordFormIsLeftOpenForTheVerb) {
    EXPECT_EQ("commandline=start -k 5 system1\r\nstatus=0\r\nstatus_tag=COMMAND COMPLETED\r\n"
              "job_id=12\r\nbegingroup=message\r\nowningentity=Velmora CLP\r\nmessage_id=1\r\n"
              "message=Start the target and keep command result for 5 minutes \r\nendgroup\r\n",
              completed("start -k 5 system1", 2));
}

TEST(CompletedStatus, InXmlLeavesTheResponseElementOpen) {
    EXPECT_EQ(std::string(XML_BEGIN) +
                  "<command><inputline>start system1</inputline></command><cmdstat><status>0"
                  "</status><status_tag>COMMAND COMPLETED</status_tag><job><job_id>12</job_id>"
                  "</job></cmdstat>\r\n",
              completed("start system1", 3));
    EXPECT_EQ(std::string(XML_BEGIN) +
                  "<command><inputline>start -k 5 system1</inputline></command><cmdstat>"
                  "<status>0</status><status_tag>COMMAND COMPLETED</status_tag>"
                  "<job><job_id>12</job_id></job><messages><message>"
                  "<messageentity>Velmora CLP</messageentity><messageid>1</messageid>"
                  "<messagetext>Start the target and keep command result for 5 minutes "
                  "</messagetext></message></messages></cmdstat>\r\n",
              completed("start -k 5 system1", 3));
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

TEST(FailedStatus, IsPrintedAtEveryVerbosity) {
    const std::string block = "cmdstat\r\n\tstatus     : 3\r\n"
                              "\tstatus_tag : COMMAND EXECUTION FAILED\r\n"
                              "job\r\n\tjob_id     : 12\r\n\tjoberr\r\n"
                              "\t\terrtype       : 1\r\n\t\terrtype_desc  : Other\r\n"
                              "\t\tcimstat       : 2\r\n"
                              "\t\tcimstat_desc  : CIM_ERR_ACCESS_DENIE\r\n"
                              "\t\tseverity      : 0\r\n\t\tseverity_desc : Unknown\r\n";
    EXPECT_EQ(block, failed("start system1", 1));
    EXPECT_EQ(block, failed("start -o error system1", 1));
}

TEST(FailedStatus, InKeywordAndXmlIsLeftOpenForTheVerb) {
    EXPECT_EQ("commandline=cd system9\r\nstatus=3\r\nstatus_tag=COMMAND EXECUTION FAILED\r\n"
              "job_id=12\r\nerrtype=1\r\nerrtype_desc=Other\r\ncimstat=2\r\n"
              "cimstat_desc=CIM_ERR_ACCESS_DENIE\r\nseverity=0\r\nseverity_desc=Unknown\r\n",
              failed("cd system9", 2));
    EXPECT_EQ(std::string(XML_BEGIN) +
                  "<command><inputline>cd system9</inputline></command><cmdstat><status>3</status>"
                  "<status_tag>COMMAND EXECUTION FAILED</status_tag><job><job_id>12</job_id>"
                  "<joberr><errtype>1</errtype><errtype_desc>Other</errtype_desc>"
                  "<cimstat>2</cimstat><cimstat_desc>CIM_ERR_ACCESS_DENIE</cimstat_desc>"
                  "<severity>0</severity><severity_desc>Unknown</severity_desc></joberr></job>"
                  "</cmdstat>\r\n",
              failed("cd system9", 3));
}

TEST(FailedStatus, WithoutARecordOfTheFailureIsASoftwareError) {
    const std::string bytes = bytesOf([](Transport& out) {
        COutputer(nullptr, &out).output_cmdstat_je(parsed("version"), nullptr, 1, 2);
    });
    EXPECT_NE(std::string::npos, bytes.find("errtype=4\r\nerrtype_desc=Software Error\r\n"
                                            "cimstat=1\r\ncimstat_desc=CIM_ERR_FAILED\r\n"));
}

TEST(ProcessingErrorResponse, AlignsOnTheLongerNames) {
    EXPECT_EQ("cmdstat\r\n\tstatus       : 2\r\n\tstatus_tag   : COMMAND PROCESSING FAILED\r\n"
              "\terror        : 252\r\n\terror_tag    : COMMAND SYNTAX ERROR\r\n",
              refused("show -a -a", ProcessingError::COMMAND_SYNTAX_ERROR));
}

TEST(ProcessingErrorResponse, EndsInKeywordAndXml) {
    EXPECT_EQ("commandline=show -o format=keyword -q\r\nstatus=2\r\n"
              "status_tag=COMMAND PROCESSING FAILED\r\nerror=251\r\nerror_tag=INVALID OPTION\r\n"
              "endoutput\r\n",
              refused("show -o format=keyword -q", ProcessingError::INVALID_OPTION));
    EXPECT_EQ(
        std::string(XML_BEGIN) +
            "<command><inputline>show -o format=clpxml <x></inputline></command><cmdstat>"
            "<status>2</status><status_tag>COMMAND PROCESSING FAILED</status_tag>"
            "<error>246</error><error_tag>INVALID TARGET</error_tag></cmdstat></response>\r\n",
        refused("show -o format=clpxml <x>", ProcessingError::INVALID_TARGET));
}

TEST(ResponseWithoutALine, EndsTheProcess) {
    EXPECT_DEATH(bytesOf([](Transport& out) {
                     COutputer(nullptr, &out).output_cmdstat_complete(nullptr, 1, "", 1);
                 }),
                 "px != 0");
}
