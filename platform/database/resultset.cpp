#include "database/resultset.h"

#include "database/failure.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
#include <sqlite3.h>
#include <strings.h>

namespace database {

namespace {

template<typename Number>
Number leadingNumber(std::string_view text, Number outOfRange(bool negative)) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())) != 0)
        text.remove_prefix(1);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    Number number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    if (parsed.ec == std::errc::result_out_of_range)
        return outOfRange(text.front() == '-');
    return parsed.ec == std::errc() ? number : 0;
}

double realFromText(std::string_view text) {
    return leadingNumber<double>(text,
                                 [](bool negative) { return negative ? -HUGE_VAL : HUGE_VAL; });
}

std::int64_t integerFromText(std::string_view text) {
    return leadingNumber<std::int64_t>(text, [](bool negative) {
        using Limits = std::numeric_limits<std::int64_t>;
        return negative ? Limits::min() : Limits::max();
    });
}

std::int64_t integerFromReal(double real) {
    constexpr double limit = 9223372036854775808.0;
    if (std::isnan(real))
        return 0;
    if (real >= limit)
        return std::numeric_limits<std::int64_t>::max();
    if (real < -limit)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(real);
}

std::string textFromReal(double real) {
    const std::unique_ptr<char, void (*)(void*)> text(sqlite3_mprintf("%!.15g", real),
                                                      sqlite3_free);
    return text ? text.get() : "";
}

} // namespace

void Rows::append(sqlite3_stmt* statement) {
    const int width = sqlite3_column_count(statement);
    for (int i = 0; i < width; ++i) {
        Cell& cell = cells.emplace_back();
        switch (sqlite3_column_type(statement, i)) {
        case SQLITE_NULL:
            break;
        case SQLITE_INTEGER:
            cell.kind = Cell::Kind::integer;
            cell.integer = sqlite3_column_int64(statement, i);
            break;
        case SQLITE_FLOAT:
            cell.kind = Cell::Kind::real;
            cell.real = sqlite3_column_double(statement, i);
            break;
        default: {
            const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, i));
            const auto length = static_cast<std::uint32_t>(sqlite3_column_bytes(statement, i));
            cell.kind = Cell::Kind::text;
            cell.length = length;
            cell.offset = store.size();
            if (bytes != nullptr)
                store.append(bytes, length);
        }
        }
    }
}

ResultSet::ResultSet(Rows rows) : m_rows(std::move(rows)) {}

int ResultSet::columnCount() {
    return static_cast<int>(m_rows.columns->size());
}

bool ResultSet::next() {
    if (m_row <= m_rows.count())
        ++m_row;
    return m_row <= m_rows.count();
}

std::string ResultSet::getString(const std::string& column) {
    const Cell& value = cell(column);
    switch (value.kind) {
    case Cell::Kind::integer:
        return std::to_string(value.integer);
    case Cell::Kind::real:
        return textFromReal(value.real);
    case Cell::Kind::text:
        return std::string(text(value));
    default:
        return "";
    }
}

bool ResultSet::isNull(const std::string& column) {
    return cell(column).kind == Cell::Kind::null;
}

double ResultSet::getDouble(const std::string& column) {
    const Cell& value = cell(column);
    switch (value.kind) {
    case Cell::Kind::integer:
        return static_cast<double>(value.integer);
    case Cell::Kind::real:
        return value.real;
    case Cell::Kind::text:
        return realFromText(text(value));
    default:
        return 0;
    }
}

int ResultSet::getInt(const std::string& column) {
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(
        std::clamp<std::int64_t>(getInt64(column), Limits::min(), Limits::max()));
}

std::int64_t ResultSet::getInt64(const std::string& column) {
    const Cell& value = cell(column);
    switch (value.kind) {
    case Cell::Kind::integer:
        return value.integer;
    case Cell::Kind::real:
        return integerFromReal(value.real);
    case Cell::Kind::text:
        return integerFromText(text(value));
    default:
        return 0;
    }
}

int ResultSet::rowCount() {
    return static_cast<int>(m_rows.count());
}

void ResultSet::close() {
    delete this;
}

const Cell& ResultSet::cell(const std::string& column) const {
    if (m_row == 0 || m_row > m_rows.count())
        fail("no current row", SQLITE_MISUSE);
    const ColumnNames& names = *m_rows.columns;
    const auto found = std::find_if(names.begin(), names.end(), [&column](const auto& name) {
        return name.size() == column.size() && strcasecmp(name.c_str(), column.c_str()) == 0;
    });
    if (found == names.end())
        fail("no such column in the result: " + column, SQLITE_MISUSE);
    const auto index = static_cast<std::size_t>(found - names.begin());
    return m_rows.cells[(m_row - 1) * names.size() + index];
}

std::string_view ResultSet::text(const Cell& cell) const {
    return std::string_view(m_rows.store).substr(cell.offset, cell.length);
}

} // namespace database
