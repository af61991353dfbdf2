#include "database/failure.h"

#include "database/cdbc.h"

#include <array>
#include <cstdio>
#include <sqlite3.h>

namespace database {

namespace {

bool isOfTheFile(int code) {
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_READONLY:
    case SQLITE_IOERR:
    case SQLITE_CORRUPT:
    case SQLITE_FULL:
    case SQLITE_CANTOPEN:
    case SQLITE_NOTADB:
        return true;
    default:
        return false;
    }
}

[[noreturn]] void raise(const char* text, int code, int extendedCode,
                        const std::string& statement) {
    // The exception holds a plain pointer, so its text stands in memory of the thread.
    static thread_local std::array<char, 512> kept;
    std::snprintf(kept.data(), kept.size(), "%s", text);
    CDBC_Exception failure;
    failure.set(kept.data(), code, extendedCode, statement);
    throw failure;
}

} // namespace

void fail(sqlite3* db, int code, const std::string& statement, const std::string& path) {
    std::string text = db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(code);
    if (isOfTheFile(code))
        text += ": " + path;
    raise(text.c_str(), code & 0xff, db != nullptr ? sqlite3_extended_errcode(db) : code,
          statement);
}

void fail(const std::string& text, int code, const std::string& statement) {
    raise(text.c_str(), code & 0xff, code, statement);
}

} // namespace database
