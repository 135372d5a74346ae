// The caret as a small child widget over the control's widget, made visible
// and hidden by a timer while it is shown and its window has the focus.
#include "platform/Caret.h"

#include "platform/Controls.h"
#include "platform/Graphics.h"
#include "platform/QtConvert.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>

namespace sx {

namespace {

struct CaretState {
    TCaretInfo info;
    QPointer<QWidget> block;
    std::unique_ptr<QTimer> timer;
};

CaretState& Caret()
{
    thread_local CaretState state;
    return state;
}

int BlinkIntervalMs()
{
    const int flash = qobject_cast<QApplication*>(QCoreApplication::instance()) ? QApplication::cursorFlashTime() : 1000;
    return flash > 0 ? flash / 2 : 0;  // 0 or less: the desktop wants no blinking
}

/// Brings the block widget in line with the caret.
void SyncBlock()
{
    CaretState& c = Caret();
    if (!c.block)
        return;
    if (!c.info.Window) {
        c.block->hide();
        return;
    }
    c.block->setGeometry(c.info.Pos.X, c.info.Pos.Y, c.info.Width, c.info.Height);
    c.block->setVisible(c.info.Shown && c.info.Window->Focused());
    c.block->raise();
}

/// Moving or hiding the block repaints the window under it: it goes with
/// the window's other screen updates, which wait for posted messages.
void UpdateBlock() { UpdateScreen(&Caret(), SyncBlock); }

/// The block widget over the window, kept from one caret to the next: the
/// caret is made anew on every move, and a widget each time would be slow.
QWidget* BlockFor(QWidget* window)
{
    CaretState& c = Caret();
    if (c.block && c.block->parentWidget() == window)
        return c.block;
    delete c.block.data();
    c.block = new QWidget(window);
    c.block->setAttribute(Qt::WA_TransparentForMouseEvents);
    c.block->setAutoFillBackground(true);
    c.block->hide();
    return c.block;
}

void PaintBlock(QWidget& block, TColor color)
{
    if (const QColor wanted = ToQColor(color); block.palette().color(QPalette::Window) != wanted) {
        QPalette palette = block.palette();
        palette.setColor(QPalette::Window, wanted);
        block.setPalette(palette);
    }
}

QTimer& BlinkTimer()
{
    CaretState& c = Caret();
    if (!c.timer) {
        c.timer = std::make_unique<QTimer>();
        QObject::connect(c.timer.get(), &QTimer::timeout, [] {
            CaretState& s = Caret();
            if (s.block && s.info.Shown && s.info.Window && s.info.Window->Focused())
                s.block->setVisible(!s.block->isVisible());
        });
    }
    return *c.timer;
}

}  // namespace

bool CreateCaret(TWinControl* window, void*, Integer width, Integer height)
{
    DestroyCaret();
    if (!window || !window->Widget())
        return false;
    CaretState& c = Caret();
    c.info = TCaretInfo{window, Point(0, 0), width, height, false};
    PaintBlock(*BlockFor(window->Widget()), c.info.Color);
    return true;
}

bool SetCaretColor(TWinControl* window, TColor color)
{
    CaretState& c = Caret();
    if (!c.info.Window || (window && window != c.info.Window) || !c.block)
        return false;
    c.info.Color = color;
    PaintBlock(*c.block, color);
    return true;
}

bool SetCaretPos(Integer x, Integer y)
{
    CaretState& c = Caret();
    if (!c.info.Window)
        return false;
    c.info.Pos = Point(x, y);
    UpdateBlock();
    return true;
}

bool ShowCaret(TWinControl* window)
{
    CaretState& c = Caret();
    if (!c.info.Window || (window && window != c.info.Window))
        return false;
    c.info.Shown = true;
    UpdateBlock();
    if (const int interval = BlinkIntervalMs(); interval > 0)
        BlinkTimer().start(interval);
    return true;
}

bool HideCaret(TWinControl* window)
{
    CaretState& c = Caret();
    if (!c.info.Window || (window && window != c.info.Window))
        return false;
    c.info.Shown = false;
    BlinkTimer().stop();
    UpdateBlock();
    return true;
}

bool DestroyCaret()
{
    CaretState& c = Caret();
    if (c.timer)
        c.timer->stop();
    c.info = TCaretInfo{};
    UpdateBlock();
    return true;
}

TCaretInfo GetCaretInfo() { return Caret().info; }

}  // namespace sx
