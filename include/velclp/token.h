#ifndef VELCLP_TOKEN_H
#define VELCLP_TOKEN_H

#include <string>
#include <utility>
#include <vector>

#include "velclp/tree.h"

// One parsed command line: verb, target, options and properties. The engine makes it empty, adds
// the root node "option" to the option tree and has CLPParser fill it; after the parse it is only
// read, by the command's thread too. After a failed parse it keeps what was stored up to the error,
// since a response echoes that.
class CLPToken {
public:
    enum CLPPropertyType { PROPERTY_NAME = 0, ASSIGN_PROPERTY = 1, FILTER_PROPERTY = 2 };
    using PropertyList = std::vector<std::pair<std::string, std::string>>;

    // The names of one kind in order of entry. A type above 2 ends the process.
    std::vector<std::string> getPropertyNames(CLPPropertyType type) const;

    // Stores the value of the first property of that exact name and gives true; false if there is
    // none. The type must be ASSIGN_PROPERTY or FILTER_PROPERTY and the name must not be empty, or
    // the process ends.
    bool getProperty(const std::string& name, std::string& value, CLPPropertyType type) const;

    // Whether the line has an option. The path has ":" between its levels, as in "-output:format";
    // an empty one ends the process.
    bool hasOption(const std::string& path) const;

    // Stores the value of an option, by the same path, and gives true; false when the option is not
    // there, holds no value or has suboptions. The value of a bare "-display:targets" is "".
    bool getOption(const std::string& path, std::string& value) const;

    // The options of the line by their long names, in ascending order.
    std::vector<std::string> getOptionNames() const;

    std::string _CommandLine; // the whole line as typed
    std::string _Verb;        // lower case, also when it is unknown
    std::string _Target;      // lower case, but for "SESSION" and the terms of help
    std::string _AssocClass;  // lower case: the second part of a "=>" target
    std::string _Ref;         // the third part of a "=>" target
    velmora_clp::MapTree<std::string, std::string> _Options;
    std::vector<std::string> _PropertyNames;
    PropertyList _AssignProperties;
    PropertyList _FilterProperties;
};

#endif
