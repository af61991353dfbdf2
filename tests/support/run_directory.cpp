#include "tests/support/run_directory.h"

#include "provision.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sqlite3.h>
#include <sstream>
#include <stdexcept>

namespace {

std::string makeDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "velclp-test.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("cannot make " + name);
    return name;
}

// The tests look at databases with SQLite itself, not through the layer that they may be testing.
std::string runSql(const std::string& path, const std::string& sql) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> db(opened, sqlite3_close);
    if (result != SQLITE_OK)
        throw std::runtime_error("cannot open " + path);
    sqlite3_busy_timeout(opened, 10000);
    std::string rows;
    const auto addRow = [](void* into, int width, char** values, char**) {
        auto& text = *static_cast<std::string*>(into);
        for (int i = 0; i < width; ++i)
            text += (i > 0 ? "|" : "") + std::string(values[i] != nullptr ? values[i] : "NULL");
        text += '\n';
        return 0;
    };
    if (sqlite3_exec(opened, sql.c_str(), addRow, &rows, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(opened) + (" in " + sql));
    return rows;
}

} // namespace

RunDirectory::RunDirectory() : m_path(makeDirectory()) {
    host::provision(m_path);
}

RunDirectory::~RunDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void RunDirectory::write(const std::string& name, const std::string& content) const {
    std::ofstream out(file(name), std::ios::binary | std::ios::trunc);
    if (!(out << content).flush())
        throw std::runtime_error("cannot write " + file(name));
}

std::string RunDirectory::read(const std::string& name) const {
    std::ifstream in(file(name), std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot read " + file(name));
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

void RunDirectory::execute(const std::string& database, const std::string& sql) const {
    runSql(file(database), sql);
}

std::string RunDirectory::query(const std::string& database, const std::string& sql) const {
    return runSql(file(database), sql);
}
