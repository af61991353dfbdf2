// The parameters of an intrinsic operation, read by name in the types that the operation wants.
#pragma once

#include "simulator/cimxmlreader.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velclp_sim {

class RequestArguments {
public:
    /// The request must outlive this object.
    explicit RequestArguments(const Request& request) : request_(request) {}

    // What is missing or of another kind throws CIM_ERR_INVALID_PARAMETER; an optional parameter
    // that is NULL counts as not given.
    bool boolean(std::string_view name, bool otherwise) const;
    std::string text(std::string_view name) const;
    std::optional<std::string> optionalText(std::string_view name) const;
    std::string className(std::string_view name) const;
    std::optional<std::string> optionalClassName(std::string_view name) const;
    /// The object's path with the request's namespace; without keys it names a class.
    ObjectPath path(std::string_view name) const;
    const RawInstance& instance(std::string_view name) const;
    /// A list of names; nothing when it was not given.
    std::optional<std::vector<std::string>> names(std::string_view name) const;
    /// Null when the parameter was not given.
    const RawParameter* find(std::string_view name) const;

    const std::string& nameSpace() const { return request_.nameSpace; }

private:
    const RawParameter& demand(std::string_view name) const;

    const Request& request_;
};

} // namespace velclp_sim
