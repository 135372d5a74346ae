// The SQLite data set and the data links, with no GUI: fields from the
// declared types, navigation, posts that reach the file as a second
// connection sees it, refusals that keep the edit, and the order in which
// a field link hears of each step. The data-aware control's tests meet the
// same through the control (a field's OnValidate, faults of the database).
#include "platform/DbLinks.h"
#include "support/TempDatabase.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace sx;

namespace {

using Heard = std::vector<std::string>;

class SqliteDataSetTest : public ::testing::Test {
protected:
    void SetUp() override { db.Open(dataSet); }
    String Field(const char16_t* name) { return dataSet.FieldByName(name)->AsString(); }
    void SetField(const char16_t* name, const String& value) { dataSet.FieldByName(name)->SetAsString(value); }

    test::TempDatabase db;
    TSqliteDataSet dataSet{nullptr};
};

/// A field link that writes down what it is told, in order, and writes
/// Pending into its field when asked for its data.
struct RecordingLink {
    RecordingLink(TDataSource& source, const String& field)
    {
        link.OnDataChange = [this](TObject*) { heard.push_back("data"); };
        link.OnEditingChange = [this](TObject*) { heard.push_back(link.Editing() ? "editing" : "browsing"); };
        link.OnUpdateData = [this](TObject*) {
            heard.push_back("update");
            link.Field()->SetAsString(pending);
        };
        link.SetDataSource(&source);
        link.SetFieldName(field);
    }
    /// What the link hears while the step runs.
    Heard During(const std::function<void()>& step)
    {
        heard.clear();
        step();
        return heard;
    }
    TFieldDataLink link;
    Heard heard;
    String pending;
};

TEST_F(SqliteDataSetTest, FieldsFollowTheDeclaredTypes)
{
    ASSERT_EQ(dataSet.FieldCount(), 6);
    const TField* name = dataSet.FieldByName(u"NAME");
    EXPECT_EQ(name->DataType(), TFieldType::ftString);
    EXPECT_EQ(name->Size(), 40);
    EXPECT_FALSE(name->IsBlob());
    EXPECT_EQ(dataSet.FindField(u"nothing"), nullptr);
    EXPECT_THROW(dataSet.FieldByName(u"nothing"), EDatabaseError);
}

TEST_F(SqliteDataSetTest, NavigationCancelAndDelete)
{
    std::vector<String> names;
    for (dataSet.First(); !dataSet.Eof(); dataSet.Next())
        names.push_back(Field(u"name"));
    EXPECT_EQ(names, (std::vector<String>{u"hello", u"query", u"empty"}));
    EXPECT_EQ(dataSet.RecNo(), 2);
    EXPECT_TRUE(dataSet.FieldByName(u"lines")->IsNull());
    dataSet.First();
    dataSet.Edit();
    SetField(u"name", u"changed");
    dataSet.Cancel();
    EXPECT_EQ(Field(u"name"), u"hello");
    dataSet.Delete();
    EXPECT_EQ(db.Scalar("SELECT count(*) FROM scripts"), u"2");
    EXPECT_EQ(Field(u"name"), u"query");
}

TEST_F(SqliteDataSetTest, PostsWriteUpdatesAndInsertsInUtf8)
{
    dataSet.Edit();
    SetField(u"source", u"Gr\u00FC\u00DFe \u20AC \U0001F600");
    SetField(u"lines", u" 7 ");
    EXPECT_EQ(db.Scalar("SELECT lines FROM scripts WHERE id = 1"), u"3");
    dataSet.Post();
    EXPECT_EQ(db.Scalar("SELECT hex(source) FROM scripts WHERE id = 1"), u"4772C3BCC39F6520E282AC20F09F9880");
    EXPECT_EQ(db.Scalar("SELECT typeof(lines) || lines FROM scripts WHERE id = 1"), u"integer7");
    EXPECT_THROW(dataSet.Post(), EDatabaseError);  // back in browse state

    dataSet.Append();
    EXPECT_TRUE(dataSet.FieldByName(u"name")->IsNull());
    SetField(u"name", u"new");
    dataSet.Post();
    EXPECT_EQ(dataSet.RecordCount(), 4);
    EXPECT_EQ(dataSet.RecNo(), 3);
    EXPECT_EQ(Field(u"id"), u"4");
    EXPECT_EQ(Field(u"language"), u"pascal");  // the default, read back
    EXPECT_EQ(db.Scalar("SELECT language FROM scripts WHERE name = 'new'"), u"pascal");
}

TEST_F(SqliteDataSetTest, FieldsAndQueriesRefuseWhatTheyCannotTake)
{
    TField* lines = dataSet.FieldByName(u"lines");
    EXPECT_THROW(lines->SetAsString(u"4"), EDatabaseError);  // not in edit state
    dataSet.Edit();
    EXPECT_THROW(lines->SetAsString(u"four"), EConvertError);
    lines->SetReadOnly(true);
    EXPECT_THROW(lines->SetAsString(u"4"), EDatabaseError);
    EXPECT_EQ(lines->AsString(), u"3");

    dataSet.Close();  // a query is read-only
    dataSet.SetSQL(u"SELECT id, name FROM scripts WHERE id > 1 ORDER BY name DESC");
    dataSet.Open();
    EXPECT_EQ(Field(u"name"), u"query");
    EXPECT_FALSE(dataSet.CanModify());
    EXPECT_THROW(dataSet.Edit(), EDatabaseError);
}

TEST_F(SqliteDataSetTest, BinaryBlobsCannotBeReadAsText)
{
    dataSet.Last();
    TField* code = dataSet.FieldByName(u"code");
    dataSet.Edit();
    delete dataSet.CreateBlobStream(code, bmWrite);  // empties the value when freed
    dataSet.Post();
    EXPECT_EQ(db.Scalar("SELECT typeof(code) || length(code) FROM scripts WHERE id = 3"), u"blob0");
}

TEST_F(SqliteDataSetTest, ALinkHearsOfEachStepInTheClassicOrder)
{
    TDataSource source(nullptr);
    source.SetDataSet(&dataSet);
    RecordingLink recorder(source, u"source");
    EXPECT_EQ(recorder.During([&] { dataSet.Edit(); }), (Heard{"editing", "data"}));
    recorder.link.Modified();
    recorder.pending = u"new text";
    // The link's own write is not reported back to it.
    EXPECT_EQ(recorder.During([&] { dataSet.Post(); }), (Heard{"update", "browsing", "data"}));
    EXPECT_EQ(recorder.During([&] { dataSet.Insert(); }), (Heard{"editing", "data"}));
    EXPECT_EQ(recorder.During([&] { dataSet.Cancel(); }), (Heard{"browsing", "data"}));
    EXPECT_EQ(recorder.During([&] { dataSet.Next(); }), (Heard{"data"}));
    recorder.link.SetReadOnly(true);
    EXPECT_EQ(recorder.During([&] { dataSet.Edit(); }), (Heard{"data"}));
    EXPECT_FALSE(recorder.link.Editing());
    dataSet.Cancel();
    EXPECT_EQ(recorder.During([&] { dataSet.Close(); }), (Heard{"data"}));
    EXPECT_EQ(recorder.link.Field(), nullptr);
}

TEST_F(SqliteDataSetTest, AFreedDataSetLetsItsSourcesGo)
{
    TDataSource source(nullptr);
    auto* owned = new TSqliteDataSet(nullptr);
    db.Open(*owned);
    source.SetDataSet(owned);
    RecordingLink recorder(source, u"name");
    EXPECT_TRUE(recorder.link.Active());
    delete owned;
    EXPECT_EQ(source.DataSet(), nullptr);
    EXPECT_FALSE(recorder.link.Active());
    EXPECT_EQ(recorder.link.Field(), nullptr);
}

}  // namespace
