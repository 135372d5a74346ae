// Faults of the database under the data-aware control: a connection that
// may not write, a full database, the record deleted and the table dropped
// by another connection. Each post raises the database's message and loses
// nothing: the data set stays in edit state, the typed text stays in the
// control and in the field, and a second post after the cause is gone
// writes it.
#include "codeedit/uSxDbCodeEdit.h"
#include "platform/SqliteDataSet.h"
#include "support/Keyboard.h"
#include "support/RenderHelpers.h"
#include "support/TempDatabase.h"

#include <gtest/gtest.h>

#include <functional>

using namespace sx;
using namespace sx::test;

namespace {

class DbFault : public ::testing::Test {
protected:
    void SetUp() override
    {
        dataSet->SetDatabaseName(db.Path());
        dataSet->SetTableName(u"scripts");
        dataSet->Open();
        source->SetDataSet(dataSet);
        edit->SetDataSource(source);
        edit->SetDataField(u"source");
        Focus(*edit);
    }

    /// The message of the refused post, or "<posted>".
    String RefusedPost()
    {
        try {
            dataSet->Post();
        } catch (const EDatabaseError& e) {
            return e.Message();
        }
        return u"<posted>";
    }

    /// Types, lets the post fail with a message holding AExpected, and checks
    /// that nothing is lost; then removes the cause and posts again.
    void ExpectRefusedThenPosted(const String& AExpected, const std::function<void()>& ARemoveCause)
    {
        const String refusal = RefusedPost();
        EXPECT_NE(refusal.find(AExpected), String::npos) << StrToUtf8(refusal);
        EXPECT_EQ(dataSet->State(), dsEdit);
        EXPECT_EQ(edit->Lines().Get(0), u"typed begin");
        EXPECT_EQ(dataSet->FieldByName(u"source")->AsString().substr(0, 11), u"typed begin");
        ARemoveCause();
        EXPECT_EQ(RefusedPost(), u"<posted>");
        EXPECT_EQ(dataSet->State(), dsBrowse);
        EXPECT_EQ(db.Scalar("SELECT substr(source, 1, 11) FROM scripts WHERE id = 1"), u"typed begin");
    }

    TempDatabase db;
    TComponent owner{nullptr};
    TSqliteDataSet* dataSet = new TSqliteDataSet(&owner);
    TDataSource* source = new TDataSource(&owner);
    Host host;
    TSxDbCodeEdit* edit = host.Add<TSxDbCodeEdit>(400, 300);
};

TEST_F(DbFault, AConnectionThatMayNotWrite)
{
    // Root may write any file, so the connection is made read-only instead of the file.
    dataSet->Database().ExecSQL(u"PRAGMA query_only = ON");
    Type(*edit, QStringLiteral("typed "));
    ExpectRefusedThenPosted(u"attempt to write a readonly database",
                            [&] { dataSet->Database().ExecSQL(u"PRAGMA query_only = OFF"); });
}

TEST_F(DbFault, AFullDatabase)
{
    const String pages = db.Scalar("PRAGMA page_count");
    dataSet->Database().ExecSQL(u"PRAGMA max_page_count = " + pages);
    Type(*edit, QStringLiteral("typed "));
    edit->InsertCode(1, 0, String(20000, u'x'));  // more than the free room of the last page
    ExpectRefusedThenPosted(u"database or disk is full",
                            [&] { dataSet->Database().ExecSQL(u"PRAGMA max_page_count = 100000"); });
}

TEST_F(DbFault, TheRecordDeletedByAnotherConnection)
{
    Type(*edit, QStringLiteral("typed "));
    db.Other().ExecSQL(u"DELETE FROM scripts WHERE id = 1");
    ExpectRefusedThenPosted(u"Record not found or changed by another user", [&] {
        db.Other().ExecSQL(u"INSERT INTO scripts (id, name, source) VALUES (1, 'hello', 'restored')");
    });
}

TEST_F(DbFault, TheTableDroppedUnderTheOpenDataSet)
{
    Type(*edit, QStringLiteral("typed "));
    db.Other().ExecSQL(u"DROP TABLE scripts");
    ExpectRefusedThenPosted(u"no such table: scripts", [&] { db.Other().ExecSQL(ScriptsSchema); });
}

}  // namespace
