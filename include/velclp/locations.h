// Where the library finds what lies outside it: files, databases and programs. A host program may
// replace the record before it builds anything else; nothing is read from the environment, which
// belongs to the operator.
#ifndef VELCLP_LOCATIONS_H
#define VELCLP_LOCATIONS_H

#include <string>

namespace velmora_clp {

struct Locations {
    // The schema; also the file whose lock keeps processes apart.
    std::string schemaFile = "/usr/bin/schema.conf";
    // The database of addresses and stop requests, and the one of sessions and jobs.
    std::string addressDatabase = "sqlite:/tmp/clp.db3";
    std::string sessionDatabase = "sqlite:/tmp/clpsvc.db3";
    // What the words of the same name run.
    std::string tolmaxProgram = "/bin/tolmax";
    std::string connectProgram = "/bin/connect";

    // The record in force.
    static const Locations& get();
    // Replaces it. Call it before any other part of the library is used, from one thread.
    static void set(const Locations& locations);
    // The record for a provisioned run directory: everything but the programs lies in it.
    static Locations inDirectory(const std::string& directory);
};

} // namespace velmora_clp

#endif
