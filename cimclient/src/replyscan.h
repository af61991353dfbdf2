// One pass over the text of a reply before it is parsed.
#ifndef CIMCLIENT_REPLYSCAN_H
#define CIMCLIENT_REPLYSCAN_H

#include <string>

namespace cimclient {

// Renames VALUE and KEYVALUE elements that are written as empty-element tags (see absentValue), in
// place. Ends the call for text whose elements are too many or nested too deep to be taken in.
void scanReply(std::string& text);

} // namespace cimclient

#endif
