#include "velclp/clpcmdjob.h"

#include "core/connection.h"
#include "velclp/clpstring.h"
#include "velclp/dbstatement.h"
#include "velclp/locations.h"
#include "velclp/log.h"

#include <sys/time.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

namespace velmora_clp {

namespace {

const char* const UNKNOWN_ERROR = "catch an unknow error!";
const int LAST_STATE_OF_A_RUNNING_JOB = 6;

std::int64_t now() {
    timeval tv{};
    gettimeofday(&tv, nullptr);
    return static_cast<std::int64_t>(tv.tv_sec) * 1000000 + tv.tv_usec;
}

std::string insertStatement(int timeBeforeRemoval) {
    const std::string time = std::to_string(now());
    const struct {
        const char* name;
        std::string value;
    } columns[] = {
        {"ElementName", "'CLP Concrete Job'"},
        {"Status", "NULL"},
        {"RunDay", "0"},
        {"OEMVelmora_pid", std::to_string(getpid())},
        {"JobStatus", "NULL"},
        {"DeleteOnCompletion", "1"},
        {"ScheduledStartTime", "0"},
        {"ElapsedTime", "0"},
        {"Notify", "NULL"},
        {"OperationalStatus", "'{2,6}'"},
        {"RunMonth", "0"},
        {"Owner", "NULL"},
        {"Caption", "NULL"},
        {"Priority", "0"},
        {"UntilTime", "0"},
        {"InstallDate", time},
        {"InstanceID", "NULL"},
        {"RunStartInterval", "0"},
        {"ErrorDescription", "NULL"},
        {"JobState", "4"},
        {"ErrorCode", "0"},
        {"JobRunTimes", "1"},
        {"TimeSubmitted", time},
        {"StartTime", time},
        {"TimeBeforeRemoval", std::to_string(timeBeforeRemoval)},
        {"OtherRecoveryAction", "NULL"},
        {"TimeOfLastStateChange", time},
        {"StatusDescriptions", "NULL"},
        {"RunDayOfWeek", "0"},
        {"RecoveryAction", "0"},
        {"PercentComplete", "0"},
        {"LocalOrUtcTime", "0"},
        {"HealthState", "0"},
        {"Description", "NULL"},
        {"Name", "NULL"},
    };
    std::string names;
    std::string values;
    for (const auto& column : columns) {
        if (!names.empty()) {
            names += ',';
            values += ',';
        }
        names += column.name;
        values += column.value;
    }
    return "INSERT INTO CLPCmdJob(" + names + ")Values(" + values + ")";
}

std::string nameStatement(int id) {
    char sql[1024];
    std::snprintf(sql, sizeof sql,
                  "update CLPCmdJob set InstanceID='clpjob:%d',Name='CLP Concrete Job%d' where "
                  "id=%d",
                  id, id, id);
    return sql;
}

// Sets columns of a job's row; the assignments are SQL.
void updateElements(const char* function, DbStatement& statement, int id,
                    const std::string& assignments) {
    const std::string sql =
        "update CLPCmdJob set " + assignments + " where id=" + std::to_string(id);
    if (statement.update(sql) != 0)
        VELCLP_LOG_FAILURE(function, "Update DB failed.statement is:%s", sql.c_str());
}

std::uint64_t cutToInteger(double value) {
    if (!(value > 0))
        return 0;
    const double limit = 18446744073709551616.0;
    return value < limit ? static_cast<std::uint64_t>(value) : UINT64_MAX;
}

} // namespace

CLPCmdJob::CLPCmdJob(int timeBeforeRemoval) : m_id(0), m_timeBeforeRemoval(timeBeforeRemoval) {
    const char* const function = "CLP.CLPCmdJob.CLPCmdJob";
    VELCLP_TRACE(function);
    databaseWork(
        function,
        [&] {
            // One transaction: the row and its name cost one write to the disk.
            const OwnedConnection connection = openConnection(Locations::get().sessionDatabase);
            DBTransaction transaction(*connection);
            DbStatement statement(function, *connection);
            statement.update(insertStatement(m_timeBeforeRemoval));
            DBResultSet& row =
                statement.query("SELECT max(id) FROM CLPCmdJob where OEMVelmora_pid = '" +
                                std::to_string(getpid()) + "'");
            int id = 0;
            if (row.next()) {
                id = row.getInt("max(id)");
                VELCLP_LOG_VALUE(function, "Entry created just now id is %d", id);
            } else {
                VELCLP_LOG_FAILURE(function, "Get id failed");
            }
            if (statement.update(nameStatement(id)) != 0)
                VELCLP_LOG_FAILURE(function, "Update DB failed");
            transaction.commit();
            // A row that is undone leaves its number to another process's job.
            m_id = id;
        },
        UNKNOWN_ERROR);
}

CLPCmdJob::~CLPCmdJob() = default;

void* CLPCmdJob::getElementValue(std::string name, int type) {
    return getElementValueFromDB(m_id, name, type);
}

void CLPCmdJob::setElementValue(std::string name, std::string value, int type) {
    setElementValueToDB(m_id, name, value, type);
}

void CLPCmdJob::RequestStateChange(unsigned short state) {
    const char* const function = "CLP.CLPCmdJob.RequestStateChange";
    VELCLP_TRACE(function);
    VELCLP_LOG_VALUE(function, "id=[%d],state=[%d]", m_id, static_cast<int>(state));
    databaseWork(
        function,
        [&] {
            DbStatement statement(function, Locations::get().sessionDatabase);
            const std::int64_t time = now();
            std::string assignments = "JobState =" + std::to_string(state) +
                                      ",TimeOfLastStateChange =" + std::to_string(time);
            if (state > LAST_STATE_OF_A_RUNNING_JOB)
                assignments += ",TimeToRemove =" + std::to_string(time + m_timeBeforeRemoval);
            updateElements(function, statement, m_id, assignments);
        },
        UNKNOWN_ERROR);
}

void* getElementValueFromDB(int id, std::string& name, int type) {
    const char* const function = "CLP.getElementValueFromDB";
    VELCLP_TRACE(function);
    void* value = nullptr;
    databaseWork(
        function,
        [&] {
            DbStatement statement(function, Locations::get().sessionDatabase);
            DBResultSet& row = statement.query("SELECT " + name +
                                               " from CLPCmdJob where id=" + std::to_string(id));
            if (!row.next())
                return;
            if (type == 0)
                value = new int(row.getInt(name));
            else if (type == 2)
                value = new std::uint64_t(cutToInteger(row.getDouble(name)));
            else
                value = newText(row.getString(name));
        },
        UNKNOWN_ERROR);
    return value;
}

void setElementValueToDB(int id, std::string& name, std::string& value, int) {
    const char* const function = "CLP.setElementValueToDB";
    VELCLP_TRACE(function);
    databaseWork(
        function,
        [&] {
            DbStatement statement(function, Locations::get().sessionDatabase);
            updateElements(function, statement, id, name + " =" + value);
        },
        UNKNOWN_ERROR);
}

} // namespace velmora_clp
