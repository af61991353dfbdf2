#include "addressing/cacherows.h"

#include "mapping/cimvalue.h"
#include "schema/cimnamespace.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/dbstatement.h"
#include "velclp/schema.h"

#include <CimClientLib/native.h>
#include <boost/lexical_cast/try_lexical_convert.hpp>

#include <algorithm>

namespace velmora_clp::addrcache {

namespace {

// The parent of an address with a "/" behind it, as the database's index has it.
const char* const parentOfUfip = "rtrim(ufip,replace(ufip,char(47),char()))";

std::string parentOf(const std::string& text) {
    return text.substr(0, text.rfind('/') + 1);
}

// Addresses that go on with a digit behind the class key; the next character is no digit then.
std::string numbered(const std::string& classKey) {
    return "ufip>=" + quoted(classKey + "0") + " AND ufip<" + quoted(classKey + ":");
}

std::string behind(const std::string& text) {
    return "substr(ufip,length(" + quoted(text) + ")+1)";
}

std::string allDigits(const std::string& expression) {
    return "trim(" + expression + ",'0123456789')=''";
}

bool isStringType(CMPIType type) {
    return type == CMPI_string || type == CMPI_numericString || type == CMPI_booleanString ||
           type == CMPI_dateTimeString;
}

bool isUnsigned(CMPIType type) {
    return type == CMPI_uint8 || type == CMPI_uint16 || type == CMPI_uint32 || type == CMPI_uint64;
}

bool isSigned(CMPIType type) {
    return type == CMPI_sint8 || type == CMPI_sint16 || type == CMPI_sint32 || type == CMPI_sint64;
}

template<typename Member>
bool convert(const std::string& text, Member& member) {
    return boost::conversion::try_lexical_convert(text, member);
}

// The value of a key that is no string; false where the text gives none of that type.
bool plainValue(const CachedKey& key, CMPIValue& value) {
    if (key.type == CMPI_boolean) {
        value.boolean = key.value == "true" ? 1 : 0;
        return true;
    }
    CMPIUint64 bits = 0;
    if (isUnsigned(key.type)) {
        if (key.value.empty() || key.value.front() == '-' || !convert(key.value, bits))
            return false;
    } else if (isSigned(key.type)) {
        CMPISint64 number = 0;
        if (!convert(key.value, number))
            return false;
        bits = static_cast<CMPIUint64>(number);
    } else {
        return false;
    }
    setInteger(value, key.type, bits);
    return true;
}

void addKey(CMPIObjectPath* path, const CachedKey& key) {
    CMPIValue value = {};
    if (plainValue(key, value)) {
        path->ft->addKey(path, key.name.c_str(), &value, key.type);
        return;
    }
    CimStatus status;
    const CimString text(native_new_CMPIString(key.value.c_str(), status.out()));
    value.string = text.get();
    path->ft->addKey(path, key.name.c_str(), &value,
                     isStringType(key.type) ? key.type : CMPI_string);
}

// Each part with its length in front, so that no two lists of parts give the same text.
void appendPart(std::string& identity, const std::string& part) {
    identity += std::to_string(part.size());
    identity += ':';
    identity += part;
}

struct KeyIdentity {
    std::string name;
    std::string value;
};

std::string join(const std::string& ns, const std::string& cimclass,
                 std::vector<KeyIdentity>& keys) {
    std::sort(keys.begin(), keys.end(),
              [](const KeyIdentity& a, const KeyIdentity& b) { return a.name < b.name; });
    std::string identity;
    appendPart(identity, lowerString(ns));
    appendPart(identity, lowerString(cimclass));
    for (const KeyIdentity& key : keys) {
        appendPart(identity, key.name);
        appendPart(identity, key.value);
    }
    return identity;
}

KeyIdentity keyIdentity(const std::string& name, CMPIType type, CMPIValueState state,
                        const std::string& value) {
    return {lowerString(name), std::to_string(type) + ',' + std::to_string(state) + ',' + value};
}

CachedKey readKey(DBResultSet& result) {
    return {result.getString("keyname"), result.getString("keyvalue"),
            static_cast<CMPIType>(result.getInt("keytype") & 0xffff)};
}

std::vector<std::string> keyTexts(CMPIObjectPath* path) {
    CimStatus status;
    std::vector<std::string> texts;
    const unsigned int count = path->ft->getKeyCount(path, status.out());
    for (unsigned int i = 0; i < count; ++i) {
        const CMPIData key = path->ft->getKeyAt(path, i, nullptr, status.out());
        texts.push_back(cimValueText(key.type, key.value));
    }
    return texts;
}

struct Held {
    std::size_t place;
    int rows;
};

// Of several picks, each a table with a condition, the one of the fewest rows, counted up to a
// limit.
Held leastHeld(const char* function, DBConnection& db, const std::vector<std::string>& picks,
               int limit) {
    std::string sql;
    for (std::size_t i = 0; i < picks.size(); ++i)
        sql += (i == 0 ? "SELECT " : ",") + ("(SELECT count(*) FROM (SELECT 1 FROM " + picks[i]) +
               " LIMIT " + std::to_string(limit) + ")) AS held" + std::to_string(i);
    DbStatement statement(function, db);
    DBResultSet& result = statement.query(sql);
    Held least{0, limit};
    if (!result.next())
        return least;
    for (std::size_t i = 0; i < picks.size(); ++i) {
        const int rows = result.getInt("held" + std::to_string(i));
        if (rows < least.rows)
            least = {i, rows};
    }
    return least;
}

// The place of the key value that few rows hold, or the number of values where fewer are of the
// class: all that stands in a system holds every key value of the system. Nearly always one of the
// keys is the object's own, which a short count shows; only when none is does a longer one pay.
std::size_t rarest(const char* function, DBConnection& db, const std::vector<std::string>& values,
                   const std::string& cimclass) {
    constexpr int few = 8;
    constexpr int many = 2000;
    if (values.size() == 1)
        return 0;
    std::vector<std::string> picks;
    picks.reserve(values.size() + 1);
    for (const std::string& value : values)
        picks.push_back("addrsvc_cim WHERE value=" + quoted(value));
    picks.push_back("addrsvc_clp WHERE cimclass=" + quoted(cimclass));
    Held held = leastHeld(function, db, picks, few);
    if (held.rows == few)
        held = leastHeld(function, db, picks, many);
    return held.place;
}

// Reads rows with their keys; from names the tables that pick them, addrsvc_clp as "c". Sorting
// and merging is done here, since the database would build a table for it.
std::vector<CachedRow> readFrom(const char* function, DBConnection& db, const std::string& from,
                                const std::string& condition) {
    DbStatement statement(function, db);
    DBResultSet& result = statement.query(
        "SELECT c.ufip AS ufip,c.cimclass AS cimclass,c.id AS id,c.ns AS ns,k.rowid AS keyrow,"
        "k.name AS keyname,k.value AS keyvalue,k.type AS keytype FROM " +
        from + " LEFT JOIN addrsvc_cim k ON k.id=c.id WHERE " + condition);
    std::vector<CachedRow> rows;
    std::int64_t lastKey = 0;
    while (result.next()) {
        const int id = result.getInt("id");
        const std::int64_t key = result.getInt64("keyrow");
        // A row that two of its keys pick comes twice.
        if (rows.empty() || rows.back().id != id || key <= lastKey)
            rows.push_back({id,
                            result.getString("ufip"),
                            result.getString("cimclass"),
                            result.getString("ns"),
                            {}});
        if (key > 0)
            rows.back().keys.push_back(readKey(result));
        lastKey = key;
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const CachedRow& a, const CachedRow& b) { return a.id < b.id; });
    rows.erase(std::unique(rows.begin(), rows.end(),
                           [](const CachedRow& a, const CachedRow& b) { return a.id == b.id; }),
               rows.end());
    return rows;
}

} // namespace

std::string quoted(const std::string& text) {
    std::string literal = "'";
    for (const char c : text)
        literal.append(c == '\'' ? 2 : 1, c);
    return literal + "'";
}

std::string quoted(int number) {
    return "'" + std::to_string(number) + "'";
}

std::string instancesOf(const std::string& classKey) {
    return std::string(parentOfUfip) + "=" + quoted(parentOf(classKey)) + " AND " +
           numbered(classKey) + " AND " + allDigits(behind(classKey));
}

std::string subtreesOf(const std::string& classKey) {
    const std::string rest = behind(classKey);
    return numbered(classKey) + " AND " +
           allDigits("substr(" + rest + ",1,instr(" + rest + "||'/','/')-1)");
}

std::string directlyAt(const std::string& prefix) {
    // No character sorts behind the last one of Unicode.
    return std::string(parentOfUfip) + "=" + quoted(parentOf(prefix)) +
           " AND ufip>=" + quoted(prefix) + " AND ufip<" + quoted(prefix + "\xF4\x8F\xBF\xBF");
}

std::string below(const std::string& ufip) {
    return "(ufip>=" + quoted(ufip + "/") + " AND ufip<" + quoted(ufip + "0") + ")";
}

std::string subtree(const std::string& ufip) {
    return "(ufip=" + quoted(ufip) + " OR " + below(ufip) + ")";
}

std::vector<CachedRow> readRows(const char* function, DBConnection& db,
                                const std::string& condition) {
    return readFrom(function, db, "addrsvc_clp c", condition);
}

std::vector<CachedKey> readKeys(const char* function, DBConnection& db, int id) {
    DbStatement statement(function, db);
    DBResultSet& result =
        statement.query("SELECT name AS keyname,value AS keyvalue,type AS keytype FROM addrsvc_cim "
                        "WHERE id=" +
                        quoted(id) + " ORDER BY rowid");
    std::vector<CachedKey> keys;
    while (result.next())
        keys.push_back(readKey(result));
    return keys;
}

std::vector<CachedRow> readCandidates(const char* function, DBConnection& db,
                                      CMPIObjectPath* path) {
    const std::string cimclass = cimClassName(path);
    const std::string ofClass = "c.cimclass=" + quoted(cimclass);
    const std::vector<std::string> values = keyTexts(path);
    if (values.empty())
        return readRows(function, db,
                        ofClass + " AND NOT EXISTS(SELECT 1 FROM addrsvc_cim n WHERE n.id=c.id)");
    const std::size_t place = rarest(function, db, values, cimclass);
    if (place == values.size())
        return readRows(function, db, ofClass);
    // The plus keeps the class's own index, which picks far too many rows, out of the search.
    return readFrom(function, db, "addrsvc_cim s CROSS JOIN addrsvc_clp c ON c.id=s.id",
                    "s.value=" + quoted(values[place]) + " AND +" + ofClass);
}

CimPath rebuild(const CachedRow& row) {
    CimStatus status;
    CimPath path(newCMPIObjectPath(DEFAULT_NAMESPACE, row.cimclass.c_str(), status.out()));
    VELCLP_ASSERT(path, "objectpath");
    for (const CachedKey& key : row.keys)
        addKey(path.get(), key);
    path->ft->setNameSpace(path.get(), row.ns.c_str());
    return path;
}

std::optional<std::string> identityOf(CMPIObjectPath* path, const std::string& defaultNs) {
    CimStatus status;
    const CimString ns(path->ft->getNameSpace(path, status.out()));
    if (!ns || !status.ok())
        return std::nullopt;
    const CimString name(path->ft->getClassName(path, status.out()));
    if (!name || !status.ok())
        return std::nullopt;
    std::vector<KeyIdentity> keys;
    const unsigned int count = path->ft->getKeyCount(path, status.out());
    for (unsigned int i = 0; i < count; ++i) {
        CMPIString* rawName = nullptr;
        const CMPIData key = path->ft->getKeyAt(path, i, &rawName, status.out());
        const CimString keyName(rawName);
        keys.push_back(keyIdentity(cimText(keyName.get()), key.type, key.state,
                                   cimValueText(key.type, key.value)));
    }
    const std::string nsText = cimText(ns.get());
    return join(nsText.empty() ? defaultNs : nsText, cimText(name.get()), keys);
}

std::string identityOf(const CachedRow& row) {
    std::vector<KeyIdentity> keys;
    keys.reserve(row.keys.size());
    for (const CachedKey& key : row.keys)
        keys.push_back(keyIdentity(key.name, key.type, CMPI_keyValue, key.value));
    return join(row.ns, row.cimclass, keys);
}

bool isDynamic(const std::string& cimclass) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    return schema.hasCIMClass(cimclass) && schema.getType(cimclass) == "dynamic";
}

} // namespace velmora_clp::addrcache
