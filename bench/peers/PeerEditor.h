// One editor control under measurement, in a shown window of its own at 800
// by 600, with its Pascal colouring on, driven only through what the control
// offers an application: load a file, scroll, put the caret, find, replace,
// undo. Keys come as Qt key events sent to the control, as a user's would.
#pragma once

#include <QFont>
#include <QImage>
#include <QString>
#include <QWidget>

#include <memory>

namespace peers {

/// The size of every view.
constexpr int ViewWidth = 800;
constexpr int ViewHeight = 600;

/// The monospace font all three draw with: the metric-compatible face of
/// Courier New at 10 points.
QFont MonospaceFont();


class PeerEditor {
public:
    PeerEditor();
    virtual ~PeerEditor();
    PeerEditor(const PeerEditor&) = delete;
    PeerEditor& operator=(const PeerEditor&) = delete;

    virtual const char* Name() const = 0;
    /// The control's widget: what a paint renders and what keys go to.
    virtual QWidget* View() const = 0;

    /// Replaces the text with the file's, as an application opens a file.
    virtual void Load(const QString& path) = 0;
    /// Makes line the top line of the view through the vertical scroll bar.
    virtual void ScrollTo(int line) = 0;
    /// Puts the caret at a column of a line, scrolling it into view.
    virtual void PutCaret(int line, int column) = 0;
    /// Runs what the control left queued for later (our posted messages).
    virtual void Pump() {}
    /// Has the control repaint only what changed, where that is an option
    /// (ours: coPartialPaint); the peers always do.
    virtual void SetPartialPaint(bool) {}
    /// Finds the next hit of word from the caret, as the control's own find
    /// does, and selects it; answers the line of the hit or -1.
    virtual int Find(const QString& word, bool caseSensitive) = 0;
    /// Replaces every hit from the caret on without asking, case-sensitive;
    /// stops once the timeout has passed and answers whether it finished.
    virtual bool ReplaceAll(const QString& word, const QString& by, qint64 timeoutMs) = 0;
    virtual void Undo() = 0;

    virtual int LineCount() const = 0;
    virtual QString LineText(int line) const = 0;

    /// The number of lines that hold text.
    int CountLinesWith(const QString& text) const;
    /// Gives the control the focus in its active window.
    void Focus();
    /// Presses and releases a key that types text.
    void Key(Qt::Key key, const QString& text);
    /// Renders the whole view into image.
    void Render(QImage& image);

protected:
    /// The window the control stands in; the control's widget fills it.
    QWidget* Window() const { return FWindow.get(); }
    /// Shows the window once the control is in it.
    void ShowWindow();

private:
    std::unique_ptr<QWidget> FWindow;
};

std::unique_ptr<PeerEditor> MakeSxEditor();
std::unique_ptr<PeerEditor> MakeQsciEditor();
std::unique_ptr<PeerEditor> MakePlainEditor();

/// Lets Qt run what is queued, paints of shown windows included.
void Settle();

}  // namespace peers
