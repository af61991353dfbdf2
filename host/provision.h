// Makes a run directory: all files that a session of the library needs.
#ifndef VELCLP_HOST_PROVISION_H
#define VELCLP_HOST_PROVISION_H

#include <string>

namespace host {

// Makes the directory (mode 0755; its parent must exist) and in it the databases "clp.db3" and
// "clpsvc.db3" (mode 0666: the sessions of all logins write them) and the sample files
// "schema.conf" and "help.txt" (mode 0644). What is there already is left alone; each file
// appears whole or not at all. Throws std::runtime_error with a line that says what went wrong,
// also where a name is taken by a symbolic link or anything but a directory or a plain file.
void provision(const std::string& directory);

} // namespace host

#endif
