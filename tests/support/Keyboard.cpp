// Key presses through QTest's window path, which updates Qt's modifier state.
#include "support/Keyboard.h"

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace sx::test {

namespace {

QWindow* WindowOf(TWinControl& control) { return control.Widget()->window()->windowHandle(); }

Qt::Key KeyOfChar(QChar c)
{
    if (c == QLatin1Char('\n'))
        return Qt::Key_Return;
    if (c == QLatin1Char('\t'))
        return Qt::Key_Tab;
    const QChar upper = c.toUpper();
    if (upper.unicode() >= 0x20 && upper.unicode() < 0x7F)
        return Qt::Key(upper.unicode());
    return Qt::Key_unknown;
}

}  // namespace

void Focus(TWinControl& control)
{
    QWidget* window = control.Widget()->window();
    window->show();
    window->activateWindow();
    QApplication::setActiveWindow(window);
    control.SetFocus();
    QApplication::processEvents();
}

void Press(TWinControl& control, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(WindowOf(control), key, modifiers);
}

void Type(TWinControl& control, const QString& text, Qt::KeyboardModifiers modifiers)
{
    for (const QChar c : text) {
        const QString typed = c == QLatin1Char('\n') ? QStringLiteral("\r") : QString(c);
        QTest::sendKeyEvent(QTest::Click, WindowOf(control), KeyOfChar(c), typed, modifiers);
    }
}

}  // namespace sx::test
