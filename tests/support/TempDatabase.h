// An SQLite database file made for one test in a folder of its own, a data
// set opened on it, and a second connection that shows what really reached the file.
#pragma once

#include "platform/SqliteDataSet.h"
#include "platform/SqliteDatabase.h"
#include "support/TempFolder.h"

#include <string>

namespace sx::test {

/// A table of scripts with a text and a binary BLOB column, a string column
/// with a unique constraint and a default, and an integer column.
inline const char16_t* const ScriptsSchema = uR"(
CREATE TABLE scripts (
  id INTEGER PRIMARY KEY,
  name VARCHAR(40) NOT NULL UNIQUE CHECK (length(name) > 0),
  language CHAR(10) DEFAULT 'pascal',
  source TEXT CHECK (source NOT LIKE '%forbidden%'),
  code BLOB,
  lines INTEGER
);
INSERT INTO scripts (name, language, source, lines) VALUES ('hello', 'pascal', 'begin' || char(13, 10) || '  Writeln(''Hi'');' || char(13, 10) || 'end.', 3);
INSERT INTO scripts (name, language, source, lines) VALUES ('query', 'sql', 'SELECT 1;', 1);
INSERT INTO scripts (name, language, source, code) VALUES ('empty', 'js', '', X'00FF10');
)";

class TempDatabase {
public:
    explicit TempDatabase(const String& schema = ScriptsSchema)
    {
        TSqliteDatabase db;
        db.Open(Path(), true);
        db.ExecSQL(schema);
    }

    String Path() const { return StrFromUtf8(FFolder.Path("scripts.db").string()); }
    /// Opens the data set on the table of scripts.
    void Open(TSqliteDataSet& set) const
    {
        set.SetDatabaseName(Path());
        set.SetTableName(u"scripts");
        set.Open();
    }

    /// A connection apart from the data set's, opened on first use.
    TSqliteDatabase& Other()
    {
        if (!FOther.Connected())
            FOther.Open(Path());
        return FOther;
    }
    /// The first column of the first row, as the file holds it now; "<none>" without a row.
    String Scalar(const std::string& sql)
    {
        TSqliteStatement statement(Other(), sql);
        if (!statement.Step())
            return u"<none>";
        const TDbValue value = statement.Column(0);
        return value.Kind == TDbValue::vkNull ? u"<null>" : StrFromUtf8(value.Data);
    }

private:
    TempFolder FFolder;  // declared first: the connection closes before the folder goes
    TSqliteDatabase FOther;
};

}  // namespace sx::test
