// A connection to an SQLite database file and its prepared statements, with
// SQLite's own messages raised as exceptions.
#pragma once

#include "platform/Db.h"

#include <cstdint>
#include <string>

struct sqlite3;
struct sqlite3_stmt;

namespace sx {

/// A statement or connection that SQLite refused; the message is SQLite's.
class ESqliteError : public EDatabaseError {
public:
    ESqliteError(String message, int errorCode) : EDatabaseError(std::move(message)), FErrorCode(errorCode) {}
    /// SQLite's primary result code (SQLITE_CONSTRAINT, SQLITE_BUSY, SQLITE_READONLY ...).
    int ErrorCode() const { return FErrorCode; }

private:
    int FErrorCode;
};

/// One open database file.
class TSqliteDatabase {
public:
    TSqliteDatabase() = default;
    ~TSqliteDatabase() { Close(); }
    /// Deleted so that one connection is never closed twice.
    TSqliteDatabase(const TSqliteDatabase&) = delete;
    TSqliteDatabase& operator=(const TSqliteDatabase&) = delete;

    /// Opens the file for reading and writing; Create makes it when it is missing.
    /// A file that can only be read opens read-only, and its writes fail.
    void Open(const String& FileName, bool Create = false);
    void Close();
    bool Connected() const { return FHandle != nullptr; }
    /// How long a write waits for another connection's lock before it fails.
    void SetBusyTimeout(Integer Milliseconds);
    /// Runs every statement of the UTF-16 text in turn.
    void ExecSQL(const String& Sql);
    /// Runs Body inside BEGIN IMMEDIATE ... COMMIT; rolls back and raises when any step fails.
    template <class F>
    void InTransaction(F&& Body)
    {
        ExecSQL(u"BEGIN IMMEDIATE");
        try {
            Body();
            ExecSQL(u"COMMIT");
        } catch (...) {
            Rollback();
            throw;
        }
    }
    std::int64_t LastInsertRowId() const;
    /// The rows the last finished statement changed.
    Integer Changes() const;
    sqlite3* Handle() const { return FHandle; }
    /// Raises ESqliteError with the connection's last message.
    [[noreturn]] void RaiseError(int ResultCode) const;

private:
    /// Ends an open transaction; its own failure is not reported over the first one.
    void Rollback() noexcept;

    sqlite3* FHandle = nullptr;
};

/// One prepared statement of a connection; parameters count from 1, columns from 0.
class TSqliteStatement {
public:
    TSqliteStatement(const TSqliteDatabase& Database, const std::string& SqlUtf8);
    ~TSqliteStatement();
    TSqliteStatement(const TSqliteStatement&) = delete;
    TSqliteStatement& operator=(const TSqliteStatement&) = delete;

    void Bind(int Index, const TDbValue& Value);
    /// Moves to the next row; answers False when there is none. Raises on failure.
    bool Step();
    int ColumnCount() const;
    String ColumnName(int Column) const;
    /// The declared type of a table column, upper case; empty for an expression.
    std::string ColumnDeclType(int Column) const;
    TDbValue Column(int Column) const;

private:
    const TSqliteDatabase& FDatabase;
    sqlite3_stmt* FHandle = nullptr;
};

/// A name as a quoted SQL identifier.
std::string QuoteIdentifier(const String& Name);

}  // namespace sx
