// The smallest application that embeds the code editor: a main window with
// one TSxCodeEdit colouring Pascal.
#include "codeedit/SxPackage.h"
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"

#include <QApplication>
#include <QMainWindow>

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

    const int result = QApplication::exec();
    sx::Finalize();
    return result;
}
