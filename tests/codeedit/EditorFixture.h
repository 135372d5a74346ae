// A code edit control in a shown window with the keyboard focus, ready to be
// typed into through real key events, a one-line dump of its state, and the
// errors that reach the application's handler.
#pragma once

#include "codeedit/uSxCodeEdit.h"
#include "support/Keyboard.h"
#include "support/RenderHelpers.h"

#include <QTest>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sx::test {

/// While it lives, the exceptions that reach the application's handler at the
/// event boundary: each message, and whether the last was an abort or ran out of memory.
class ReportedErrors {
public:
    ReportedErrors()
    {
        SetApplicationExceptionHandler([this](const std::exception& e) {
            const auto* error = dynamic_cast<const Exception*>(&e);
            Messages.push_back(error ? error->Message() : u"?");
            Aborted = dynamic_cast<const EAbort*>(&e) != nullptr;
            OutOfMemory = dynamic_cast<const EOutOfMemory*>(&e) != nullptr;
        });
    }
    ~ReportedErrors() { SetApplicationExceptionHandler(nullptr); }
    ReportedErrors(const ReportedErrors&) = delete;
    ReportedErrors& operator=(const ReportedErrors&) = delete;

    std::vector<String> Messages;
    bool Aborted = false, OutOfMemory = false;
};

/// The fixture over a control of type T: the code edit control or a kind of it.
template <class T>
class EditorTestOf : public ::testing::Test {
protected:
    void SetUp() override { Focus(*edit); }

    /// Replaces the text and puts the caret at (X, Y) with no selection, the control not modified.
    void Start(const String& text, TPoint caret = Point(0, 0))
    {
        edit->SetText(text);
        edit->SetLinePos(caret.Y);
        edit->SetCharPos(caret.X);
        edit->SetModified(false);
    }
    void TurnOn(TSxCodeExtOption option) { edit->SetExtOptions(edit->ExtOptions().Include(option)); }
    TPoint Caret() const { return Point(edit->CharPos(), edit->LinePos()); }
    /// The top left widget pixel of the caret's cell, where the screen caret and the text at the caret start.
    TPoint CaretCell()
    {
        const TRect cell = CellRect(*edit, edit->CharPos(), edit->LinePos());
        return Point(cell.Left, cell.Top);
    }
    String Line(Integer index) { return edit->Lines().Get(index); }
    /// Moves the caret and selects from the anchor to it, as Shift with the arrows would.
    void Select(TPoint anchor, TPoint caret)
    {
        edit->SetLinePos(caret.Y);
        edit->SetCharPos(caret.X);
        edit->SetSelEnd(anchor);
    }
    String Selected()
    {
        String s;
        edit->GetSelected(s);
        return s;
    }
    void Undo() { SendMessage(edit, WM_UNDO); }
    /// Presses the key, with Ctrl unless told otherwise, then runs what it posted.
    void PressAndRun(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
    {
        Press(*edit, key, modifiers);
        ProcessPostedMessages();
    }
    /// Presses the left button at `from`, moves along the path and lets go at its end.
    void Drag(QPoint from, std::initializer_list<QPoint> path)
    {
        QTest::mousePress(edit->Widget(), Qt::LeftButton, Qt::NoModifier, from);
        for (const QPoint& to : path)
            QTest::mouseMove(edit->Widget(), to);
        QTest::mouseRelease(edit->Widget(), Qt::LeftButton, Qt::NoModifier, path.end()[-1]);
    }
    /// The text with "|" for each line break, the caret after "@", and a
    /// selection that is not empty as [SelStart-SelEnd]: "ab|cd| @1,1 [0,0-1,1]".
    std::string State() const
    {
        std::string text;
        for (const char c : StrToUtf8(edit->Text()))
            text += c == '\n' ? "|" : c == '\r' ? "" : std::string(1, c);
        const TPoint s = edit->SelStart(), e = edit->SelEnd();
        return text + " @" + At(Caret()) + (s == e ? "" : " [" + At(s) + "-" + At(e) + "]");
    }

    Host host;
    T* edit = host.Add<T>(400, 300);
};

using EditorTest = EditorTestOf<TSxCodeEdit>;

}  // namespace sx::test
