// The rows that a query gave, in memory.
#ifndef VELCLP_PLATFORM_DATABASE_ROWS_H
#define VELCLP_PLATFORM_DATABASE_ROWS_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct sqlite3_stmt;

namespace database {

using ColumnNames = std::vector<std::string>;

// One value. Text stands in the rows' common store.
struct Cell {
    enum class Kind : std::uint8_t { null, integer, real, text };
    Kind kind = Kind::null;
    std::uint32_t length = 0;
    union {
        std::int64_t integer = 0;
        double real;
        std::size_t offset;
    };
};

struct Rows {
    std::shared_ptr<const ColumnNames> columns;
    std::vector<Cell> cells;
    std::string store;

    std::size_t count() const { return columns->empty() ? 0 : cells.size() / columns->size(); }
    // Takes over the row that the statement stands on.
    void append(sqlite3_stmt* statement);
};

} // namespace database

#endif
