#include "velclp/locations.h"

namespace velmora_clp {

namespace {
Locations& current() {
    static Locations locations;
    return locations;
}
} // namespace

const Locations& Locations::get() {
    return current();
}

void Locations::set(const Locations& locations) {
    current() = locations;
}

Locations Locations::inDirectory(const std::string& directory) {
    Locations locations;
    locations.schemaFile = directory + "/schema.conf";
    locations.addressDatabase = "sqlite:" + directory + "/clp.db3";
    locations.sessionDatabase = "sqlite:" + directory + "/clpsvc.db3";
    return locations;
}

} // namespace velmora_clp
