// The SQLite connection and statements over SQLite's C interface. Text goes
// in and out as UTF-8; every refusal becomes an ESqliteError with SQLite's message.
#include "platform/SqliteDatabase.h"

#include <sqlite3.h>

#include <charconv>

namespace sx {

namespace {

int PrimaryCode(int resultCode) { return resultCode & 0xFF; }

std::int64_t IntegerOf(const std::string& text)
{
    std::int64_t value = 0;
    std::from_chars(text.data() + (text.starts_with('+') ? 1 : 0), text.data() + text.size(), value);
    return value;
}

double FloatOf(const std::string& text)
{
    double value = 0;
    std::from_chars(text.data() + (text.starts_with('+') ? 1 : 0), text.data() + text.size(), value);
    return value;
}

std::string BytesOf(const void* data, int count)
{
    return data && count > 0 ? std::string(static_cast<const char*>(data), std::size_t(count)) : std::string();
}

}  // namespace

void TSqliteDatabase::Open(const String& FileName, bool Create)
{
    Close();
    const int flags = SQLITE_OPEN_READWRITE | (Create ? SQLITE_OPEN_CREATE : 0);
    sqlite3* handle = nullptr;
    const int rc = sqlite3_open_v2(StrToUtf8(FileName).c_str(), &handle, flags, nullptr);
    if (rc != SQLITE_OK) {
        const String message = StrFromUtf8(handle ? sqlite3_errmsg(handle) : sqlite3_errstr(rc));
        sqlite3_close(handle);
        throw ESqliteError(message + u": " + FileName, PrimaryCode(rc));
    }
    FHandle = handle;
}

void TSqliteDatabase::Close()
{
    if (FHandle)
        sqlite3_close_v2(FHandle);
    FHandle = nullptr;
}

void TSqliteDatabase::SetBusyTimeout(Integer Milliseconds)
{
    if (FHandle)
        sqlite3_busy_timeout(FHandle, Milliseconds);
}

void TSqliteDatabase::RaiseError(int ResultCode) const
{
    throw ESqliteError(StrFromUtf8(FHandle ? sqlite3_errmsg(FHandle) : sqlite3_errstr(ResultCode)),
                       PrimaryCode(ResultCode));
}

void TSqliteDatabase::ExecSQL(const String& Sql)
{
    if (!FHandle)
        throw EDatabaseError(u"Database is not open");
    char* message = nullptr;
    const int rc = sqlite3_exec(FHandle, StrToUtf8(Sql).c_str(), nullptr, nullptr, &message);
    if (rc == SQLITE_OK)
        return;
    const String text = StrFromUtf8(message ? message : sqlite3_errstr(rc));
    sqlite3_free(message);
    throw ESqliteError(text, PrimaryCode(rc));
}

void TSqliteDatabase::Rollback() noexcept
{
    if (FHandle && !sqlite3_get_autocommit(FHandle))
        sqlite3_exec(FHandle, "ROLLBACK", nullptr, nullptr, nullptr);
}

std::int64_t TSqliteDatabase::LastInsertRowId() const { return sqlite3_last_insert_rowid(FHandle); }

Integer TSqliteDatabase::Changes() const { return sqlite3_changes(FHandle); }

TSqliteStatement::TSqliteStatement(const TSqliteDatabase& Database, const std::string& SqlUtf8) : FDatabase(Database)
{
    if (!Database.Handle())
        throw EDatabaseError(u"Database is not open");
    const int rc = sqlite3_prepare_v2(Database.Handle(), SqlUtf8.c_str(), int(SqlUtf8.size()), &FHandle, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(FHandle);
        Database.RaiseError(rc);
    }
}

TSqliteStatement::~TSqliteStatement() { sqlite3_finalize(FHandle); }

void TSqliteStatement::Bind(int Index, const TDbValue& Value)
{
    int rc = SQLITE_OK;
    const std::string& data = Value.Data;
    switch (Value.Kind) {
    case TDbValue::vkNull: rc = sqlite3_bind_null(FHandle, Index); break;
    case TDbValue::vkInteger: rc = sqlite3_bind_int64(FHandle, Index, IntegerOf(data)); break;
    case TDbValue::vkFloat: rc = sqlite3_bind_double(FHandle, Index, FloatOf(data)); break;
    // A null pointer would bind NULL, so an empty value gets a pointer of its own.
    case TDbValue::vkText: rc = sqlite3_bind_text(FHandle, Index, data.c_str(), int(data.size()), SQLITE_TRANSIENT); break;
    case TDbValue::vkBlob:
        rc = data.empty() ? sqlite3_bind_zeroblob(FHandle, Index, 0)
                          : sqlite3_bind_blob(FHandle, Index, data.data(), int(data.size()), SQLITE_TRANSIENT);
        break;
    }
    if (rc != SQLITE_OK)
        FDatabase.RaiseError(rc);
}

bool TSqliteStatement::Step()
{
    const int rc = sqlite3_step(FHandle);
    if (rc == SQLITE_ROW)
        return true;
    if (rc == SQLITE_DONE)
        return false;
    FDatabase.RaiseError(rc);
}

int TSqliteStatement::ColumnCount() const { return sqlite3_column_count(FHandle); }

String TSqliteStatement::ColumnName(int Column) const
{
    const char* name = sqlite3_column_name(FHandle, Column);
    return StrFromUtf8(name ? name : "");
}

std::string TSqliteStatement::ColumnDeclType(int Column) const
{
    const char* declared = sqlite3_column_decltype(FHandle, Column);
    std::string type = declared ? declared : "";
    for (char& c : type)
        if (c >= 'a' && c <= 'z')
            c = char(c - 'a' + 'A');
    return type;
}

TDbValue TSqliteStatement::Column(int Column) const
{
    TDbValue::TKind kind = TDbValue::vkNull;
    switch (sqlite3_column_type(FHandle, Column)) {
    case SQLITE_INTEGER: kind = TDbValue::vkInteger; break;
    case SQLITE_FLOAT: kind = TDbValue::vkFloat; break;
    case SQLITE_TEXT: kind = TDbValue::vkText; break;
    case SQLITE_BLOB: kind = TDbValue::vkBlob; break;
    default: return TDbValue{};
    }
    // The pointer first, then its length: SQLite sizes the value it converted.
    const void* data = kind == TDbValue::vkBlob ? sqlite3_column_blob(FHandle, Column)
                                                : static_cast<const void*>(sqlite3_column_text(FHandle, Column));
    const int count = sqlite3_column_bytes(FHandle, Column);
    return TDbValue{kind, BytesOf(data, count)};
}

std::string QuoteIdentifier(const String& Name)
{
    std::string quoted = "\"";
    for (const char c : StrToUtf8(Name)) {
        quoted += c;
        if (c == '"')
            quoted += '"';
    }
    return quoted + "\"";
}

}  // namespace sx
