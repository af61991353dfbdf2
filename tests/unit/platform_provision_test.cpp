// What provisioning leaves in a run directory, and that the databases' indexes serve the queries.
#include "provision.h"
#include "tests/support/run_directory.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string failureOf(const std::string& directory) {
    try {
        host::provision(directory);
    } catch (const std::runtime_error& failure) {
        return failure.what();
    }
    return "no failure";
}

unsigned modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(0, stat(path.c_str(), &status)) << path;
    return status.st_mode & 07777U;
}

TEST(Provisioning, MakesDatabasesThatEveryLoginCanWriteAndFilesThatAllCanRead) {
    const RunDirectory outer;
    const mode_t before = umask(077);
    host::provision(outer.file("run"));
    umask(before);
    EXPECT_EQ(0700U, modeOf(outer.file("run")));
    for (const char* name : {"clp.db3", "clp.db3-wal", "clp.db3-shm", "clpsvc.db3",
                             "clpsvc.db3-wal", "clpsvc.db3-shm"})
        EXPECT_EQ(0666U, modeOf(outer.file("run/" + std::string(name)))) << name;
    EXPECT_EQ(0644U, modeOf(outer.file("run/schema.conf")));
    EXPECT_EQ(0644U, modeOf(outer.file("run/help.txt")));
    const auto entries = std::filesystem::directory_iterator(outer.file("run"));
    EXPECT_EQ(8, std::distance(begin(entries), end(entries)));
}

TEST(Provisioning, LeavesAloneWhatIsThere) {
    const RunDirectory run;
    run.execute("clp.db3", "INSERT INTO addrsvc_seq VALUES('/','7')");
    run.write("schema.conf", "own\n");
    unlink(run.file("help.txt").c_str());
    host::provision(run.path());
    EXPECT_EQ("/|7\n", run.query("clp.db3", "SELECT * FROM addrsvc_seq"));
    EXPECT_EQ("own\n", run.read("schema.conf"));
    EXPECT_NO_THROW(run.read("help.txt"));
}

TEST(Provisioning, RefusesToFollowLinks) {
    const RunDirectory outer;
    const std::string elsewhere = outer.file("elsewhere");
    const std::string run = outer.file("run");
    ASSERT_EQ(0, symlink(elsewhere.c_str(), run.c_str()));
    EXPECT_EQ(run + ": is not a directory", failureOf(run));
    ASSERT_EQ(0, unlink(run.c_str()));
    ASSERT_EQ(0, mkdir(run.c_str(), 0700));
    for (const char* name : {"clp.db3", "clpsvc.db3", "schema.conf", "help.txt"}) {
        const std::string path = run + "/" + name;
        unlink(path.c_str());
        ASSERT_EQ(0, symlink(elsewhere.c_str(), path.c_str()));
        EXPECT_EQ(path + ": is not a plain file", failureOf(run));
        EXPECT_NE(0, access(elsewhere.c_str(), F_OK));
        unlink(path.c_str());
    }
    EXPECT_EQ("no failure", failureOf(run));
}

TEST(Provisioning, SaysWhyADirectoryCannotBeMade) {
    const RunDirectory outer;
    EXPECT_EQ(outer.file("a/b") + ": No such file or directory", failureOf(outer.file("a/b")));
    outer.write("file", "");
    EXPECT_EQ(outer.file("file") + ": is not a directory", failureOf(outer.file("file")));
}

TEST(Databases, FindSessionsAndJobsThroughAnIndex) {
    const RunDirectory run;
    const std::pair<const char*, const char*> statements[] = {
        {"clp.db3", "SELECT * from job_terminate where pid='12'"},
        {"clpsvc.db3", "SELECT id FROM CLPSession where OEMVelmora_pid = '12'"},
        {"clpsvc.db3", "SELECT max(id) FROM CLPCmdJob where OEMVelmora_pid = '12'"},
        {"clpsvc.db3",
         "DELETE FROM CLPCmdJob WHERE TimeToRemove>0 AND TimeToRemove<1700000000123456"}};
    for (const auto& [database, sql] : statements) {
        const std::string plan = run.query(database, std::string("EXPLAIN QUERY PLAN ") + sql);
        EXPECT_EQ(std::string::npos, plan.find("SCAN")) << sql;
    }
}

TEST(AddressDatabase, HoldsAnAddressAndARowNumberOnce) {
    const RunDirectory run;
    const std::string row = "INSERT INTO addrsvc_clp(ufip,cimclass,id,ns) VALUES";
    run.execute("clp.db3", row + "('/admin1','ZORM_AdminDomain','1','root/zorm')");
    EXPECT_THROW(run.execute("clp.db3", row + "('/admin1','ZORM_X','2','n')"), std::runtime_error);
    EXPECT_THROW(run.execute("clp.db3", row + "('/admin2','ZORM_X','1','n')"), std::runtime_error);
    EXPECT_EQ("1|integer\n", run.query("clp.db3", "SELECT id,typeof(id) FROM addrsvc_clp WHERE "
                                                  "cimclass='zorm_admindomain'"));
    run.execute("clp.db3",
                "INSERT INTO addrsvc_cim(id,name,value,type) VALUES('1','Name','007','16')");
    EXPECT_EQ(
        "007|text|16|integer\n",
        run.query("clp.db3", "SELECT value,typeof(value),type,typeof(type) FROM addrsvc_cim"));
}

TEST(SessionDatabase, GivesNoNumberOfAJobOutAgain) {
    const RunDirectory run;
    for (const char* number : {"1\n", "2\n"}) {
        run.execute("clpsvc.db3", "DELETE FROM CLPCmdJob");
        run.execute("clpsvc.db3", "INSERT INTO CLPCmdJob(OEMVelmora_pid) VALUES(1)");
        EXPECT_EQ(number, run.query("clpsvc.db3", "SELECT id FROM CLPCmdJob"));
    }
}

} // namespace
