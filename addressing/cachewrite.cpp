#include "addressing/cachewrite.h"

#include "addressing/cacherows.h"
#include "velclp/assertion.h"
#include "velclp/dbstatement.h"

namespace velmora_clp::addrcache {

const char* const rowCounter = "/";

namespace {

void insertKey(DbStatement& statement, CMPIObjectPath* path, unsigned int index, int id) {
    CimStatus status;
    CMPIString* rawName = nullptr;
    CMPIData key = path->ft->getKeyAt(path, index, &rawName, status.out());
    const CimString name(rawName);
    const std::unique_ptr<char, decltype(&std::free)> str(value2Chars(key.type, &key.value),
                                                          &std::free);
    VELCLP_ASSERT(str, "str");
    const int r =
        statement.update("INSERT INTO addrsvc_cim(id,name,value,type) VALUES(" + quoted(id) + "," +
                         quoted(cimText(name.get())) + "," + quoted(std::string(str.get())) + "," +
                         quoted(static_cast<int>(key.type)) + ")");
    VELCLP_ASSERT(r == 0, "r==0");
}

} // namespace

int readCounter(const char* function, DBConnection& db, const std::string& key) {
    DbStatement statement(function, db);
    DBResultSet& result =
        statement.query("SELECT next  FROM addrsvc_seq WHERE ufip=" + quoted(key));
    return result.next() ? result.getInt("next") : -1;
}

void writeCounter(const char* function, DBConnection& db, const std::string& key, int next,
                  bool add) {
    VELCLP_ASSERT(next > 0, "id>0");
    DbStatement statement(function, db);
    if (add) {
        VELCLP_LOG_BRANCH(function, "Add seq!");
        statement.update("INSERT INTO addrsvc_seq(ufip,next) VALUES(" + quoted(key) + "," +
                         quoted(next) + ")");
    } else {
        statement.update("UPDATE addrsvc_seq SET next=" + quoted(next) +
                         " WHERE ufip=" + quoted(key));
    }
}

void insertRow(const char* function, DBConnection& db, const std::string& ufip,
               CMPIObjectPath* path, int id, const std::string& ns) {
    DbStatement statement(function, db);
    statement.update("INSERT INTO addrsvc_clp(ufip,cimclass,id,ns) VALUES(" + quoted(ufip) + "," +
                     quoted(cimClassName(path)) + "," + quoted(id) + "," + quoted(ns) + ")");
    CimStatus status;
    const unsigned int count = path->ft->getKeyCount(path, status.out());
    for (unsigned int i = 0; i < count; ++i)
        insertKey(statement, path, i, id);
}

void deleteRows(const char* function, DBConnection& db, const std::string& condition) {
    DbStatement statement(function, db);
    statement.update("DELETE FROM addrsvc_cim WHERE id IN (SELECT (id) FROM addrsvc_clp WHERE " +
                     condition + ")");
    statement.update("DELETE FROM addrsvc_clp WHERE " + condition);
}

void deleteSubtree(const char* function, DBConnection& db, const std::string& ufip) {
    deleteRows(function, db, subtree(ufip));
    DbStatement(function, db).update("DELETE FROM addrsvc_seq WHERE " + below(ufip));
}

} // namespace velmora_clp::addrcache
