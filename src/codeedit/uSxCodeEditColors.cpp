// The control's colours as a theme holds them, all at once, and the caret's.
#include "codeedit/uSxCodeEdit.h"

namespace sx {

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
