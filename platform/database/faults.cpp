#include "database/faults.h"

#include "database/faultpoint.h"

#include <mutex>

namespace dbfaults {

std::atomic<bool> planted{false};

namespace {

struct Plan {
    int skip = 0;
    int count = 0;
    int code = 0;
};

struct Plans {
    std::mutex mutex;
    Plan statement;
    Plan connection;
    int happened = 0;
};

Plans& plans() {
    static auto* instance = new Plans;
    return *instance;
}

int take(Plan& plan) {
    if (plan.count == 0)
        return 0;
    if (plan.skip > 0) {
        --plan.skip;
        return 0;
    }
    --plan.count;
    return plan.code;
}

void plant(Plan Plans::*which, int nth, int code, int count) {
    Plans& all = plans();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.*which = Plan{nth - 1, count, code};
    planted = true;
}

int takeFrom(Plan Plans::*which) {
    Plans& all = plans();
    const std::lock_guard<std::mutex> lock(all.mutex);
    const int code = take(all.*which);
    all.happened += code != 0 ? 1 : 0;
    planted = all.statement.count > 0 || all.connection.count > 0;
    return code;
}

} // namespace

void failStatement(int nth, int code, int count) {
    plant(&Plans::statement, nth, code, count);
}

void failConnection(int nth, int code, int count) {
    plant(&Plans::connection, nth, code, count);
}

int happened() {
    Plans& all = plans();
    const std::lock_guard<std::mutex> lock(all.mutex);
    return all.happened;
}

void clear() {
    Plans& all = plans();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.statement = all.connection = Plan();
    all.happened = 0;
    planted = false;
}

int takeStatementFault() {
    return takeFrom(&Plans::statement);
}

int takeConnectionFault() {
    return takeFrom(&Plans::connection);
}

} // namespace dbfaults
