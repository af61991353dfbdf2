// The platform's configuration store: typed values by key. Behind it stands a text file of
// "key=value" lines, "/etc/velclp/console.conf" unless told otherwise; blank lines and lines that
// begin with "#" are skipped, blanks around key and value do not count, the last line of a key
// holds. Any thread may call any of these.
#ifndef VELCLP_PLATFORM_CONFIG_AIM_CONFIG_H
#define VELCLP_PLATFORM_CONFIG_AIM_CONFIG_H

#include <string>

// Opens the store for a client: reads the file. The two numbers belong to the interface of
// controllers' stores and have no effect here. False when the file cannot be read, or is no
// regular file or larger than 64 KiB.
bool aim_init_nocallback(const char* client, unsigned flags, int mode);

// Stores the key's value ("true", "yes", "on", "false", "no" or "off", in any case). False, and
// the value as it was, without such a key, or when it holds something else.
bool aim_config_get_bool(const char* key, bool* value);

// Stores the key's value, a decimal number in the range of an int. False as above.
bool aim_config_get_int(const char* key, int* value);

// Sets the file that the next aim_init_nocallback() reads, and forgets what was read.
void aim_config_use_file(const std::string& path);

#endif
