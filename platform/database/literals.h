// Callers write values into their SQL as quoted literals. Lifting these out gives one text for
// statements that differ in values only, so that a prepared statement can be used again.
#ifndef VELCLP_PLATFORM_DATABASE_LITERALS_H
#define VELCLP_PLATFORM_DATABASE_LITERALS_H

#include <string>
#include <vector>

namespace database {

struct LiftedSql {
    // The SQL with "?" in place of each literal.
    std::string text;
    // The literals' values in order, without quotes.
    std::vector<std::string> values;
};

// Lifts the literals of a SELECT, INSERT, UPDATE or DELETE. False, and the result is not to be
// used, when the text holds none, or anything that makes it doubtful whether the lifted form
// means the same: comments, quoted names, parameters, blobs, unbalanced quotes. Patterns of LIKE
// and GLOB are left alone too: only as constants do they use an index without a new plan a run.
bool liftLiterals(const std::string& sql, LiftedSql& lifted);

} // namespace database

#endif
