// Faults that a test plants into the simulator (POST /sim/faults). A fault names the operation and
// the class that it waits for, how many matching calls it lets pass, how many it then hits, and
// what happens to those.
#pragma once

#include "simulator/cimclass.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace velclp_sim {

struct Fault {
    enum class Kind { error, drop, delay, cut, malformed, reply, http, methodReturn };

    unsigned id = 0;
    Kind kind = Kind::error;
    /// An operation's or an extrinsic method's name, or "InvokeMethod"; "*" for every one.
    std::string operation = "*";
    /// Hits objects of the class and of its subclasses; "*" for every one.
    std::string className = "*";
    /// Matching calls that still pass untouched.
    std::uint64_t skip = 0;
    /// Matching calls that are still to be hit.
    std::uint64_t count = 1;
    std::uint64_t hits = 0;
    /// error: the CIM status code. http: the HTTP status.
    int code = 1;
    /// error: the description's detail. methodReturn: the number. reply: the whole body.
    std::string text;
    /// delay: milliseconds. cut: bytes of the body that are still sent.
    std::uint64_t amount = 0;
};

class FaultTable {
public:
    /// Plants what the text asks for, one fault a line, in words `key=value` (a value may stand in
    /// double quotes); the lines behind one of kind "reply" are its body. Gives the new ids. Throws
    /// std::invalid_argument, with nothing planted then.
    std::vector<unsigned> plant(std::string_view text);

    /// All faults in the form that plant() reads, one a line, with `id` and `hits`.
    std::string list() const;

    /// Removes the fault with the id; all for id 0.
    void clear(unsigned id = 0);

    /// The faults that hit this call, in the order in which they were planted; counts the call.
    /// `cls` is the class the call is about; null when it is about none that is known.
    std::vector<Fault> hit(std::string_view operation, bool intrinsic, const Class* cls);

private:
    mutable std::mutex mutex_;
    std::vector<Fault> faults_;
    unsigned nextId_ = 1;
};

} // namespace velclp_sim
