#include "velclp/clpsession.h"

#include "velclp/clpstring.h"
#include "velclp/dbstatement.h"
#include "velclp/locations.h"
#include "velclp/log.h"

#include <cstdarg>

namespace velmora_clp {

const char* sessionColumn(int element) {
    static const char* const names[CLPSession::ElementCount] = {
        "KeepTime",       "OEMVelmora_pid",  "WaitBehavior",         "DisplayOption",
        "OutputCount",    "OutputFormat",    "OutputLanguage",       "OutputOrder",
        "OutputPosition", "OutputVerbosity", "CurrentDefaultTarget",
    };
    return element >= 0 && element < CLPSession::ElementCount ? names[element] : "";
}

void GetElementFromDB(int id, int element, int type, sResult& result) {
    const char* const function = "CLP.GetElementFromDB";
    VELCLP_TRACE(function);
    databaseWork(function, [&] {
        const std::string name = sessionColumn(element);
        DbStatement statement(function, Locations::get().sessionDatabase);
        DBResultSet& row =
            statement.query("SELECT " + name + " from CLPSession where id=" + std::to_string(id));
        if (!row.next())
            return;
        if (type == SESSION_NUMBER) {
            result.number = row.getInt(name);
        } else if (type == SESSION_FLAG) {
            result.flag = row.getInt(name) != 0;
        } else {
            const std::string text = row.getString(name);
            if (!text.empty())
                result.text = newText(text);
        }
    });
}

void SetElementToDB(int id, int element, int type, ...) {
    const char* const function = "CLP.SetElementToDB";
    VELCLP_TRACE(function);
    va_list arguments;
    va_start(arguments, type);
    std::string value;
    if (type == SESSION_NUMBER || type == SESSION_FLAG) {
        value = std::to_string(va_arg(arguments, int));
    } else {
        const char* const text = va_arg(arguments, const char*);
        value = text != nullptr ? text : "";
    }
    va_end(arguments);
    const std::string sql = std::string("update CLPSession set ") + sessionColumn(element) + " ='" +
                            value + "' where id=" + std::to_string(id);
    databaseWork(function, [&] {
        DbStatement statement(function, Locations::get().sessionDatabase);
        if (statement.update(sql) != 0)
            VELCLP_LOG_FAILURE(function, "Update DB Failed.statement is:%s", sql.c_str());
    });
}

} // namespace velmora_clp
