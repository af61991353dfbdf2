// Database access: a URL names a database, a driver hands out connections to it, a connection
// makes statements, a statement runs SQL and gives results. Behind it stand SQLite files.
//
// Handles on files are kept for the process and reused, so a connection costs no open; each
// connection, statement and result belongs to one thread at a time. Connection, statement and
// result are used through their virtual tables: the order of their operations is fixed, and
// close() ends them, which is why they have no virtual destructor.
#ifndef VELCLP_PLATFORM_DATABASE_CDBC_H
#define VELCLP_PLATFORM_DATABASE_CDBC_H

#include <cstdint>
#include <map>
#include <string>

// What a failed statement or a database that cannot be opened throws, by value.
class CDBC_Exception {
public:
    CDBC_Exception() = default;
    CDBC_Exception(const CDBC_Exception&) = default;
    CDBC_Exception& operator=(const CDBC_Exception&) = default;

    // Stores the arguments; the text is not copied and must outlive the exception.
    virtual void set(char* text, int code, int extendedCode);
    virtual void set(char* text, int code, int extendedCode, std::string statement);
    virtual ~CDBC_Exception();

    // The reason in the database's words, behind them the path of a file that is at fault; never
    // null. Text of the layer's own exceptions stays valid until the next failure in the same
    // thread.
    const char* text() const { return m_text != nullptr ? m_text : ""; }
    // SQLite's primary and extended result codes.
    int code() const { return m_code; }
    int extendedCode() const { return m_extendedCode; }
    // The SQL text that failed, empty when no statement was at work.
    const std::string& statement() const { return m_statement; }

private:
    char* m_text = nullptr;
    int m_code = 0;
    int m_extendedCode = 0;
    std::string m_statement;
};

// The rows of one query, read from the database as a whole when the query ran: a result holds no
// lock, and statements on the same connection may change the table while it is read.
//
// Columns are named as in the query, without regard to case, computed ones too ("max(id)"). A
// column that the query does not have, and a read without a current row, throw CDBC_Exception.
class DBResultSet {
public:
    // Number of columns.
    virtual int columnCount() = 0;
    // Moves to the next row; the first call gives the first row. False at the end.
    virtual bool next() = 0;
    // The column's text; "" for NULL.
    virtual std::string getString(const std::string& column) = 0;
    // Whether the column is NULL.
    virtual bool isNull(const std::string& column) = 0;
    // The column as a double; 0 for NULL and for text that begins with no number.
    virtual double getDouble(const std::string& column) = 0;
    // The column as an int; 0 as above, values out of range become the nearest int.
    virtual int getInt(const std::string& column) = 0;
    // The column as a 64-bit integer, as getInt.
    virtual std::int64_t getInt64(const std::string& column) = 0;
    // Number of rows.
    virtual int rowCount() = 0;
    // Ends and frees the result.
    virtual void close() = 0;

protected:
    ~DBResultSet() = default;
};

// Runs SQL, one statement a call. May outlive its connection's close(); the handle stays taken
// until both are closed.
class DBStatement {
public:
    // Runs a query. The caller closes the result. Throws CDBC_Exception.
    virtual DBResultSet* executeQuery(const std::string& sql) = 0;
    // Runs a statement that gives no rows. 0 on success, also when no row changed; a failure
    // throws CDBC_Exception.
    virtual int executeUpdate(const std::string& sql) = 0;
    // Number of rows that the last executeUpdate changed.
    virtual int changedRows() = 0;
    // Ends and frees the statement.
    virtual void close() = 0;

protected:
    ~DBStatement() = default;
};

// One thread's access to a database.
class DBConnection {
public:
    // A new statement, which the caller closes.
    virtual DBStatement* createStatement() = 0;
    // Opens a transaction that may write, waiting for other writers. Throws CDBC_Exception, also
    // when one is open. DBTransaction is the way to use these three.
    virtual void begin() = 0;
    virtual void commit() = 0;
    // Undoes what was written since begin(); nothing without an open transaction.
    virtual void rollback() = 0;
    // The row id that the last INSERT of this connection made.
    virtual std::int64_t lastInsertId() = 0;
    // Whether a transaction is open.
    virtual bool inTransaction() = 0;
    // Rolls back an open transaction, gives the handle back and frees the connection.
    virtual void close() = 0;

protected:
    ~DBConnection() = default;
};

// Names a database: "sqlite:" and the path of a file, behind which "?timeout=N" may set how many
// milliseconds a statement waits for other writers (10000 unless told).
class DBUrl {
public:
    explicit DBUrl(const std::string& url);

    const std::string& scheme() const { return m_scheme; }
    const std::string& path() const { return m_path; }
    // An option's value, "" when it is not given.
    std::string option(const std::string& name) const;

private:
    std::string m_scheme;
    std::string m_path;
    std::map<std::string, std::string> m_options;
};

class DBDriver {
public:
    // A connection to the database, which the caller closes; never null. The file must exist.
    // Throws CDBC_Exception when it cannot be opened, for an unknown scheme, and in a process
    // that was forked while a connection to the same file was open. Any thread may call it.
    static DBConnection* getConnection(DBUrl& url);

    // Closes the handles that are kept and not in use. Any thread may call it.
    static void closeIdle();
};

// A transaction for the time of a scope: rolled back at its end unless commit() was called.
class DBTransaction {
public:
    explicit DBTransaction(DBConnection& connection) : m_connection(connection) {
        m_connection.begin();
    }
    ~DBTransaction();
    DBTransaction(const DBTransaction&) = delete;
    DBTransaction& operator=(const DBTransaction&) = delete;

    void commit();

private:
    DBConnection& m_connection;
    bool m_open = true;
};

#endif
