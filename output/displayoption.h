// The option -display of show: which sections the line asks for, and which of their entries.
#ifndef VELCLP_OUTPUT_DISPLAYOPTION_H
#define VELCLP_OUTPUT_DISPLAYOPTION_H

#include <string>
#include <vector>

class CLPToken;

namespace velmora_clp {

inline constexpr char const* OPT_ALL = "-all";
inline constexpr char const* OPT_DISPLAY = "-display";
inline constexpr char const* OPT_DISPLAY_ALL = "-display:all";
inline constexpr char const* OPT_DISPLAY_PROPERTIES = "-display:properties";
inline constexpr char const* OPT_DISPLAY_TARGETS = "-display:targets";
inline constexpr char const* OPT_DISPLAY_ASSOCIATIONS = "-display:associations";
inline constexpr char const* OPT_DISPLAY_VERBS = "-display:verbs";

// Whether a section is shown: it is named, or all are, or the line has no -display at all. names
// takes the entries that the selector lists, none when it stands alone.
bool sectionShown(const CLPToken& line, char const* selector, std::vector<std::string>& names);
// The same for verbs, whose selector lists nothing.
bool verbsShown(const CLPToken& line);

// Whether the list holds the name, in any case.
bool listed(const std::vector<std::string>& list, const std::string& name);

} // namespace velmora_clp

#endif
