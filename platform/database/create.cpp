#include "database/create.h"

#include "database/failure.h"

#include <memory>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Close {
    void operator()(sqlite3* db) const { sqlite3_close(db); }
};

void build(const std::string& path, const std::string& script) {
    sqlite3* opened = nullptr;
    const int result =
        sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    const std::unique_ptr<sqlite3, Close> db(opened);
    if (result != SQLITE_OK)
        database::fail(opened, result, "", path);
    const std::string whole = "BEGIN;" + script + ";COMMIT;PRAGMA journal_mode=WAL";
    const int run = sqlite3_exec(opened, whole.c_str(), nullptr, nullptr, nullptr);
    if (run != SQLITE_OK)
        database::fail(opened, run, whole, path);
}

} // namespace

void createDatabase(const std::string& path, const std::string& script) {
    struct stat status {};
    const bool existed = lstat(path.c_str(), &status) == 0;
    try {
        build(path, script);
    } catch (...) {
        if (!existed)
            unlink(path.c_str());
        throw;
    }
}
