#include "output/displayoption.h"

#include "velclp/clpstring.h"
#include "velclp/token.h"

#include <algorithm>

namespace velmora_clp {

namespace {

bool everythingShown(const CLPToken& line) {
    return line.hasOption(OPT_DISPLAY_ALL) || !line.hasOption(OPT_DISPLAY);
}

} // namespace

bool sectionShown(const CLPToken& line, char const* selector, std::vector<std::string>& names) {
    std::string value;
    const bool named = line.getOption(selector, value);
    names = splitString(value, ":", false);
    return named || everythingShown(line);
}

bool verbsShown(const CLPToken& line) {
    return line.hasOption(OPT_DISPLAY_VERBS) || everythingShown(line);
}

bool listed(const std::vector<std::string>& list, const std::string& name) {
    return std::any_of(list.begin(), list.end(), [&name](const std::string& entry) {
        return strcmp_nocase(entry.c_str(), name.c_str()) == 0;
    });
}

} // namespace velmora_clp
