// TSqliteDataSet: a data set over one table of an SQLite database file,
// writing each post to that table, or a read-only one over a query.
#pragma once

#include "platform/Db.h"
#include "platform/SqliteDatabase.h"

namespace sx {

/// Reads all records of a table (in rowid order) or of a query when it opens.
/// Columns declared TEXT, CLOB or BLOB become BLOB fields (ftMemo, ftBlob),
/// CHAR(n) and VARCHAR(n) string fields of size n, INT columns integer fields
/// and REAL, FLOAT, DOUBLE columns float fields; anything else is a string.
/// Post writes an UPDATE of the changed columns, or an INSERT, in a
/// transaction of its own, and reads the record back as the database stored it.
class TSqliteDataSet : public TDataSet {
    SX_DECLARE_CLASS
public:
    explicit TSqliteDataSet(TComponent* AOwner);
    ~TSqliteDataSet() override;

    /// The database file. It must exist: opening makes no new file.
    const String& DatabaseName() const { return FDatabaseName; }
    void SetDatabaseName(const String& Value);
    /// The table that is read, and that posts are written to.
    const String& TableName() const { return FTableName; }
    void SetTableName(const String& Value);
    /// A SELECT that is read in place of a table; its records can't be changed.
    const String& SQL() const { return FSQL; }
    void SetSQL(const String& Value);
    /// How long a post waits for another connection's lock; 0 fails at once.
    Integer BusyTimeout() const { return FBusyTimeout; }
    void SetBusyTimeout(Integer Value);

    bool CanModify() const override;
    /// BLOB fields are read as text: a value that holds no UTF-8 text raises
    /// EInvalidOperation when a stream for reading it is asked for.
    TStream* CreateBlobStream(TField* Field, TBlobStreamMode Mode) override;
    TSqliteDatabase& Database() { return FDatabase; }

protected:
    void InternalOpen() override;
    void InternalClose() override;
    void InternalPost(TDbRecord& Record, const TDbRecord* Old) override;
    void InternalDelete(const TDbRecord& Record) override;

private:
    bool IsQuery() const { return !FSQL.empty(); }
    void CheckInactive() const;
    std::string SelectSql() const;
    /// The first column of the select that is a field: a table's select leads with its rowid.
    int FirstFieldColumn() const { return IsQuery() ? 0 : 1; }
    void DefineFields(const TSqliteStatement& Statement);
    TDbRecord ReadRecord(const TSqliteStatement& Statement) const;
    void WriteUpdate(const TDbRecord& Record, const TDbRecord& Old);
    void WriteInsert(TDbRecord& Record);
    /// Replaces Record with the stored row of its key, where there is one.
    void ReadBack(TDbRecord& Record);

    String FDatabaseName;
    String FTableName;
    String FSQL;
    Integer FBusyTimeout = 0;
    TSqliteDatabase FDatabase;
};

}  // namespace sx
