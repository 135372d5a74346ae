// The smallest application that embeds the code editor: a main window with
// one TSxCodeEdit colouring Pascal. Built against the installed package.
//
//   embed_example                 # opens the window
//   embed_example --render F.png  # draws the window into F.png and ends
#include "codeedit/SxPackage.h"
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"

#include <QApplication>
#include <QMainWindow>
#include <QPixmap>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    sx::Initialize();  // registers the parser classes

    QMainWindow window;
    auto* edit = new sx::TSxCodeEdit(nullptr);           // freed with its widget
    edit->SetParser(new sx::TSxCodePascalParser(edit));  // owned by the control
    edit->SetText(u"begin\r\n  Writeln('Hello');\r\nend.");
    window.setCentralWidget(edit->Widget());
    window.resize(640, 480);
    window.show();

    int result = 0;
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == QLatin1String("--render")) {
        // Once the window is up: draw it, save it and end.
        QTimer::singleShot(0, &app, [&] {
            const bool saved = window.grab().save(arguments[2]);
            std::printf("Sx code editor %s: %d lines, %s\n", sx::LibraryVersion(), int(edit->Lines().Count()),
                        saved ? "rendered" : "not rendered");
            result = saved ? 0 : 1;
            QApplication::quit();
        });
    }
    const int loop = QApplication::exec();
    sx::Finalize();
    return result != 0 ? result : loop;
}
