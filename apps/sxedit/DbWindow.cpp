// The database mode of the demo editor. The list is read by a second data set
// of its own, so that filling it never moves the edited one.
#include "DbWindow.h"

#include "face/SxLanguages.h"
#include "platform/QtConvert.h"

#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStandardPaths>
#include <QStatusBar>

namespace sx::demo {

namespace {

const char16_t* const ScriptsTable = u"scripts";
/// A post waits this long for another program (the sqlite3 shell, say) to
/// finish its write before it reports the database as locked.
constexpr Integer WriteWaitMs = 1500;
const QStringList LanguageNames = {QStringLiteral("Pascal"), QStringLiteral("SQL"), QStringLiteral("VB"),
                                   QStringLiteral("JS"), QStringLiteral("XML")};

QString StateName(TDataSetState state)
{
    switch (state) {
    case dsInactive: return QObject::tr("closed");
    case dsBrowse: return QObject::tr("browsing");
    case dsEdit: return QObject::tr("editing");
    case dsInsert: return QObject::tr("new record");
    }
    return QString();
}

QString FieldText(TDataSet& dataSet, const char16_t* name) { return ToQString(dataSet.FieldByName(name)->AsString()); }

}  // namespace

QString DefaultDatabasePath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).filePath(QStringLiteral("scripts.db"));
}

void EnsureSampleDatabase(const QString& path)
{
    if (QFileInfo::exists(path))
        return;
    QFile script(QStringLiteral(SX_EXAMPLES_DIR "/scripts.sql"));
    if (!script.open(QIODevice::ReadOnly))
        throw EDatabaseError(FromQString(QObject::tr("Cannot read the sample %1").arg(script.fileName())));
    QDir().mkpath(QFileInfo(path).absolutePath());
    TSqliteDatabase database;
    database.Open(FromQString(path), true);
    try {
        database.ExecSQL(FromQString(QString::fromUtf8(script.readAll())));
    } catch (...) {
        database.Close();
        QFile::remove(path);  // a half-made sample would be taken for a whole one next time
        throw;
    }
}

DbWindow::DbWindow()
    : FScripts(new TSqliteDataSet(&FComponents)),
      FNames(new TSqliteDataSet(&FComponents)),
      FSource(new TDataSource(&FComponents)),
      FEdit(new TSxDbCodeEdit(nullptr)),
      FList(new QListWidget),
      FStatus(new QLabel)
{
    auto* splitter = new QSplitter;
    splitter->addWidget(FList);
    splitter->addWidget(FEdit->Widget());
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({200, 600});
    setCentralWidget(splitter);
    resize(900, 600);
    statusBar()->addPermanentWidget(FStatus);

    FScripts->SetTableName(ScriptsTable);
    FScripts->SetBusyTimeout(WriteWaitMs);
    FNames->SetSQL(u"SELECT name, language FROM scripts ORDER BY rowid");
    FSource->SetDataSet(FScripts);
    FSource->OnDataChange = [this](TObject*, TField* field) {
        if (!field)
            ShowRecord();
    };
    FSource->OnStateChange = [this](TObject*) { ShowState(); };
    FEdit->SetDataSource(FSource);
    FEdit->SetDataField(u"source");
    connect(FList, &QListWidget::currentRowChanged, this, [this](int row) { GoToRow(row); });
    BuildMenus();
}

DbWindow::~DbWindow()
{
    // The control outlives the data source as a child widget: it lets go first.
    FEdit->SetDataSource(nullptr);
}

void DbWindow::BuildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Open database..."), QKeySequence::Open, this, [this] { OpenChosenDatabase(); });
    file->addSeparator();
    file->addAction(tr("&Close"), QKeySequence::Close, this, [this] { close(); });

    QMenu* record = menuBar()->addMenu(tr("&Record"));
    record->addAction(tr("&Post"), QKeySequence::Save, this, [this] { PostRecord(); });
    record->addAction(tr("&Cancel edit"), QKeySequence(Qt::CTRL | Qt::Key_Period), this, [this] { CancelRecord(); });
    record->addSeparator();
    record->addAction(tr("&New script..."), QKeySequence::New, this, [this] { NewRecord(); });
    record->addAction(tr("&Delete script"), this, [this] { DeleteRecord(); });
}

void DbWindow::Open(const QString& path)
{
    EnsureSampleDatabase(path);
    FScripts->Close();
    FScripts->SetDatabaseName(FromQString(path));
    FNames->SetDatabaseName(FromQString(path));
    FScripts->Open();
    FPath = path;
    setWindowTitle(tr("%1 - sxedit database").arg(QFileInfo(path).fileName()));
    FillList();
    ShowRecord();
}

void DbWindow::FillList()
{
    const QSignalBlocker quiet(FList);
    FList->clear();
    FNames->Open();
    for (FNames->First(); !FNames->Eof(); FNames->Next())
        FList->addItem(tr("%1  (%2)").arg(FieldText(*FNames, u"name"), FieldText(*FNames, u"language")));
    FNames->Close();
    FList->setCurrentRow(FScripts->RecNo());
}

void DbWindow::ShowRecord()
{
    if (!FScripts->Active()) {
        ShowState();
        return;
    }
    {
        const QSignalBlocker quiet(FList);
        FList->setCurrentRow(FScripts->RecNo());
    }
    const bool onRecord = !FScripts->IsEmpty() || FScripts->State() == dsInsert;
    const QString language = onRecord ? FieldText(*FScripts, u"language") : QString();
    if (language != FLanguage) {
        FLanguage = language;
        FEdit->SetParser(ParserForLanguage(language, FEdit));
    }
    ShowState();
}

void DbWindow::ShowState()
{
    FStatus->setText(tr("Record %1 of %2, %3")
                         .arg(FScripts->RecNo() + 1)
                         .arg(FScripts->RecordCount())
                         .arg(StateName(FScripts->State())));
}

bool DbWindow::Attempt(const std::function<void()>& operation)
{
    try {
        operation();
        return true;
    } catch (const EAbort&) {
        return false;
    } catch (const Exception& e) {
        QMessageBox::warning(this, tr("sxedit"), ToQString(e.Message()));
        return false;
    }
}

void DbWindow::GoToRow(int Row)
{
    if (Row < 0 || Row == FScripts->RecNo())
        return;
    if (!Attempt([&] { FScripts->SetRecNo(Row); })) {
        const QSignalBlocker quiet(FList);
        FList->setCurrentRow(FScripts->RecNo());
        FEdit->SetFocus();
        return;
    }
    if (FList->count() != FScripts->RecordCount())
        FillList();  // a new record was posted on the way
}

void DbWindow::PostRecord()
{
    if (FScripts->State() != dsEdit && FScripts->State() != dsInsert)
        return;
    const bool inserted = FScripts->State() == dsInsert;
    if (Attempt([this] { FScripts->Post(); })) {
        statusBar()->showMessage(tr("Posted"), 3000);
        if (inserted)
            FillList();
    } else {
        FEdit->SetFocus();
    }
}

void DbWindow::CancelRecord()
{
    const bool inserted = FScripts->State() == dsInsert;
    FScripts->Cancel();
    if (inserted)
        FillList();
}

void DbWindow::NewRecord()
{
    bool ok = false;
    const QString name = QInputDialog::getText(this, tr("New script"), tr("Name:"), QLineEdit::Normal, QString(), &ok);
    if (!ok || name.trimmed().isEmpty())
        return;
    const QString language = QInputDialog::getItem(this, tr("New script"), tr("Language:"), LanguageNames, 0, false, &ok);
    if (!ok)
        return;
    const bool appended = Attempt([&] {
        FScripts->Append();
        FScripts->FieldByName(u"name")->SetAsString(FromQString(name.trimmed()));
        FScripts->FieldByName(u"language")->SetAsString(FromQString(language));
    });
    if (!appended)
        return;
    {
        const QSignalBlocker quiet(FList);
        FList->addItem(tr("%1  (new)").arg(name.trimmed()));
        FList->setCurrentRow(FList->count() - 1);
    }
    ShowRecord();
    FEdit->SetFocus();
}

void DbWindow::DeleteRecord()
{
    if (FScripts->IsEmpty())
        return;
    const QString name = FieldText(*FScripts, u"name");
    if (QMessageBox::question(this, tr("sxedit"), tr("Delete the script %1?").arg(name)) != QMessageBox::Yes)
        return;
    if (Attempt([this] { FScripts->Delete(); }))
        FillList();
}

void DbWindow::OpenChosenDatabase()
{
    if (!MayClose())
        return;
    const QString path = QFileDialog::getSaveFileName(this, tr("Open database (a new name makes the sample)"),
                                                      FPath, tr("SQLite databases (*.db *.sqlite);;All files (*)"),
                                                      nullptr, QFileDialog::DontConfirmOverwrite);
    if (!path.isEmpty())
        Attempt([&] { Open(path); });
}

bool DbWindow::MayClose()
{
    if (FScripts->State() != dsEdit && FScripts->State() != dsInsert)
        return true;
    if (!Attempt([this] { FScripts->UpdateRecord(); }))
        return false;
    if (!FScripts->Modified()) {
        FScripts->Cancel();
        return true;
    }
    const auto answer = QMessageBox::question(this, tr("sxedit"), tr("Post the changes to this script?"),
                                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Discard)
        FScripts->Cancel();
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && Attempt([this] { FScripts->Post(); }));
}

void DbWindow::closeEvent(QCloseEvent* event)
{
    if (MayClose())
        event->accept();
    else
        event->ignore();
}

}  // namespace sx::demo
