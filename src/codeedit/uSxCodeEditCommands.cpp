// Operations of the control that the editing, keyboard, mouse, clipboard and
// search work fills in. Until then each leaves the text and the caret alone.
#include "uSxCodeEdit.h"

namespace sx {

void TSxCodeEdit::CalcCursor(Integer&, Integer&) {}
void TSxCodeEdit::KeyCommand(Word&, TShiftState) {}
void TSxCodeEdit::MouseDown(TMouseButton, TShiftState, Integer, Integer) {}
void TSxCodeEdit::MouseMove(TShiftState, Integer, Integer) {}
void TSxCodeEdit::MouseUp(TMouseButton, TShiftState, Integer, Integer) {}
void TSxCodeEdit::DblClick() {}
void TSxCodeEdit::WMSselectWord(TMessage&) {}
void TSxCodeEdit::WMSearchReplaceDlg(TMessage&) {}
void TSxCodeEdit::WMSearchReplace(TMessage&) {}
void TSxCodeEdit::WMCut(TMessage&) {}
void TSxCodeEdit::WMCopy(TMessage&) {}
void TSxCodeEdit::WMPaste(TMessage&) {}
void TSxCodeEdit::WMGetDlgCode(TMessage&) {}
void TSxCodeEdit::CMWantSpecialKey(TMessage&) {}
void TSxCodeEdit::GotoNextChar(bool) {}
void TSxCodeEdit::KeyDown(Word& Key, TShiftState Shift) { TCustomControl::KeyDown(Key, Shift); }
void TSxCodeEdit::WMUndo(TMessage&) { FUndoList->Undo(); }
bool TSxCodeEdit::GetCanUndo() { return FUndoList->Count() > 0; }
bool TSxCodeEdit::GetCanPaste() { return false; }

}  // namespace sx
