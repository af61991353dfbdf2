// A result over rows in memory.
#ifndef VELCLP_PLATFORM_DATABASE_RESULTSET_H
#define VELCLP_PLATFORM_DATABASE_RESULTSET_H

#include "database/cdbc.h"
#include "database/rows.h"

#include <string_view>

namespace database {

class ResultSet final : public DBResultSet {
public:
    explicit ResultSet(Rows rows);

    int columnCount() override;
    bool next() override;
    std::string getString(const std::string& column) override;
    bool isNull(const std::string& column) override;
    double getDouble(const std::string& column) override;
    int getInt(const std::string& column) override;
    std::int64_t getInt64(const std::string& column) override;
    int rowCount() override;
    void close() override;

private:
    const Cell& cell(const std::string& column) const;
    std::string_view text(const Cell& cell) const;

    Rows m_rows;
    // Number of the current row, from 1; 0 in front of the first.
    std::size_t m_row = 0;
};

} // namespace database

#endif
