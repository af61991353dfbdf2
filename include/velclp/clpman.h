// The reader of the help topic file, and the set-up of a serial console from the platform's
// configuration store. One topic file is open at a time; one command at a time reads it.
#ifndef VELCLP_CLPMAN_H
#define VELCLP_CLPMAN_H

#include <fstream>
#include <string>

// The open topic file; null when there is none.
extern std::ifstream* ManFile;
// Cleared by initForSerial.
extern char ser_str_console_command[256];

// Opens the topic file: 0, or 2 when the file cannot be reached.
int CLP_Man_Init(std::string path);
void CLP_Man_Fini();
// The text of a topic, matched exactly with either name in the topic's head; "" when the file has
// none. Without an open file `text` is left as it is.
void CLP_Man_GetTopic(std::string topic, std::string& text);

// On a serial line takes the console's settings: the idle time-out is set from them. Gives -1 when
// the console is not to be used, 0 when it is or when standard input is no serial line.
int initForSerial();

// How initForSerial learns the name of a descriptor's terminal; null stands for ttyname().
void setTtyNameFunc(const char* (*name)(int));

namespace velmora_clp {
using ::CLP_Man_Fini;
using ::CLP_Man_GetTopic;
using ::CLP_Man_Init;
using ::initForSerial;
} // namespace velmora_clp

#endif
