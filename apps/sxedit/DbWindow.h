// The demo editor's database mode: the records of an SQLite table of scripts
// in a list, and the source of the current record in a TSxDbCodeEdit that
// colours it by the record's language.
#pragma once

#include "codeedit/uSxDbCodeEdit.h"
#include "platform/SqliteDataSet.h"

#include <QMainWindow>

class QLabel;
class QListWidget;

namespace sx::demo {

/// The sample database in the user's data folder.
QString DefaultDatabasePath();
/// Makes the database at path from examples/scripts.sql when there is no
/// file there yet; raises EDatabaseError when it can't.
void EnsureSampleDatabase(const QString& path);

/// A window over the table "scripts" (name, language, source) of one file.
/// Moving to another record posts the edit first; Record > Post posts on request.
class DbWindow : public QMainWindow {
public:
    DbWindow();
    ~DbWindow() override;

    /// Opens the file, made from the sample first when it is missing; raises on failure.
    void Open(const QString& path);
    TSxDbCodeEdit& Edit() { return *FEdit; }
    TSqliteDataSet& Scripts() { return *FScripts; }
    /// Makes record Row the current one, posting a pending edit first; a
    /// refused post is shown and the current record stays.
    void GoToRow(int Row);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void BuildMenus();
    /// The names and languages of all records, in the order of the data set.
    void FillList();
    /// Behind each move or reload: the list's row, the parser, the status.
    void ShowRecord();
    void ShowState();
    void PostRecord();
    void CancelRecord();
    void NewRecord();
    void DeleteRecord();
    void OpenChosenDatabase();
    /// Runs an operation of the data set; a refusal is shown with the
    /// database's message. Answers whether it went through.
    bool Attempt(const std::function<void()>& operation);
    bool MayClose();

    /// Owns the data sets and the data source.
    TComponent FComponents{nullptr};
    TSqliteDataSet* FScripts;
    TSqliteDataSet* FNames;
    TDataSource* FSource;
    TSxDbCodeEdit* FEdit;
    QListWidget* FList;
    QLabel* FStatus;
    QString FPath;
    QString FLanguage;
};

}  // namespace sx::demo
