// A target address of SM ME addressing (DSP0215): what a user typed, absolute or relative, brought
// into one normal form, the resultant address, and cut into terms. Knows the shape of a term and
// nothing of schema, CIM or cache; the text of a resultant address is the key of the cache.
#ifndef VELCLP_ADDRPATH_H
#define VELCLP_ADDRPATH_H

#include <cstdint>
#include <string>
#include <vector>

namespace velmora_clp {

class CLPAddrpath {
public:
    // A normal-form object of an address that is known to be valid, under the current default
    // target cdt; anything else is a programmer's error and ends the process. Text from outside
    // goes through setPath().
    CLPAddrpath(const std::string& cdt, const std::string& path);

    // Takes over an address as typed: absolute, or relative to cdt; "\" separates as "/" does, "."
    // and ".." act, and an empty text means cdt as it stands. False, and the object at "/" with
    // type 0, when the text is no address. cdt must not be empty and the text not "SESSION".
    bool setPath(const std::string& cdt, const std::string& path);

    // 0: one object; 1: all instances of the last term's class below the parent.
    std::int32_t getType() const { return type; }

    // The whole address: begins with "/", ends in no "/" unless it is "/", holds no empty term.
    std::string getResultantAddress() const { return path; }

    // The parent of a class address ("" when that is the root), otherwise the address itself.
    std::string getResultantTarget() const;

    // The terms in order; "/" has none.
    std::vector<std::string> getTerms() const;

    // The class tag of a term: "system12" gives "system", "sp1*" gives "sp1". The term is one of a
    // resultant address; other text ends the process. Independent of the object's state.
    std::string getUfct(const std::string& addrTerm) const;

    // The instance suffix of a term, as text: "system007" gives "007", "system*" gives "*". The
    // same holds for the term as above.
    std::string getUfis(const std::string& addrTerm) const;

private:
    std::string path;
    std::int32_t type = 0;
};

} // namespace velmora_clp

#endif
