#include "velclp/token.h"

#include <algorithm>

#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"

namespace {

std::vector<std::string> optionPath(const std::string& path) {
    auto keys = velmora_clp::splitString(path, ":");
    keys.insert(keys.begin(), "option");
    return keys;
}

std::vector<std::string> names(const CLPToken::PropertyList& list) {
    std::vector<std::string> result;
    result.reserve(list.size());
    for (const auto& property : list)
        result.push_back(property.first);
    return result;
}

} // namespace

std::vector<std::string> CLPToken::getPropertyNames(CLPPropertyType type) const {
    VELCLP_TRACE("CLP.CLPToken.getPropertyNames");
    VELCLP_ASSERT(type == PROPERTY_NAME || type == ASSIGN_PROPERTY || type == FILTER_PROPERTY,
                  "type==PROPERTY_NAME||type==ASSIGN_PROPERTY||type==FILTER_PROPERTY");
    if (type == PROPERTY_NAME)
        return _PropertyNames;
    return names(type == ASSIGN_PROPERTY ? _AssignProperties : _FilterProperties);
}

bool CLPToken::getProperty(const std::string& name, std::string& value,
                           CLPPropertyType type) const {
    VELCLP_TRACE("CLP.CLPToken.getProperty");
    VELCLP_ASSERT(type == ASSIGN_PROPERTY || type == FILTER_PROPERTY,
                  "type==ASSIGN_PROPERTY||type==FILTER_PROPERTY");
    VELCLP_ASSERT(!name.empty(), "!name.empty()");
    const auto& list = type == ASSIGN_PROPERTY ? _AssignProperties : _FilterProperties;
    const auto found = std::find_if(list.begin(), list.end(),
                                    [&](const auto& property) { return property.first == name; });
    if (found == list.end())
        return false;
    value = found->second;
    return true;
}

bool CLPToken::hasOption(const std::string& path) const {
    VELCLP_TRACE("CLP.CLPToken.hasOption");
    VELCLP_ASSERT(!path.empty(), "!path.empty()");
    return _Options.hasNode(optionPath(path));
}

bool CLPToken::getOption(const std::string& path, std::string& value) const {
    VELCLP_TRACE("CLP.CLPToken.getOption");
    VELCLP_ASSERT(!path.empty(), "!path.empty()");
    const auto keys = optionPath(path);
    if (!_Options.hasNode(keys) || _Options.hasChildren(keys))
        return false;
    const std::string* stored = _Options.getValue(keys);
    if (!stored)
        return false;
    value = *stored;
    return true;
}

std::vector<std::string> CLPToken::getOptionNames() const {
    VELCLP_TRACE("CLP.CLPToken.getOptionNames");
    const std::vector<std::string> root{"option"};
    return _Options.hasChildren(root) ? _Options.getChildrenKeys(root) : std::vector<std::string>();
}
