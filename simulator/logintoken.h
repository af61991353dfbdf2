// Who calls: the simulator reads the user of HTTP Basic authentication as a login token. A user
// name of at least one character and four hexadecimal digits behind it is a token: the digits are
// the login's privileges, 0000 may nothing, 0001 may only read, every other value may everything.
// Any other user, and a client that does not log in, may everything. Passwords mean nothing here.
#pragma once

#include "simulator/provider.h"

#include <string>
#include <string_view>

namespace velclp_sim {

/// The caller of an Authorization header; an empty or unreadable header is a client that does not
/// log in.
Caller callerOf(std::string_view authorization);

} // namespace velclp_sim
