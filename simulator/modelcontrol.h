// Changes of the model while the simulator runs (/sim/model) or before it starts (--scale): adding,
// removing, reordering and multiplying instances. They go to the repository itself: providers are
// not asked.
#pragma once

#include "simulator/repository.h"

#include <string>
#include <string_view>
#include <vector>

namespace velclp_sim {

/// The object paths of the class's instances (and its subclasses'), one a line, in their order;
/// those of every class when `className` is empty.
std::string listModel(const Repository& repository, const std::string& nameSpace,
                      const std::string& className);

/// Compiles the MOF text into the namespace. Throws MofError.
void addToModel(Repository& repository, const std::string& nameSpace, std::string_view mof);

/// Removes the instances whose paths stand one a line (without a namespace: in the one given).
/// Throws CimError for the first that is not there; those above it are gone then.
void removeFromModel(Repository& repository, const std::string& nameSpace, std::string_view paths);

/// Gives the class's instances a new order: `how` is "reverse", "rotate" (the first becomes the
/// last), or object paths, one a line, that come first. Throws CimError.
void reorderModel(Repository& repository, const std::string& nameSpace,
                  const std::string& className, std::string_view how);

/// What --scale asks for: CLASS=N or CLASS=N:Property,Property.
struct Scale {
    std::string className;
    std::uint64_t count = 0;
    std::vector<std::string> numbered;
};

/// Throws std::invalid_argument.
Scale readScale(std::string_view text);

/// Copies the class's instances, in turn, until there are as many as asked for. A copy gets another
/// value in the last of its own keys, and a number above all others in the integer properties of
/// `numbered`. The association instances that tie an original to something are copied with it, but
/// not those in which it is the parent (roles GroupComponent, Antecedent, Collection,
/// OwningElement). Throws CimError, also when there is nothing to copy.
void scaleModel(Repository& repository, const std::string& nameSpace, const Scale& scale);

} // namespace velclp_sim
