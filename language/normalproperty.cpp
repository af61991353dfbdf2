#include "language/normalproperty.h"

#include <algorithm>

#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"

using velmora_clp::splitString;

namespace {

std::string numbered(const std::string& value) {
    const auto pieces = splitString(value, ",");
    if (pieces.size() < 2)
        return value;
    std::string result;
    for (std::size_t i = 0; i < pieces.size(); ++i)
        result += (i == 0 ? "" : ":") + pieces[i] + "," + std::to_string(i);
    return result;
}

} // namespace

void normalProperty(std::vector<std::pair<std::string, std::string>>& list) {
    VELCLP_TRACE("CLP.normalProperty");
    std::vector<std::pair<std::string, std::string>> normal;
    for (const auto& property : list) {
        const auto path = splitString(property.first, ":");
        const auto n = path.size();
        VELCLP_ASSERT(n <= 2 && n >= 1, "n<=2&&n>=1");
        if (n == 1) {
            normal.emplace_back(property.first, numbered(property.second));
            continue;
        }
        const std::string element = property.second + "," + path[1];
        const auto entry = std::find_if(normal.begin(), normal.end(),
                                        [&](const auto& other) { return other.first == path[0]; });
        if (entry == normal.end())
            normal.emplace_back(path[0], element);
        else
            entry->second += (entry->second.empty() ? "" : ":") + element;
    }
    list.swap(normal);
}
