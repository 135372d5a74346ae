// Where the text comes from. A file loaded into the control: the text
// replaced, caret and scroll bars at the top, the undo list kept, and a load
// that fails changing no text. The data-aware control on a real SQLite file,
// typed into through real key events: loading, the step into edit state, the
// silent refusal, write-back on leaving the control and on posting, refusals
// that keep the typed text, and faults of the database under it: a
// connection that may not write, a full database, the record deleted and the
// table dropped by another connection.
#include "codeedit/EditorFixture.h"
#include "codeedit/uSxDbCodeEdit.h"
#include "platform/Clipboard.h"
#include "support/TempDatabase.h"

#include <QApplication>
#include <QLineEdit>

#include <functional>

using namespace sx;
using namespace sx::test;

namespace {

class LoadFromFile : public EditorTest {
protected:
    String WriteFile(const std::string& bytes) { return StrFromUtf8(folder.Write("code.txt", bytes).string()); }
    TempFolder folder;
};

TEST_F(LoadFromFile, ReplacesTextAndPutsCaretAndScrollBarsAtTheTop)
{
    Start(LinesOf(200, [](int i) { return u"line " + IntToStr(i) + u" with some text that runs wide of the window"; }),
          Point(12, 150));
    Type(*edit, QStringLiteral("x"));
    Select(Point(2, 140), Point(12, 150));
    edit->HScrollBar().SetPosition(5);
    ASSERT_GT(edit->VScrollBar().Position(), 0);
    ASSERT_GT(edit->HScrollBar().Position(), 0);
    const Integer undoRecords = edit->UndoList().Count();
    edit->SetModified(false);

    edit->LoadFromFile(WriteFile("one\ntwo\n"));

    EXPECT_EQ(State(), "one|two| @0,0");
    EXPECT_EQ(edit->HScrollBar().Position(), 0);
    EXPECT_EQ(edit->VScrollBar().Position(), 0);
    EXPECT_TRUE(edit->Modified());
    EXPECT_EQ(edit->UndoList().Count(), undoRecords);
}

TEST_F(LoadFromFile, BytesBecomeLinesWhateverTheirEncodingOrFaults)
{
    const std::pair<std::string, String> files[] = {
        // any line end splits lines, and the byte order mark is no text
        {"\xEF\xBB\xBF" "caf\xC3\xA9\rb\nc\r\n\r\nd", u"caf\u00E9\r\nb\r\nc\r\n\r\nd\r\n"},
        {std::string("\xFF\xFE" "a\0b", 5), u"a\uFFFD\r\n"},  // an odd byte behind a UTF-16 mark
        {std::string("a\0b\r\n\0", 6), String(u"a\0b\r\n\0\r\n", 8)},  // NUL bytes stay characters of their lines
    };
    for (const auto& [bytes, text] : files) {
        edit->LoadFromFile(WriteFile(bytes));
        EXPECT_EQ(edit->Text(), text);
        Render(*edit);
    }
    Start(u"old\r\ntext", Point(2, 1));  // an empty file leaves no lines
    edit->LoadFromFile(WriteFile(""));
    EXPECT_EQ(edit->Lines().Count(), 0);
    EXPECT_EQ(Caret(), Point(0, 0));
}

TEST_F(LoadFromFile, AFileThatCannotBeOpenedRaisesAndLeavesTheTextWithTheCaretAtTheTop)
{
    for (const std::filesystem::path& path : {folder.Path("missing.txt"), folder.Path("")}) {
        Start(u"old\r\ntext", Point(2, 1));
        EXPECT_THROW(edit->LoadFromFile(StrFromUtf8(path.string())), EFOpenError);
        EXPECT_EQ(State(), "old|text| @0,0");
    }
}

TEST_F(LoadFromFile, ALineOfTenMillionCharactersIsLoadedAndEdited)
{
    edit->LoadFromFile(WriteFile(std::string(10000000, 'x') + "\r\nend"));
    ASSERT_EQ(edit->Lines().Count(), 2);
    EXPECT_EQ(Line(0).size(), 10000000u);
    Press(*edit, Qt::Key_End);
    EXPECT_EQ(Caret(), Point(10000000, 0));
    Type(*edit, QStringLiteral("!"));
    EXPECT_EQ(Line(0).size(), 10000001u);
    Render(*edit);
}

class DbCodeEdit : public EditorTestOf<TSxDbCodeEdit> {
protected:
    void SetUp() override
    {
        db.Open(*dataSet);
        source->SetDataSet(dataSet);
        edit->SetOnLoadData([this](TObject*) { ++loads; });
        edit->SetDataSource(source);
        edit->SetDataField(u"source");
        other->show();
        Focus(*edit);
        loads = 0;
    }

    void Bind(const char16_t* field)
    {
        edit->SetDataField(field);
        loads = 0;
    }
    void MoveFocusAway()
    {
        other->setFocus();
        QApplication::processEvents();
    }
    String Stored(const char* column) { return db.Scalar(std::string("SELECT ") + column + " FROM scripts WHERE id = 1"); }

    TempDatabase db;
    TComponent owner{nullptr};
    TSqliteDataSet* dataSet = new TSqliteDataSet(&owner);
    TDataSource* source = new TDataSource(&owner);
    QLineEdit* other = new QLineEdit(&host.Window());
    int loads = 0;
    ReportedErrors reported;
};

const String HelloSource = u"begin\r\n  Writeln('Hi');\r\nend.\r\n";

TEST_F(DbCodeEdit, LoadsTextAndBlobFields)
{
    EXPECT_EQ(edit->Text(), HelloSource);
    EXPECT_EQ(edit->Field(), dataSet->FieldByName(u"source"));
    Bind(u"name");
    EXPECT_EQ(edit->Text(), u"hello\r\n");
    dataSet->Last();
    EXPECT_EQ(edit->Text(), u"empty\r\n");
    EXPECT_EQ(loads, 1);
    Bind(u"source");
    EXPECT_EQ(edit->Lines().Count(), 0);  // an empty BLOB clears the lines
    Bind(u"code");
    EXPECT_EQ(edit->Text(), u"(Field 'code' holds binary data, no text)\r\n");
    EXPECT_EQ(reinterpret_cast<TFieldDataLink*>(SendMessage(edit, CM_GETDATALINK))->Field(), edit->Field());
}

TEST_F(DbCodeEdit, TheFirstKeyGoesToEditStateAndKeepsCaretAndSelection)
{
    int changes = 0;
    edit->SetOnChange([&](TObject*) { ++changes; });
    Select(Point(2, 1), Point(6, 1));
    Type(*edit, QStringLiteral("x"));
    EXPECT_EQ(dataSet->State(), dsEdit);
    EXPECT_EQ(State(), "begin|  xeln('Hi');|end.| @3,1");
    EXPECT_EQ(changes, 2);  // the deletion of the selection and the character
    EXPECT_EQ(loads, 0);    // the data change behind the edit request was swallowed

    dataSet->Cancel();  // brings the stored text back
    EXPECT_EQ(edit->Text(), HelloSource);
}

TEST_F(DbCodeEdit, WithoutAutoEditEditingKeysEndSilently)
{
    source->SetAutoEdit(false);
    Clipboard().SetAsText(u"pasted");
    Select(Point(0, 0), Point(3, 0));
    for (const auto& [key, modifiers] : {std::pair{Qt::Key_X, Qt::NoModifier}, {Qt::Key_Delete, Qt::NoModifier},
                                        {Qt::Key_Insert, Qt::NoModifier}, {Qt::Key_V, Qt::ControlModifier}}) {
        reported.Aborted = false;
        Press(*edit, key, modifiers);
        ProcessPostedMessages();
        EXPECT_TRUE(reported.Aborted) << key;
    }
    EXPECT_EQ(reported.Messages, std::vector<String>(4, u"Can't go to editstate"));
    EXPECT_EQ(edit->Text(), HelloSource);
    EXPECT_EQ(dataSet->State(), dsBrowse);
    EXPECT_EQ(edit->SelEnd(), Point(0, 0));
    Press(*edit, Qt::Key_Right);
    EXPECT_EQ(Caret(), Point(4, 0));
}

TEST_F(DbCodeEdit, LeavingTheControlWritesTheText)
{
    Bind(u"name");
    Select(Point(5, 0), Point(5, 0));
    Type(*edit, QStringLiteral("!"));
    MoveFocusAway();
    EXPECT_EQ(dataSet->FieldByName(u"name")->AsString(), u"hello!\r\n");
    EXPECT_EQ(Caret(), Point(0, 0));  // a field that is no BLOB is read anew
    EXPECT_EQ(loads, 1);
    EXPECT_EQ(dataSet->State(), dsEdit);
    EXPECT_EQ(Stored("name"), u"hello");
    dataSet->Post();
    EXPECT_EQ(Stored("name"), u"hello!\r\n");

    Bind(u"source");
    Focus(*edit);
    Select(Point(3, 2), Point(3, 2));
    Type(*edit, QStringLiteral("d"));
    MoveFocusAway();
    EXPECT_EQ(Caret(), Point(4, 2));  // a BLOB is not read again
    EXPECT_EQ(dataSet->FieldByName(u"source")->AsString(), u"begin\r\n  Writeln('Hi');\r\nendd.\r\n");
}

TEST_F(DbCodeEdit, AFieldThatRefusesOnExitKeepsFocusAndText)
{
    Bind(u"name");
    dataSet->FieldByName(u"name")->OnValidate = [](TField* field) {
        if (field->AsString().find(u"bad") != String::npos)
            throw EDatabaseError(u"No bad names");
    };
    Select(Point(0, 0), Point(0, 0));
    Type(*edit, QStringLiteral("bad"));
    MoveFocusAway();
    EXPECT_EQ(reported.Messages, std::vector<String>{u"No bad names"});
    EXPECT_TRUE(edit->Focused());
    EXPECT_EQ(edit->Text(), u"badhello\r\n");
    EXPECT_EQ(dataSet->FieldByName(u"name")->AsString(), u"hello");

    Press(*edit, Qt::Key_Backspace);
    MoveFocusAway();  // the mark stayed set, so the corrected text is written now
    EXPECT_FALSE(edit->Focused());
    EXPECT_EQ(dataSet->FieldByName(u"name")->AsString(), u"bahello\r\n");
}

TEST_F(DbCodeEdit, TheFieldsReadOnlyOverridesTheApplications)
{
    edit->SetReadOnly(true);
    dataSet->Next();
    EXPECT_FALSE(edit->ReadOnly());
    dataSet->FieldByName(u"source")->SetReadOnly(true);
    dataSet->Prior();
    EXPECT_TRUE(edit->ReadOnly());
    Type(*edit, QStringLiteral("x"));
    EXPECT_EQ(edit->Text(), HelloSource);
    EXPECT_EQ(dataSet->State(), dsBrowse);
}

TEST_F(DbCodeEdit, InsertShowsTheNewRecordWhereEditLeavesTheText)
{
    Select(Point(3, 1), Point(3, 1));
    dataSet->Edit();
    EXPECT_EQ(State(), "begin|  Writeln('Hi');|end.| @3,1");
    dataSet->Cancel();

    dataSet->Insert();
    EXPECT_EQ(edit->Lines().Count(), 0);
    EXPECT_EQ(Caret(), Point(3, 0));  // a BLOB's load keeps the column
    Press(*edit, Qt::Key_Home);
    Type(*edit, QStringLiteral("new"));
    dataSet->FieldByName(u"name")->SetAsString(u"fresh");
    dataSet->Post();
    EXPECT_EQ(db.Scalar("SELECT source FROM scripts WHERE name = 'fresh'"), u"new\r\n");
}

TEST_F(DbCodeEdit, WithoutADataSourceTheTextIsEmpty)
{
    delete source;
    EXPECT_EQ(edit->DataSource(), nullptr);
    EXPECT_EQ(edit->Field(), nullptr);
    EXPECT_EQ(edit->Lines().Count(), 0);
    Type(*edit, QStringLiteral("free"));
    EXPECT_EQ(edit->Text(), u"free\r\n");
    MoveFocusAway();
    EXPECT_EQ(Stored("source"), HelloSource.substr(0, HelloSource.size() - 2));
}

TEST_F(DbCodeEdit, ADropAsksForEditState)
{
    TObject* dropped = nullptr;
    edit->OnDragDrop = [&](TObject*, TObject* Source, Integer, Integer) { dropped = Source; };
    edit->DragDrop(edit, 5, 5);
    EXPECT_EQ(dropped, edit);
    EXPECT_EQ(dataSet->State(), dsEdit);
}

TEST_F(DbCodeEdit, APostTheDatabaseRefusesLosesNothingAndASecondPostWrites)
{
    TSqliteDatabase& own = dataSet->Database();
    TSqliteDatabase& another = db.Other();
    const struct { std::function<void()> cause; const char16_t* message; std::function<void()> remove; } faults[] = {
        // Root may write any file, so the connection is made read-only instead of the file.
        {[&] { own.ExecSQL(u"PRAGMA query_only = ON"); }, u"attempt to write a readonly database",
         [&] { own.ExecSQL(u"PRAGMA query_only = OFF"); }},
        {[&] {
             own.ExecSQL(u"PRAGMA max_page_count = " + db.Scalar("PRAGMA page_count"));
             edit->InsertCode(1, 0, String(20000, u'x'));  // more than the free room of the last page
         },
         u"database or disk is full", [&] { own.ExecSQL(u"PRAGMA max_page_count = 100000"); }},
        {[&] { another.ExecSQL(u"DELETE FROM scripts WHERE id = 1"); }, u"Record not found or changed by another user",
         [&] { another.ExecSQL(u"INSERT INTO scripts (id, name, source) VALUES (1, 'hello', 'restored')"); }},
        {[&] { another.ExecSQL(u"DROP TABLE scripts"); }, u"no such table: scripts", [&] { another.ExecSQL(ScriptsSchema); }},
    };
    // Nothing is lost: the data set stays in edit state, the typed text in the
    // control and in the field; with the cause gone a second post writes it.
    for (const auto& fault : faults) {
        SCOPED_TRACE(StrToUtf8(fault.message));
        Type(*edit, QStringLiteral("typed "));
        const String typed = edit->Lines().Get(0);
        fault.cause();
        try {
            dataSet->Post();
            ADD_FAILURE() << "posted";
        } catch (const EDatabaseError& e) {
            EXPECT_NE(e.Message().find(fault.message), String::npos) << StrToUtf8(e.Message());
        }
        EXPECT_EQ(dataSet->State(), dsEdit);
        EXPECT_EQ(edit->Lines().Get(0), typed);
        EXPECT_EQ(dataSet->FieldByName(u"source")->AsString().substr(0, typed.size()), typed);
        fault.remove();
        EXPECT_NO_THROW(dataSet->Post());
        EXPECT_EQ(dataSet->State(), dsBrowse);
        EXPECT_EQ(Stored(("substr(source, 1, " + std::to_string(typed.size()) + ")").c_str()), typed);
    }
}

}  // namespace
