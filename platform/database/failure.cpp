#include "database/failure.h"

#include "database/cdbc.h"

#include <array>
#include <cstdio>
#include <sqlite3.h>

namespace database {

namespace {

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

void fail(sqlite3* db, int code, const std::string& statement) {
    if (db == nullptr)
        raise(sqlite3_errstr(code), code & 0xff, code, statement);
    raise(sqlite3_errmsg(db), code & 0xff, sqlite3_extended_errcode(db), statement);
}

void fail(const std::string& text, int code, const std::string& statement) {
    raise(text.c_str(), code & 0xff, code, statement);
}

} // namespace database
