// sxedit: the demo editor. Opens the file named on its command line, or the
// bundled Pascal sample, in one TSxCodeEdit. Without a display (or with
// --screenshots DIR) it renders the control to PNG files and says where.
// --delphi-version N colours Pascal as that Delphi version is set up to.
// --theme NAME|FILE colours the editor with a bundled theme or a theme file.
// --db FILE opens the database mode over an SQLite file, made from the bundled
// sample of scripts when it is missing; headless, that mode is rendered too.
#include "DbWindow.h"
#include "DemoWindow.h"

#include "codeedit/SxPackage.h"
#include "codeedit/uSxCodeEdit.h"
#include "platform/QtConvert.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QMainWindow>
#include <QMessageBox>

#include <cstdio>

using namespace sx;

namespace {

bool HasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

void SaveShot(QWidget& window, const QDir& dir, const QString& name)
{
    const QString path = dir.filePath(name);
    QApplication::processEvents();  // lets the status bar lay out its new text
    if (window.grab().save(path))
        std::printf("  %s\n", qPrintable(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath())));
    else
        std::fprintf(stderr, "sxedit: could not write %s\n", qPrintable(path));
}

/// The database mode on its second script with a line typed into it, which
/// puts the record into edit state; the edit is cancelled, so nothing is written.
void SaveDatabaseShot(const QDir& dir, const QString& dbPath)
{
    demo::DbWindow window;
    try {
        window.Open(dbPath);
    } catch (const Exception& e) {
        std::fprintf(stderr, "sxedit: %s\n", e.what());
        return;
    }
    window.show();
    window.GoToRow(1);
    TSxDbCodeEdit& edit = window.Edit();
    edit.SetFocus();
    for (const Char c : String(u"-- typed in the database mode\r"))
        SendMessage(&edit, WM_CHAR, c);
    SaveShot(window, dir, QStringLiteral("sxedit-database.png"));
    window.Scripts().Cancel();
}

/// Renders the view at the top, with a selection, after typing, and scrolled
/// down, and then the database mode.
int RenderScreenshots(QMainWindow& window, TSxCodeEdit& edit, const QString& dirName, const QString& dbPath)
{
    QDir dir(dirName);
    if (!dir.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "sxedit: cannot create %s\n", qPrintable(dirName));
        return 1;
    }
    std::printf("sxedit: no display; screenshots written to:\n");
    SaveShot(window, dir, QStringLiteral("sxedit-top.png"));
    edit.SetSelEnd(Point(2, 12));
    edit.SetSelStart(Point(9, 15));
    SaveShot(window, dir, QStringLiteral("sxedit-selection.png"));
    // Enter and a new field, typed at the end of a line of the sample.
    edit.SetLinePos(15);
    edit.SetCharPos(Integer(edit.Lines().Get(15).size()));
    for (const Char c : String(u"\rFArea: Double; // typed"))
        SendMessage(&edit, WM_CHAR, c);
    SaveShot(window, dir, QStringLiteral("sxedit-typed.png"));
    edit.ClearSelection();
    edit.VScrollBar().SetPosition(edit.Lines().Count() / 2);
    SaveShot(window, dir, QStringLiteral("sxedit-scrolled.png"));
    SaveDatabaseShot(dir, dbPath);
    return 0;
}

/// Applies --delphi-version; a version that is not there or a bad setting is
/// reported and the editor goes on in its own colours.
void UseDelphiColours(demo::DemoWindow& window, const QString& versionText)
{
    bool ok = false;
    const int version = versionText.toInt(&ok);
    if (!ok) {
        std::fprintf(stderr, "sxedit: --delphi-version wants a number, not %s\n", qPrintable(versionText));
        return;
    }
    try {
        if (!window.UseDelphiColours(version))
            std::fprintf(stderr, "sxedit: no settings of Delphi %d in %s\n", version,
                         qPrintable(demo::DemoWindow::RegistryPlace()));
    } catch (const Exception& e) {
        std::fprintf(stderr, "sxedit: %s\n", e.what());
    }
}

/// Applies --theme; a theme file that cannot be read is reported and the
/// editor goes on in the colours it has.
void UseTheme(demo::DemoWindow& window, const QString& theme)
{
    try {
        window.UseTheme(theme);
    } catch (const Exception& e) {
        std::fprintf(stderr, "sxedit: %s\n", e.what());
    }
}

/// The database mode alone, as the main window.
int RunDatabaseMode(const QString& dbPath)
{
    demo::DbWindow window;
    try {
        window.Open(dbPath);
    } catch (const Exception& e) {
        std::fprintf(stderr, "sxedit: %s\n", e.what());
        QMessageBox::warning(nullptr, QStringLiteral("sxedit"), ToQString(e.Message()));
        return 1;
    }
    window.show();
    window.Edit().SetFocus();
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("sxedit"));
    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Demo editor of the Sx code edit control"));
    options.addHelpOption();
    options.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The file to open (default: a bundled sample)"));
    const QCommandLineOption shots(QStringLiteral("screenshots"),
                                   QStringLiteral("Render PNG screenshots into <dir> and exit"), QStringLiteral("dir"));
    options.addOption(shots);
    const QCommandLineOption delphi(QStringLiteral("delphi-version"),
                                    QStringLiteral("Colour Pascal as Delphi version <n> does, from its registry settings"),
                                    QStringLiteral("n"));
    options.addOption(delphi);
    const QCommandLineOption db(QStringLiteral("db"),
                                QStringLiteral("Edit the scripts of the SQLite database <file>, made from the bundled "
                                               "sample when it is missing"),
                                QStringLiteral("file"));
    options.addOption(db);
    const QCommandLineOption theme(QStringLiteral("theme"),
                                   QStringLiteral("Colours from the theme <name> (Classic, Light, Dark) or a theme file "
                                                  "(default: Light)"),
                                   QStringLiteral("name"));
    options.addOption(theme);
    options.process(app);

    Initialize();
    const QStringList files = options.positionalArguments();
    const QString path = files.isEmpty() ? QStringLiteral(SX_EXAMPLES_DIR "/sample.pas") : files.first();
    const bool headless = options.isSet(shots) || !HasDisplay();
    const QString dbPath = options.isSet(db) ? options.value(db) : demo::DefaultDatabasePath();

    int result = 0;
    if (options.isSet(db) && !headless) {
        result = RunDatabaseMode(dbPath);
        Finalize();
        return result;
    }
    {
        demo::DemoWindow window;
        try {
            window.Open(path);
        } catch (const Exception& e) {
            std::fprintf(stderr, "sxedit: %s\n", e.what());
            if (headless)
                return 1;
            QMessageBox::warning(&window, QStringLiteral("sxedit"), ToQString(e.Message()));
        }
        if (options.isSet(theme))
            UseTheme(window, options.value(theme));
        if (options.isSet(delphi))
            UseDelphiColours(window, options.value(delphi));
        window.show();
        window.Edit().SetFocus();
        if (headless)
            result = RenderScreenshots(window, window.Edit(),
                                       options.isSet(shots) ? options.value(shots) : QStringLiteral("screenshots"), dbPath);
        else
            result = QApplication::exec();
    }
    Finalize();
    return result;
}
