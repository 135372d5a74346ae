// A code edit control in a shown window with the keyboard focus, ready to be
// typed into through real key events.
#pragma once

#include "codeedit/uSxCodeEdit.h"
#include "support/Keyboard.h"
#include "support/RenderHelpers.h"

#include <gtest/gtest.h>

namespace sx::test {

class EditorTest : public ::testing::Test {
protected:
    void SetUp() override { Focus(*edit); }

    /// Replaces the text and puts the caret at (X, Y) with no selection.
    void Start(const String& text, TPoint caret = Point(0, 0))
    {
        edit->SetText(text);
        edit->SetLinePos(caret.Y);
        edit->SetCharPos(caret.X);
    }
    TPoint Caret() const { return Point(edit->CharPos(), edit->LinePos()); }
    String Line(Integer index) { return edit->Lines().Get(index); }
    /// Moves the caret and selects from the anchor to it, as Shift with the arrows would.
    void Select(TPoint anchor, TPoint caret)
    {
        edit->SetLinePos(caret.Y);
        edit->SetCharPos(caret.X);
        edit->SetSelEnd(anchor);
    }
    void Undo() { SendMessage(edit, WM_UNDO); }

    Host host;
    TSxCodeEdit* edit = host.Add<TSxCodeEdit>(400, 300);
};

}  // namespace sx::test
