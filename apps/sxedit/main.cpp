// sxedit: the demo editor. Opens the file named on its command line, or the
// bundled Pascal sample, in one TSxCodeEdit. Without a display (or with
// --screenshots DIR) it renders the control to PNG files and says where.
// --delphi-version N colours Pascal as that Delphi version is set up to.
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

/// Renders the view at the top, with a selection, after typing, and scrolled down.
int RenderScreenshots(QMainWindow& window, TSxCodeEdit& edit, const QString& dirName)
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
    options.process(app);

    Initialize();
    const QStringList files = options.positionalArguments();
    const QString path = files.isEmpty() ? QStringLiteral(SX_EXAMPLES_DIR "/sample.pas") : files.first();
    const bool headless = options.isSet(shots) || !HasDisplay();

    int result = 0;
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
        if (options.isSet(delphi))
            UseDelphiColours(window, options.value(delphi));
        window.show();
        window.Edit().SetFocus();
        if (headless)
            result = RenderScreenshots(window, window.Edit(), options.isSet(shots) ? options.value(shots) : QStringLiteral("screenshots"));
        else
            result = QApplication::exec();
    }
    Finalize();
    return result;
}
