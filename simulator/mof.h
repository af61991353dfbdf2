// A MOF text (DSP0004, annex A) as it was read: declarations in their order, each with its place in
// the text, nothing resolved yet. MofParser makes it, MofCompiler gives it meaning.
#pragma once

#include "simulator/value.h"

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace velclp_sim {

struct MofPlace {
    std::shared_ptr<const std::string> file;
    unsigned line = 0;
    unsigned column = 0;

    /// "file:line:column".
    std::string text() const {
        return *file + ":" + std::to_string(line) + ":" + std::to_string(column);
    }
};

/// A fault in a MOF text; what() begins with its place.
class MofError : public std::runtime_error {
public:
    MofError(const MofPlace& place, const std::string& message)
        : std::runtime_error(place.text() + ": " + message) {}
};

struct MofValue {
    MofPlace place;
    /// The literal; NULL for null and for an alias.
    Value literal;
    /// True for a character in single quotes.
    bool character = false;
    /// The alias without its "$"; empty when the value is none.
    std::string alias;
    /// True for { ... }; then only `elements` counts.
    bool isArray = false;
    std::vector<MofValue> elements;
};

struct MofQualifier {
    MofPlace place;
    std::string name;
    std::optional<MofValue> value;
    std::vector<std::string> flavors;
};

/// A property, a reference or a parameter; a method when `isMethod`.
struct MofFeature {
    MofPlace place;
    std::vector<MofQualifier> qualifiers;
    std::string name;
    CimType type = CimType::string;
    std::string referenceClass;
    bool isArray = false;
    unsigned arraySize = 0;
    std::optional<MofValue> value;
    bool isMethod = false;
    std::vector<MofFeature> parameters;
};

struct MofQualifierType {
    MofPlace place;
    std::string name;
    CimType type = CimType::boolean;
    bool isArray = false;
    std::optional<MofValue> value;
    std::vector<std::string> scopes;
    std::vector<std::string> flavors;
};

struct MofClass {
    MofPlace place;
    std::vector<MofQualifier> qualifiers;
    std::string name;
    std::string superName;
    std::vector<MofFeature> features;
};

struct MofAssignment {
    MofPlace place;
    std::string name;
    MofValue value;
};

struct MofInstance {
    MofPlace place;
    std::string className;
    std::string alias;
    std::vector<MofAssignment> assignments;
};

struct MofPragma {
    MofPlace place;
    std::string name;
    std::string argument;
};

using MofItem = std::variant<MofPragma, MofQualifierType, MofClass, MofInstance>;
using MofDocument = std::vector<MofItem>;

/// Reads a text; `file` is the name for messages. Throws MofError.
MofDocument parseMof(std::string_view text, const std::string& file);

} // namespace velclp_sim
