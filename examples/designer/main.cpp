// A window made in Qt Designer around one SxCodeEditor: the form
// (EditorForm.ui) sets the editor's text, language and options and connects
// two buttons to its slots; uic turns it into C++ at build time.
//
//   designer_example                 # opens the window
//   designer_example --render F.png  # draws the window into F.png and ends
#include "ui_EditorForm.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QWidget window;
    Ui::EditorForm form;
    form.setupUi(&window);
    window.show();

    int result = 0;
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == QLatin1String("--render")) {
        // Once the window is up: draw it, say what the form set, and end.
        QTimer::singleShot(0, &app, [&] {
            const bool saved = window.grab().save(arguments[2]);
            const SxCodeEditor& editor = *form.editor;
            std::printf("designer_example: %s, line numbers %s, %d lines, %s\n", qPrintable(editor.language()),
                        editor.areLineNumbersVisible() ? "on" : "off", editor.lineCount(),
                        saved ? "rendered" : "not rendered");
            result = saved ? 0 : 1;
            QApplication::quit();
        });
    }
    const int loop = QApplication::exec();
    return result != 0 ? result : loop;
}
