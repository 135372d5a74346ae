// What the three controls share: the window, the focus, key events and the
// render of a paint.
#include "PeerEditor.h"

#include <QApplication>
#include <QKeyEvent>

namespace peers {

QFont MonospaceFont()
{
    QFont font(QStringLiteral("Courier New"));
    font.setPointSize(10);
    return font;
}

PeerEditor::PeerEditor() : FWindow(std::make_unique<QWidget>())
{
    FWindow->resize(ViewWidth, ViewHeight);
}

PeerEditor::~PeerEditor() = default;

void PeerEditor::ShowWindow()
{
    FWindow->show();
    Settle();
}

int PeerEditor::CountLinesWith(const QString& text) const
{
    int count = 0;
    for (int i = 0; i < LineCount(); ++i)
        count += LineText(i).contains(text) ? 1 : 0;
    return count;
}

void PeerEditor::Focus()
{
    QApplication::setActiveWindow(FWindow.get());
    View()->setFocus(Qt::OtherFocusReason);
    Settle();
}

void PeerEditor::Key(Qt::Key key, const QString& text)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(View(), &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(View(), &release);
}

void PeerEditor::Render(QImage& image) { View()->render(&image); }

void Settle() { QCoreApplication::processEvents(); }

}  // namespace peers
