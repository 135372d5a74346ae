// The demo editor's window. The control has no event for its Modified flag,
// so the title is brought up to date on a short timer.
#include "DemoWindow.h"

#include "AboutText.h"
#include "DbWindow.h"

#include "codeedit/uSxCodeEditTheme.h"
#include "codeedit/uSxCodePascalParser.h"
#include "face/SxLanguages.h"
#include "platform/Menus.h"
#include "platform/QtConvert.h"
#include "platform/Registry.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSaveFile>
#include <QStatusBar>
#include <QTimer>

namespace sx::demo {

namespace {

/// Whether the file's lines end in CR LF, judged by its first line end.
bool FileUsesCrLf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(1 << 16);
    const qsizetype lf = head.indexOf('\n');
    return lf > 0 && head.at(lf - 1) == '\r';
}

}  // namespace

DemoWindow::DemoWindow() : FEdit(new TSxCodeEdit(nullptr)), FPopup(new TPopupMenu(nullptr)), FPosition(new QLabel)
{
    setCentralWidget(FEdit->Widget());
    resize(800, 600);
    statusBar()->addPermanentWidget(FPosition);
    FEdit->SetOnCursorChange([this](TObject*) { ShowCaretPosition(); });
    // What every editor shows, on from the start; the View menu turns each
    // off. Undo keeps its classic steps until grouping is chosen.
    FEdit->SetExtOptions({TSxCodeExtOption::coLineNumbers, TSxCodeExtOption::coCurrentLine,
                          TSxCodeExtOption::coBracketMatch, TSxCodeExtOption::coRedo,
                          TSxCodeExtOption::coRegExpSearch, TSxCodeExtOption::coFolding,
                          TSxCodeExtOption::coExactColors, TSxCodeExtOption::coLongLines,
                          TSxCodeExtOption::coPartialPaint});
    UseTheme(QStringLiteral("Light"));
    BuildMenus();
    BuildPopupMenu();
    auto* titleTimer = new QTimer(this);
    connect(titleTimer, &QTimer::timeout, this, [this] { ShowTitle(); });
    titleTimer->start(250);
    ShowCaretPosition();
    ShowTitle();
}

DemoWindow::~DemoWindow()
{
    FEdit->SetPopupMenu(nullptr);
    delete FPopup;
}

void DemoWindow::BuildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&Open..."), QKeySequence::Open, this, [this] { OpenChosenFile(); });
    file->addAction(tr("&Save"), QKeySequence::Save, this, [this] { SaveFile(false); });
    file->addAction(tr("Save &as..."), QKeySequence::SaveAs, this, [this] { SaveFile(true); });
    file->addSeparator();
    file->addAction(tr("Open the sample &database"), this, [this] { OpenDatabase(DefaultDatabasePath()); });
    file->addAction(tr("Open data&base..."), this, [this] { OpenChosenDatabase(); });
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, [this] { close(); });

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    FUndo = AddCommand(edit, tr("&Undo"), WM_UNDO, QKeySequence::Undo);
    FRedo = AddCommand(edit, tr("&Redo"), uSxCodeEdit::WM_SX_REDO, QKeySequence::Redo);
    edit->addSeparator();
    FCut = AddCommand(edit, tr("Cu&t"), WM_CUT, QKeySequence::Cut);
    FCopy = AddCommand(edit, tr("&Copy"), WM_COPY, QKeySequence::Copy);
    FPaste = AddCommand(edit, tr("&Paste"), WM_PASTE, QKeySequence::Paste);
    edit->addSeparator();
    // The control's own search messages: 0x402 opens the dialog (WParam 1
    // for replace), 0x403 runs the last search again.
    AddCommand(edit, tr("&Find..."), uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, QKeySequence(Qt::CTRL | Qt::Key_F));
    AddCommand(edit, tr("&Replace..."), uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, QKeySequence(Qt::CTRL | Qt::Key_R),
               uSxCodeEdit::ReplaceDialogRequest);
    AddCommand(edit, tr("Find &again"), uSxCodeEdit::WM_SX_SEARCHREPLACE, QKeySequence(Qt::Key_F3));
    connect(edit, &QMenu::aboutToShow, this, [this] {
        FUndo->setEnabled(FEdit->CanUndo());
        FRedo->setEnabled(FEdit->CanRedo());
        FPaste->setEnabled(FEdit->CanPaste() && !FEdit->ReadOnly());
        const bool selected = FEdit->SelLength() != 0;
        FCut->setEnabled(selected && !FEdit->ReadOnly());
        FCopy->setEnabled(selected);
    });
    // The shortcuts stay live while the menu is closed: a disabled action
    // would swallow its key, so every action is enabled again on close.
    connect(edit, &QMenu::aboutToHide, this, [edit] {
        for (QAction* action : edit->actions())
            action->setEnabled(true);
    });

    BuildViewMenu();

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&About sxedit..."), this, [this] { QMessageBox::about(this, AboutTitle(), AboutText()); });
}

void DemoWindow::BuildViewMenu()
{
    QMenu* view = menuBar()->addMenu(tr("&View"));
    const struct {
        const char* caption;
        TSxCodeExtOption option;
    } entries[] = {
        {"&Line numbers", TSxCodeExtOption::coLineNumbers},
        {"&Current line", TSxCodeExtOption::coCurrentLine},
        {"&Bracket matching", TSxCodeExtOption::coBracketMatch},
        {"&Redo", TSxCodeExtOption::coRedo},
        {"&Grouped undo", TSxCodeExtOption::coGroupUndo},
        {"Regular e&xpressions in Find and Replace", TSxCodeExtOption::coRegExpSearch},
        {"&Folding (Ctrl+Shift+[ and ], Ctrl+Alt+[ and ])", TSxCodeExtOption::coFolding},
        {"&Exact colours after a jump", TSxCodeExtOption::coExactColors},
        {"Scroll to the end of &long lines", TSxCodeExtOption::coLongLines},
        {"Repaint only what &changed", TSxCodeExtOption::coPartialPaint},
    };
    for (const auto& entry : entries) {
        QAction* action = view->addAction(tr(entry.caption));
        action->setCheckable(true);
        action->setChecked(FEdit->HasExtOption(entry.option));
        connect(action, &QAction::toggled, this, [this, option = entry.option](bool on) {
            TSxCodeExtOptions options = FEdit->ExtOptions();
            FEdit->SetExtOptions(on ? options.Include(option) : options.Exclude(option));
        });
    }
    view->addSeparator();
    QMenu* themes = view->addMenu(tr("&Theme"));
    auto* choice = new QActionGroup(themes);
    for (const QString& name : {QStringLiteral("Classic"), QStringLiteral("Light"), QStringLiteral("Dark")}) {
        QAction* action = themes->addAction(name, this, [this, name] { UseTheme(name); });
        action->setCheckable(true);
        action->setChecked(name == FThemeName);
        choice->addAction(action);
    }
    themes->addSeparator();
    themes->addAction(tr("&Load from a file..."), this, [this, choice] {
        const QString path = QFileDialog::getOpenFileName(this, tr("Load a theme"), QString(), tr("Themes (*.ini)"));
        if (path.isEmpty())
            return;
        try {
            UseTheme(path);
            if (QAction* checked = choice->checkedAction())
                checked->setChecked(false);
        } catch (const Exception& e) {
            QMessageBox::warning(this, tr("Load a theme"), ToQString(e.Message()));
        }
    });
    themes->addAction(tr("&Save to a file..."), this, [this] {
        const QString path = QFileDialog::getSaveFileName(this, tr("Save the theme"), QString(), tr("Themes (*.ini)"));
        if (path.isEmpty())
            return;
        try {
            TSxCodeEditTheme::Current(FEdit).SaveToFile(FromQString(path));
        } catch (const Exception& e) {
            QMessageBox::warning(this, tr("Save the theme"), ToQString(e.Message()));
        }
    });
    view->addAction(tr("Colours from &Delphi..."), this, [this] { ChooseDelphiColours(); });
}

void DemoWindow::UseTheme(const QString& nameOrFile)
{
    TSxCodeEditTheme theme;
    if (nameOrFile == u"Classic")
        theme = TSxCodeEditTheme::Classic();
    else if (nameOrFile == u"Light")
        theme = TSxCodeEditTheme::Light();
    else if (nameOrFile == u"Dark")
        theme = TSxCodeEditTheme::Dark();
    else {
        theme = TSxCodeEditTheme::Current(FEdit);
        theme.LoadFromFile(FromQString(nameOrFile));
    }
    ApplyTheme(theme);
    theme.ApplyTo(*FEdit);
    FThemeName = nameOrFile;
}

QAction* DemoWindow::AddCommand(QMenu* menu, const QString& caption, Cardinal message, const QKeySequence& key,
                               NativeUInt wParam)
{
    return menu->addAction(caption, key, this, [this, message, wParam] { PostMessage(FEdit, message, wParam); });
}

void DemoWindow::BuildPopupMenu()
{
    const struct {
        const char16_t* caption;
        Cardinal message;
    } commands[] = {{u"Cu&t", WM_CUT}, {u"&Copy", WM_COPY}, {u"&Paste", WM_PASTE},
                    {u"-", 0},        {u"&Undo", WM_UNDO}, {u"&Redo", uSxCodeEdit::WM_SX_REDO},
                    {u"Select &word", uSxCodeEdit::WM_SX_SELECTWORD}};
    for (const auto& command : commands) {
        auto* item = new TMenuItem(nullptr);
        item->SetCaption(command.caption);
        if (command.message != 0)
            item->OnClick = [this, message = command.message](TObject*) { PostMessage(FEdit, message); };
        FPopup->Items().Add(item);
    }
    FPopup->OnPopup = [this](TObject*) {
        TMenuItem& items = FPopup->Items();
        items.Items(0)->SetEnabled(FEdit->SelLength() != 0 && !FEdit->ReadOnly());
        items.Items(1)->SetEnabled(FEdit->SelLength() != 0);
        items.Items(2)->SetEnabled(FEdit->CanPaste() && !FEdit->ReadOnly());
        items.Items(4)->SetEnabled(FEdit->CanUndo());
        items.Items(5)->SetEnabled(FEdit->CanRedo());
    };
    FEdit->SetPopupMenu(FPopup);
}

void DemoWindow::Open(const QString& path)
{
    FEdit->LoadFromFile(FromQString(path));
    FEdit->SetModified(false);
    FEdit->SetParser(ParserForFile(path, FEdit));
    FPath = path;
    FCrLf = FileUsesCrLf(path);
    ShowTitle();
}

bool DemoWindow::Save(const QString& path)
{
    String text = FEdit->Text();
    if (!FCrLf)
        std::erase(text, u'\r');  // the lines hold no CR of their own: Text adds it
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(ToQString(text).toUtf8()) < 0 || !file.commit()) {
        QMessageBox::warning(this, tr("sxedit"), tr("Cannot save %1: %2").arg(path, file.errorString()));
        return false;
    }
    FPath = path;
    FEdit->SetModified(false);
    ShowTitle();
    return true;
}

void DemoWindow::OpenChosenFile()
{
    if (!MayDiscardChanges())
        return;
    const QString path = QFileDialog::getOpenFileName(this, tr("Open"), QFileInfo(FPath).path());
    if (path.isEmpty())
        return;
    try {
        Open(path);
    } catch (const Exception& e) {
        QMessageBox::warning(this, tr("sxedit"), ToQString(e.Message()));
    }
}

void DemoWindow::OpenDatabase(const QString& path)
{
    auto* window = new DbWindow;
    window->setAttribute(Qt::WA_DeleteOnClose);
    try {
        window->Open(path);
    } catch (const Exception& e) {
        delete window;
        QMessageBox::warning(this, tr("sxedit"), ToQString(e.Message()));
        return;
    }
    window->show();
    window->Edit().SetFocus();
}

void DemoWindow::OpenChosenDatabase()
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Open database (a new name makes the sample)"),
                                                      QFileInfo(DefaultDatabasePath()).path(),
                                                      tr("SQLite databases (*.db *.sqlite);;All files (*)"), nullptr,
                                                      QFileDialog::DontConfirmOverwrite);
    if (!path.isEmpty())
        OpenDatabase(path);
}

bool DemoWindow::UseDelphiColours(Integer V)
{
    // Without a Pascal parser in the control a passing one sets the shared table.
    TSxCodePascalParser passing(nullptr);
    auto* pascal = dynamic_cast<TSxCodePascalParser*>(FEdit->Parser());
    (pascal ? pascal : &passing)->SetDelphiVersion(V);
    FEdit->Invalidate();
    return DelphiKnown(V);
}

QString DemoWindow::RegistryPlace()
{
    const String file = RegistryFileName();
    return file.empty() ? tr("the registry") : ToQString(file);
}

void DemoWindow::ChooseDelphiColours()
{
    auto* pascal = dynamic_cast<TSxCodePascalParser*>(FEdit->Parser());
    bool ok = false;
    const int version = QInputDialog::getInt(this, tr("Colours from Delphi"), tr("Delphi version (7 for Delphi 7):"),
                                             pascal && pascal->DelphiVersion() > 0 ? pascal->DelphiVersion() : 7, 1,
                                             999, 1, &ok);
    if (!ok)
        return;
    try {
        if (UseDelphiColours(version))
            statusBar()->showMessage(tr("Pascal in the colours of Delphi %1").arg(version), 5000);
        else
            QMessageBox::information(this, tr("sxedit"),
                                     tr("No settings of Delphi %1 in %2.").arg(version).arg(RegistryPlace()));
    } catch (const Exception& e) {
        QMessageBox::warning(this, tr("sxedit"), ToQString(e.Message()));
    }
}

bool DemoWindow::SaveFile(bool askForName)
{
    QString path = FPath;
    if (askForName || path.isEmpty())
        path = QFileDialog::getSaveFileName(this, tr("Save as"), FPath);
    return !path.isEmpty() && Save(path);
}

bool DemoWindow::MayDiscardChanges()
{
    if (!FEdit->Modified())
        return true;
    const auto answer = QMessageBox::question(this, tr("sxedit"), tr("Save the changes to %1?").arg(FPath),
                                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Save)
        return SaveFile(false);
    return answer == QMessageBox::Discard;
}

void DemoWindow::closeEvent(QCloseEvent* event)
{
    if (MayDiscardChanges())
        event->accept();
    else
        event->ignore();
}

void DemoWindow::ShowCaretPosition()
{
    FPosition->setText(tr("Line %1, column %2").arg(FEdit->LinePos() + 1).arg(FEdit->CharPos() + 1));
}

void DemoWindow::ShowTitle()
{
    const QString name = FPath.isEmpty() ? tr("untitled") : QFileInfo(FPath).fileName();
    const QString title = (FEdit->Modified() ? QStringLiteral("*") : QString()) + name + QStringLiteral(" - sxedit");
    if (windowTitle() != title)
        setWindowTitle(title);
}

}  // namespace sx::demo
