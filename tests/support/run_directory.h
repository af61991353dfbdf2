// A provisioned run directory of one test's own, removed with everything in it at the end.
#ifndef VELCLP_TESTS_SUPPORT_RUN_DIRECTORY_H
#define VELCLP_TESTS_SUPPORT_RUN_DIRECTORY_H

#include "velclp/locations.h"

#include <string>

class RunDirectory {
public:
    // Both databases, empty, and copies of the sample schema and of the help topics.
    RunDirectory();
    ~RunDirectory();
    RunDirectory(const RunDirectory&) = delete;
    RunDirectory& operator=(const RunDirectory&) = delete;

    const std::string& path() const { return m_path; }
    // The path of a name in the directory.
    std::string file(const std::string& name) const { return m_path + "/" + name; }
    std::string addressDatabase() const { return "sqlite:" + file("clp.db3"); }

    // The record that makes the library work in this directory.
    velmora_clp::Locations locations() const { return velmora_clp::Locations::inDirectory(m_path); }
    // Makes the library of this process work in this directory. Before anything else of it is used.
    void use() const { velmora_clp::Locations::set(locations()); }

    // Writes a file of the directory, over what was there.
    void write(const std::string& name, const std::string& content) const;
    std::string read(const std::string& name) const;

    // Runs a statement on a database of the directory ("clp.db3"). Throws std::runtime_error.
    void execute(const std::string& database, const std::string& sql) const;
    // A query's rows, one line each, columns joined by "|".
    std::string query(const std::string& database, const std::string& sql) const;

private:
    std::string m_path;
};

#endif
