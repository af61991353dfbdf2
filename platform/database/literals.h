// Callers write values into their SQL as quoted literals. Lifting these out gives one text for
// statements that differ in values only, so that a prepared statement can be used again.
#ifndef VELCLP_PLATFORM_DATABASE_LITERALS_H
#define VELCLP_PLATFORM_DATABASE_LITERALS_H

#include <string>
#include <vector>

namespace database {

struct Literal {
    // Without quotes.
    std::string text;
    // A whole number that stood without quotes, and not its text.
    bool isNumber = false;
};

struct LiftedSql {
    // The SQL with "?" in place of each literal.
    std::string text;
    // The literals in order.
    std::vector<Literal> values;
};

// Lifts the literals of a SELECT, INSERT, UPDATE or DELETE: quoted texts, and whole numbers where
// nothing but a value can stand, behind "=" and in the lists of an INSERT. False, and the result is
// not to be used, when the text holds none, or anything that makes it doubtful whether the lifted
// form means the same: comments, quoted names, parameters, blobs, unbalanced quotes. Patterns of
// LIKE and GLOB are left alone too: only as constants do they use an index without a new plan a
// run.
bool liftLiterals(const std::string& sql, LiftedSql& lifted);

} // namespace database

#endif
