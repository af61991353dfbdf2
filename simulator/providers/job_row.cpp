#include "simulator/providers/job_row.h"

#include "simulator/providers/toolkit.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace velclp_sim {

using Row = SessionDatabase::Row;

namespace {

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

bool isInterval(const std::string& column) {
    return column == "TimeBeforeRemoval" || column == "ElapsedTime" || column == "RunStartInterval";
}

/// The numbers of a list such as "{2,6}".
Value listOf(const std::string& text) {
    Value::Array numbers;
    std::size_t at = text.find_first_of("0123456789");
    while (at != std::string::npos) {
        const std::size_t end = std::min(text.find_first_not_of("0123456789", at), text.size());
        numbers.emplace_back(std::strtoull(text.substr(at, end - at).c_str(), nullptr, 10));
        at = text.find_first_of("0123456789", end);
    }
    return Value(std::move(numbers));
}

/// The column's text as the property has it; NULL where it says nothing.
Value valueOf(const Property& property, const std::string& column, const Row& row) {
    const std::string& text = row.at(column);
    if (text.empty()) {
        return {};
    }
    if (property.isArray) {
        return listOf(text);
    }
    if (property.type == CimType::datetime) {
        const std::int64_t time = jobNumber(row, column);
        if (isInterval(column)) {
            return intervalText(std::max<std::int64_t>(time, 0));
        }
        return time > 0 ? Value(timeText(time)) : Value();
    }
    if (property.type == CimType::boolean) {
        return text != "0";
    }
    return scalarFromText(text, property.type, column);
}

} // namespace

const std::vector<std::string>& jobColumns() {
    static const std::vector<std::string> names = wordsOf(
        "id ElementName Status RunDay OEMVelmora_pid JobStatus DeleteOnCompletion "
        "ScheduledStartTime ElapsedTime Notify OperationalStatus RunMonth Owner Caption Priority "
        "UntilTime InstallDate RunStartInterval ErrorDescription JobState ErrorCode JobRunTimes "
        "TimeSubmitted StartTime TimeBeforeRemoval OtherRecoveryAction TimeOfLastStateChange "
        "RunDayOfWeek RecoveryAction PercentComplete LocalOrUtcTime HealthState Description Name "
        "TimeToRemove");
    return names;
}

std::int64_t jobNumber(const Row& row, const std::string& column) {
    return std::strtoll(row.at(column).c_str(), nullptr, 10);
}

void fillJob(Instance& instance, const Row& row) {
    for (const std::string& column : jobColumns()) {
        if (const Property* property = instance.cls().property(column)) {
            try {
                instance.set(column, valueOf(*property, column, row));
            } catch (const CimError&) {
                instance.set(column, Value());
            }
        }
    }
}

Row newJobRow(const std::string& pid, const std::string& interval) {
    constexpr std::int64_t usual = 300 * microsecondsPerSecond;
    Row row;
    for (const std::string& column : jobColumns()) {
        row[column] = "";
    }
    const std::string now = std::to_string(nowMicroseconds());
    for (const char* column :
         {"InstallDate", "TimeSubmitted", "StartTime", "TimeOfLastStateChange"}) {
        row[column] = now;
    }
    row["ElementName"] = "CLP Concrete Job";
    row["OEMVelmora_pid"] = pid;
    row["OperationalStatus"] = "{2,6}";
    row["DeleteOnCompletion"] = "1";
    row["JobState"] = std::to_string(jobRunning);
    row["JobRunTimes"] = "1";
    row["ErrorCode"] = "0";
    row["TimeBeforeRemoval"] = std::to_string(microsecondsOf(interval).value_or(usual));
    return row;
}

std::string jobSetting(const std::string& property, const Value& value) {
    if (sameName(property, "TimeBeforeRemoval")) {
        const auto interval = microsecondsOf(value.toString());
        if (!interval) {
            throw CimError(CimStatus::invalidParameter, property + " is no interval");
        }
        return "TimeBeforeRemoval=" + std::to_string(*interval);
    }
    if (!sameName(property, "JobState") || value.isNull()) {
        throw CimError(CimStatus::notSupported, property + " cannot be written");
    }
    const std::string now = std::to_string(nowMicroseconds());
    std::string settings =
        "JobState=" + std::to_string(value.toSigned()) + ",TimeOfLastStateChange=" + now;
    if (value.toSigned() > jobLastLiving) {
        settings += ",TimeToRemove=" + now + "+TimeBeforeRemoval";
    }
    return settings;
}

} // namespace velclp_sim
