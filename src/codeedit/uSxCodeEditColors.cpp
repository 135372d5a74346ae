// The control's colours beyond the classic ones: the ground, gutter,
// selection, caret and brackets, one at a time or all at once.
#include "codeedit/uSxCodeEdit.h"

namespace sx {

namespace {

/// Stores a colour and repaints when it changed.
void Recolor(TSxCodeEdit& AEdit, TColor& AField, TColor AValue)
{
    if (AField == AValue)
        return;
    AField = AValue;
    AEdit.Invalidate();
}

}  // namespace

void TSxCodeEdit::SetColor(TColor Value) { Recolor(*this, FColor, Value); }
void TSxCodeEdit::SetGutterColor(TColor Value) { Recolor(*this, FGutterColor, Value); }
void TSxCodeEdit::SetSelectionColor(TColor Value) { Recolor(*this, FSelectionColor, Value); }
void TSxCodeEdit::SetSelectionTextColor(TColor Value) { Recolor(*this, FSelectionTextColor, Value); }
void TSxCodeEdit::SetBracketMatchColor(TColor Value) { Recolor(*this, FBracketMatchColor, Value); }
void TSxCodeEdit::SetBracketMismatchColor(TColor Value) { Recolor(*this, FBracketMismatchColor, Value); }

void TSxCodeEdit::SetCaretColor(TColor Value)
{
    FCaret->SetColor(Value);
    Invalidate();  // the text being composed at the caret is drawn in it
}

TSxCodeEditColors TSxCodeEdit::Colors() const
{
    return {.Color = FColor,
            .GutterColor = FGutterColor,
            .LineNumberColor = FLineNumberColor,
            .RightMarginColor = FRightMarginColor,
            .SelectionColor = FSelectionColor,
            .SelectionTextColor = FSelectionTextColor,
            .CurrentLineColor = FCurrentLineColor,
            .BracketMatchColor = FBracketMatchColor,
            .BracketMismatchColor = FBracketMismatchColor,
            .CaretColor = CaretColor()};
}

void TSxCodeEdit::SetColors(const TSxCodeEditColors& Value)
{
    FColor = Value.Color;
    FGutterColor = Value.GutterColor;
    FLineNumberColor = Value.LineNumberColor;
    FRightMarginColor = Value.RightMarginColor;
    FSelectionColor = Value.SelectionColor;
    FSelectionTextColor = Value.SelectionTextColor;
    FCurrentLineColor = Value.CurrentLineColor;
    FBracketMatchColor = Value.BracketMatchColor;
    FBracketMismatchColor = Value.BracketMismatchColor;
    FCaret->SetColor(Value.CaretColor);
    Invalidate();
}

}  // namespace sx
