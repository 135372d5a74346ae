// The SQLite data set: fields from the declared column types, records read
// in one pass, and each post or delete written in a transaction.
#include "platform/SqliteDataSet.h"

#include "platform/Streams.h"

namespace sx {

namespace {

bool Contains(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

/// The length in "VARCHAR(40)", or 0.
Integer DeclaredSize(const std::string& declared)
{
    const std::size_t open = declared.find('(');
    Integer size = 0;
    for (std::size_t i = open == std::string::npos ? declared.size() : open + 1;
         i < declared.size() && declared[i] >= '0' && declared[i] <= '9' && size < 100000000; ++i)
        size = size * 10 + (declared[i] - '0');
    return size;
}

/// The field type of a declared column type, in the order of SQLite's own
/// affinity rules, so that "CHARINT" counts as an integer just as SQLite takes it.
TFieldType FieldTypeOf(const std::string& declared)
{
    if (Contains(declared, "INT"))
        return TFieldType::ftInteger;
    if (Contains(declared, "CHAR"))
        return TFieldType::ftString;
    if (Contains(declared, "TEXT") || Contains(declared, "CLOB"))
        return TFieldType::ftMemo;
    if (Contains(declared, "BLOB"))
        return TFieldType::ftBlob;
    if (Contains(declared, "REAL") || Contains(declared, "FLOA") || Contains(declared, "DOUB"))
        return TFieldType::ftFloat;
    return TFieldType::ftString;
}

bool IsUtf8Text(const std::string& bytes) { return StrToUtf8(StrFromUtf8(bytes)) == bytes; }

}  // namespace

SX_DEFINE_CLASS(TSqliteDataSet, TDataSet)

TSqliteDataSet::TSqliteDataSet(TComponent* AOwner) : TDataSet(AOwner) {}

TSqliteDataSet::~TSqliteDataSet() { Close(); }

void TSqliteDataSet::CheckInactive() const
{
    if (Active())
        DatabaseError(u"Cannot perform this operation on an open dataset");
}

void TSqliteDataSet::SetDatabaseName(const String& Value)
{
    CheckInactive();
    FDatabaseName = Value;
}

void TSqliteDataSet::SetTableName(const String& Value)
{
    CheckInactive();
    FTableName = Value;
}

void TSqliteDataSet::SetSQL(const String& Value)
{
    CheckInactive();
    FSQL = Value;
}

void TSqliteDataSet::SetBusyTimeout(Integer Value)
{
    FBusyTimeout = Value;
    FDatabase.SetBusyTimeout(Value);
}

bool TSqliteDataSet::CanModify() const { return Active() && !FTableName.empty() && !IsQuery(); }

std::string TSqliteDataSet::SelectSql() const
{
    if (IsQuery())
        return StrToUtf8(FSQL);
    return "SELECT rowid, * FROM " + QuoteIdentifier(FTableName) + " ORDER BY rowid";
}

void TSqliteDataSet::InternalOpen()
{
    if (FTableName.empty() && !IsQuery())
        DatabaseError(u"No table name or query given");
    FDatabase.Open(FDatabaseName);
    FDatabase.SetBusyTimeout(FBusyTimeout);
    TSqliteStatement select(FDatabase, SelectSql());
    DefineFields(select);
    auto& records = Records();
    while (select.Step())
        records.push_back(ReadRecord(select));
}

void TSqliteDataSet::InternalClose() { FDatabase.Close(); }

void TSqliteDataSet::DefineFields(const TSqliteStatement& Statement)
{
    for (int column = FirstFieldColumn(); column < Statement.ColumnCount(); ++column) {
        const std::string declared = Statement.ColumnDeclType(column);
        const TFieldType type = FieldTypeOf(declared);
        AddField(Statement.ColumnName(column), type, type == TFieldType::ftString ? DeclaredSize(declared) : 0);
    }
}

TDbRecord TSqliteDataSet::ReadRecord(const TSqliteStatement& Statement) const
{
    TDbRecord record;
    for (int column = FirstFieldColumn(); column < Statement.ColumnCount(); ++column)
        record.Values.push_back(Statement.Column(column));
    if (!IsQuery())
        record.Key = Statement.Column(0);
    return record;
}

void TSqliteDataSet::InternalPost(TDbRecord& Record, const TDbRecord* Old)
{
    FDatabase.InTransaction([&] {
        if (Old)
            WriteUpdate(Record, *Old);
        else
            WriteInsert(Record);
        ReadBack(Record);
    });
}

void TSqliteDataSet::WriteUpdate(const TDbRecord& Record, const TDbRecord& Old)
{
    std::string assignments;
    std::vector<const TDbValue*> values;
    for (Integer i = 0; i < FieldCount(); ++i) {
        const auto at = std::size_t(i);
        if (Record.Values[at] == Old.Values[at])
            continue;
        assignments += (values.empty() ? "" : ", ") + QuoteIdentifier(Fields(i)->FieldName()) + " = ?";
        values.push_back(&Record.Values[at]);
    }
    if (values.empty())
        return;
    TSqliteStatement update(FDatabase, "UPDATE " + QuoteIdentifier(FTableName) + " SET " + assignments +
                                           " WHERE rowid = ?");
    int parameter = 1;
    for (const TDbValue* value : values)
        update.Bind(parameter++, *value);
    update.Bind(parameter, Old.Key);
    update.Step();
    if (FDatabase.Changes() == 0)
        DatabaseError(u"Record not found or changed by another user");
}

void TSqliteDataSet::WriteInsert(TDbRecord& Record)
{
    std::string columns;
    std::string marks;
    std::vector<const TDbValue*> values;
    for (Integer i = 0; i < FieldCount(); ++i) {
        const TDbValue& value = Record.Values[std::size_t(i)];
        if (value.Kind == TDbValue::vkNull)
            continue;  // the column's default applies
        columns += (values.empty() ? "" : ", ") + QuoteIdentifier(Fields(i)->FieldName());
        marks += values.empty() ? "?" : ", ?";
        values.push_back(&value);
    }
    const std::string table = QuoteIdentifier(FTableName);
    TSqliteStatement insert(FDatabase, values.empty() ? "INSERT INTO " + table + " DEFAULT VALUES"
                                                      : "INSERT INTO " + table + " (" + columns + ") VALUES (" +
                                                            marks + ")");
    for (std::size_t i = 0; i < values.size(); ++i)
        insert.Bind(int(i) + 1, *values[i]);
    insert.Step();
    Record.Key = TDbValue{TDbValue::vkInteger, std::to_string(FDatabase.LastInsertRowId())};
}

void TSqliteDataSet::ReadBack(TDbRecord& Record)
{
    TSqliteStatement select(FDatabase, "SELECT rowid, * FROM " + QuoteIdentifier(FTableName) + " WHERE rowid = ?");
    select.Bind(1, Record.Key);
    if (select.Step())
        Record = ReadRecord(select);
}

void TSqliteDataSet::InternalDelete(const TDbRecord& Record)
{
    FDatabase.InTransaction([&] {
        TSqliteStatement erase(FDatabase,
                               "DELETE FROM " + QuoteIdentifier(FTableName) + " WHERE rowid = ?");
        erase.Bind(1, Record.Key);
        erase.Step();
    });
}

TStream* TSqliteDataSet::CreateBlobStream(TField* Field, TBlobStreamMode Mode)
{
    if (Mode == bmRead && !IsUtf8Text(Field->Value().Data))
        throw EInvalidOperation(u"Field '" + Field->FieldName() + u"' holds binary data, no text");
    return TDataSet::CreateBlobStream(Field, Mode);
}

}  // namespace sx
