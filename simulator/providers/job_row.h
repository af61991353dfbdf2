// What a row of the table CLPCmdJob is as an instance of ZORM_CLPConcreteJob. Columns are
// properties of the same name; times are microseconds in the row, points in time or intervals in
// the instance.
#pragma once

#include "simulator/providers/session_database.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velclp_sim {

constexpr std::int64_t microsecondsPerSecond = 1000000;
constexpr std::int64_t jobRunning = 4;
/// States above this one are ends.
constexpr std::int64_t jobLastLiving = 6;
constexpr std::int64_t jobKilled = 9;

/// The columns that a job is made of.
const std::vector<std::string>& jobColumns();

/// The column as a number; 0 for an empty one.
std::int64_t jobNumber(const SessionDatabase::Row& row, const std::string& column);

/// Takes the row's values over, but for the key.
void fillJob(Instance& instance, const SessionDatabase::Row& row);

/// A row like those that sessions write, for a job that begins now; the interval is how long it is
/// to be kept.
SessionDatabase::Row newJobRow(const std::string& pid, const std::string& interval);

/// The SET clause of an UPDATE that gives the property the value. Throws CIM_ERR_NOT_SUPPORTED for
/// what cannot be written.
std::string jobSetting(const std::string& property, const Value& value);

} // namespace velclp_sim
