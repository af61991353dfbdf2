// What was asked of the simulator: how often each operation on each class, and the last calls in
// their order. Read and reset through /sim/stats and /sim/log.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace velclp_sim {

class Statistics {
public:
    /// Counts a call. `operation` is an operation's canonical name, or "InvokeMethod" with the
    /// method's name behind it; `subject` is a class that exists, or empty. Both must come from
    /// bounded sets.
    void count(const std::string& operation, const std::string& method, const std::string& subject);

    /// Writes the call and its outcome (0, or a CIM or HTTP status) into the log, which keeps the
    /// last 10,000 calls.
    void log(const std::string& operation, std::string_view object, int outcome);

    /// {"total":3,"operations":{"GetInstance":{"total":2,"classes":{"C":2}}},
    ///  "methods":{"ClearLog":{"total":1,"classes":{"C":1}}}}
    std::string toJson() const;
    /// One call a line: operation, object, outcome, with blanks between them.
    std::string toLog() const;
    void reset();
    void resetLog();

private:
    struct Counter {
        std::uint64_t total = 0;
        std::map<std::string, std::uint64_t> classes;
    };
    using Counters = std::map<std::string, Counter>;

    static void appendJson(std::string& out, const Counters& counters);

    mutable std::mutex mutex_;
    std::uint64_t total_ = 0;
    Counters operations_;
    Counters methods_;
    std::deque<std::string> log_;
};

} // namespace velclp_sim
