// UTF-8 as XML 1.0 wants it.
#pragma once

#include <string_view>

namespace velclp_sim {

/// Length of the well-formed UTF-8 sequence at the front of the text, 1 to 4; 0 when there is none
/// (RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF).
unsigned utf8Length(std::string_view text);

/// True when the whole text is well-formed UTF-8.
bool isUtf8(std::string_view text);

} // namespace velclp_sim
