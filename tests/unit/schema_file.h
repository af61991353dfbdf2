// A schema file of one test's own, which the library of this process reads from then on.
#ifndef VELCLP_TESTS_SCHEMA_FILE_H
#define VELCLP_TESTS_SCHEMA_FILE_H

#include <fstream>
#include <string>

#include <stdlib.h>
#include <unistd.h>

#include "velclp/locations.h"

class SchemaFile {
public:
    explicit SchemaFile(const std::string& content) {
        char name[] = "/tmp/velclp-schema-XXXXXX";
        const int descriptor = mkstemp(name);
        close(descriptor);
        m_path = name;
        std::ofstream(m_path, std::ios::binary) << content;
        velmora_clp::Locations locations;
        locations.schemaFile = m_path;
        velmora_clp::Locations::set(locations);
    }
    SchemaFile(const SchemaFile&) = delete;
    SchemaFile& operator=(const SchemaFile&) = delete;
    ~SchemaFile() { unlink(m_path.c_str()); }

private:
    std::string m_path;
};

#endif
