// A code edit control in a shown window with the keyboard focus, ready to be
// typed into through real key events, and a one-line dump of its state.
#pragma once

#include "codeedit/uSxCodeEdit.h"
#include "support/Keyboard.h"
#include "support/RenderHelpers.h"

#include <gtest/gtest.h>

#include <string>

namespace sx::test {

/// A point as "x,y".
inline std::string At(TPoint p) { return std::to_string(p.X) + "," + std::to_string(p.Y); }

/// The fixture over a control of type T: the code edit control or a kind of it.
template <class T>
class EditorTestOf : public ::testing::Test {
protected:
    void SetUp() override { Focus(*edit); }

    /// Replaces the text and puts the caret at (X, Y) with no selection.
    void Start(const String& text, TPoint caret = Point(0, 0))
    {
        edit->SetText(text);
        edit->SetLinePos(caret.Y);
        edit->SetCharPos(caret.X);
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
