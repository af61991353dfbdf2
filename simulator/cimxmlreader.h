// Reads a CIM-XML request (DSP0200, DSP0201). The bytes come from anyone: size is limited by the
// HTTP server, and structure, nesting and text are checked here. Values stay as texts until the
// declaration they belong to gives them a type.
#pragma once

#include "simulator/objectpath.h"
#include "simulator/value.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velclp_sim {

/// A request that cannot be answered with a CIM reply: HTTP status and CIMError header
/// (DSP0200, 6.2).
class RequestError : public std::runtime_error {
public:
    RequestError(int status, std::string cimError, const std::string& detail)
        : std::runtime_error(detail), status_(status), cimError_(std::move(cimError)) {}
    int status() const { return status_; }
    const std::string& cimError() const { return cimError_; }

private:
    int status_;
    std::string cimError_;
};

/// A value as it was sent: scalars are strings, arrays hold strings and NULL, references are paths.
struct RawProperty {
    std::string name;
    /// The TYPE attribute; nothing when it was not sent.
    std::optional<CimType> type;
    bool isArray = false;
    Value value;
};

struct RawInstance {
    std::string className;
    std::vector<RawProperty> properties;
};

/// An IPARAMVALUE or a PARAMVALUE. A CLASSNAME is a path without keys.
struct RawParameter {
    std::string name;
    std::optional<CimType> type;
    Value value;
    std::optional<RawInstance> instance;
};

struct Request {
    std::string messageId;
    bool intrinsic = true;
    /// The operation or the extrinsic method, as sent.
    std::string name;
    std::string nameSpace;
    /// What an extrinsic method is called on; without keys it is a class.
    ObjectPath object;
    std::vector<RawParameter> parameters;
};

/// Throws RequestError.
Request readRequest(std::string_view body);

/// A raw value as the type has it. Throws CIM_ERR_TYPE_MISMATCH.
Value typedValue(const Value& raw, CimType type, bool isArray, const std::string& what);

} // namespace velclp_sim
