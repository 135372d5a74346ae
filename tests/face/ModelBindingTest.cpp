// SxCodeEditor bound to a column of a Qt item model through QDataWidgetMapper:
// a QSqlTableModel on an SQLite file, read back through a second connection.
#include "face/SxCodeEditor.h"
#include "support/TempFolder.h"

#include <QDataWidgetMapper>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlTableModel>

#include <gtest/gtest.h>

namespace sx::test {
namespace {

/// An SQLite file with one table of scripts, open under a connection name.
class ScriptDatabase {
public:
    ScriptDatabase(const QString& file, const QString& connection) : FConnection(connection)
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", connection);
        db.setDatabaseName(file);
        EXPECT_TRUE(db.open());
    }
    ~ScriptDatabase() { QSqlDatabase::removeDatabase(FConnection); }
    QSqlDatabase Database() const { return QSqlDatabase::database(FConnection); }
    QString Body(int id) const
    {
        QSqlQuery query(Database());
        query.exec(QString("SELECT body FROM scripts WHERE id = %1").arg(id));
        return query.next() ? query.value(0).toString() : QString("<no row>");
    }

private:
    QString FConnection;
};

TEST(SxCodeEditorModel, EditsTheColumnOfAModelRow)
{
    TempFolder folder;
    const QString file = QString::fromStdString(folder.Path("scripts.db").string());
    {
        const ScriptDatabase setup(file, "setup");
        QSqlQuery query(setup.Database());
        ASSERT_TRUE(query.exec("CREATE TABLE scripts (id INTEGER PRIMARY KEY, body TEXT)"));
        ASSERT_TRUE(query.exec("INSERT INTO scripts VALUES (1, 'begin\nend.'), (2, 'SELECT 1')"));
    }
    const ScriptDatabase editing(file, "editing");
    const ScriptDatabase reading(file, "reading");
    {
        QSqlTableModel model(nullptr, editing.Database());
        model.setTable("scripts");
        model.setEditStrategy(QSqlTableModel::OnManualSubmit);
        ASSERT_TRUE(model.select());
        SxCodeEditor editor;
        QDataWidgetMapper mapper;
        mapper.setModel(&model);
        mapper.setSubmitPolicy(QDataWidgetMapper::ManualSubmit);
        mapper.addMapping(&editor, model.fieldIndex("body"));  // through the editor's user property
        mapper.toFirst();
        EXPECT_EQ(editor.text(), "begin\nend.");

        editor.insertText(1, 0, "  Run;\n");
        ASSERT_TRUE(mapper.submit());
        ASSERT_TRUE(model.submitAll());
        EXPECT_EQ(reading.Body(1), "begin\n  Run;\nend.");
        mapper.toFirst();  // the submit selected the table anew

        editor.setText("discarded");
        mapper.revert();
        EXPECT_EQ(editor.text(), "begin\n  Run;\nend.");
        mapper.toNext();
        EXPECT_EQ(editor.text(), "SELECT 1");
        EXPECT_EQ(reading.Body(2), "SELECT 1");
    }
}

}  // namespace
}  // namespace sx::test
