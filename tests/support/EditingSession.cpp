// The randomized editing driver: one step per choice read from the bytes,
// the control's invariants after each, and the undo round trip at the end,
// then with coRedo turned on for it the redo round trip.
// The order of the reads is the format of the fuzz corpus and of the found
// inputs kept in the ordinary suite: it must not change.
#include "support/EditingSession.h"

#include "platform/Clipboard.h"
#include "support/Keyboard.h"
#include "support/ModalAnswers.h"

#include "codeedit/uSxCodeFolds.h"
#include "codeedit/uSxCodePascalParser.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>

namespace sx::test {

namespace {

/// A starting text is at most this long, so that steps stay cheap.
constexpr std::size_t MaxStartBytes = 400;
/// The undo list's limit: a sequence that reaches it has lost records.
constexpr Integer UndoLimit = 100;
/// A column beyond this may make a line longer than a line can hold.
constexpr Integer HugeColumn = 1 << 20;

/// The earlier of the two ends.
TPoint Earlier(TPoint s, TPoint e) { return s.Y < e.Y || (s.Y == e.Y && s.X < e.X) ? s : e; }

/// Lines with trailing white space cut and empty lines at the end dropped:
/// the text as undo promises to give it back, since the control trims lines
/// and adds fill spaces and empty lines that no record holds.
String UndoComparable(const String& text)
{
    TStringList lines;
    lines.SetText(text);
    while (lines.Count() > 0 && TrimRight(lines.Line(lines.Count() - 1).ToString()).empty())
        lines.Delete(lines.Count() - 1);
    String out;
    for (Integer i = 0; i < lines.Count(); ++i)
        out += TrimRight(lines.Line(i).ToString()) + u"\r\n";
    return out;
}

/// The control with a count of the messages it handles, so that the driver
/// can tell when a chain of posted messages has run out.
class CountingCodeEdit : public TSxCodeEdit {
public:
    using TSxCodeEdit::TSxCodeEdit;
    void Dispatch(TMessage& Message) override
    {
        ++Dispatched;
        TSxCodeEdit::Dispatch(Message);
    }
    using TSxCodeEdit::HasSelection;
    int Dispatched = 0;
};

class EditingSession {
public:
    /// What a step may delete: nothing, a selection, or also text at the caret
    /// without one (the Delete key, a replace).
    enum TDeletes { dNone, dSelection, dAlways };
    struct TStep {
        const char* Name;
        void (EditingSession::*Run)();
        TDeletes Deletes;
    };

    EditingSession(Host& AHost, const std::function<void(const std::string&)>& AOnFailure)
        : FOnFailure(AOnFailure), FEdit(AHost.Add<CountingCodeEdit>(400, 300))
    {
        Focus(*FEdit);
        SetApplicationExceptionHandler([this](const std::exception& e) {
            if (!Expected(e))
                FReported.push_back(e.what());
        });
    }
    ~EditingSession()
    {
        SetApplicationExceptionHandler(nullptr);
        delete FEdit;
    }

    EditingSession(const EditingSession&) = delete;
    TSxCodeEdit& Edit() { return *FEdit; }
    EditingSession& operator=(const EditingSession&) = delete;

    /// Whether the run ended with the undo round trip checked.
    bool Run(ByteReader& AIn, int AMaxSteps)
    {
        // The steps; the fuzz corpus numbers them in this order.
        using S = EditingSession;
        static constexpr TStep Steps[] = {
            {"place", &S::PlaceCaret, dNone},          {"select", &S::SelectRange, dNone},
            {"type", &S::TypeSome, dSelection},        {"enter", &S::Enter, dSelection},
            {"tab", &S::Tab, dNone},                   {"backspace", &S::Backspace, dNone},
            {"key", &S::PressKey, dAlways},            {"clipboard", &S::ClipboardCommand, dSelection},
            {"undo", &S::Undo, dNone},                 {"read-only", &S::ToggleReadOnly, dNone},
            {"replace lines", &S::ReplaceLines, dNone}, {"insert", &S::InsertCode, dNone},
            {"search", &S::SearchOrReplace, dAlways},  {"set clipboard", &S::SetClipboardContent, dNone}};
        FIn = &AIn;
        FEdit->SetText(AIn.Text(std::size_t(AIn.Below(int(MaxStartBytes)))));
        FStartText = UndoComparable(FEdit->Text());
        FLog = "start " + StrToUtf8(FEdit->Text()) + "\n";
        for (int i = 0; i < AMaxSteps && !AIn.AtEnd() && !FFailed; ++i)
            Step(Steps[AIn.Below(int(std::size(Steps)))]);
        return FinishWithUndo();
    }

private:
    /// Only the first broken invariant is reported; the run stops behind it.
    void Check(bool ACondition, const std::string& AWhat)
    {
        if (ACondition || FFailed)
            return;
        FFailed = true;
        FOnFailure(AWhat + "\nsteps:\n" + FLog);
    }
    /// Marks the run as one whose undo cannot give the start back.
    void Lossy(const char* AReason) { FLossy = FLossy ? FLossy : AReason; }
    TPoint Caret() const { return Point(FEdit->CharPos(), FEdit->LinePos()); }
    String LineOrEmpty(Integer ALine)
    {
        return ALine >= 0 && ALine < FEdit->Lines().Count() ? FEdit->Lines().Get(ALine) : String();
    }
    /// Before a step that writes at a column: whether a column that large may run out of memory.
    void MayGrowHuge(Integer AColumn) { FMayRaiseOutOfMemory = AColumn > HugeColumn; }
    /// A write at the caret replaces the selection, so it lands at either end.
    void MayGrowHugeAtCaret() { MayGrowHuge(std::max({FEdit->CharPos(), FEdit->SelStart().X, FEdit->SelEnd().X})); }

    /// The index error of a stale undo record and the error of a line grown too
    /// long, while the running step may raise them.
    bool Expected(const std::exception& e) const
    {
        return (FMayRaiseListError && dynamic_cast<const EListError*>(&e)) ||
               (FMayRaiseOutOfMemory && dynamic_cast<const EOutOfMemory*>(&e));
    }

    void Step(const TStep& AStep)
    {
        FLog += std::string(AStep.Name) + " at " + At(Caret()) + "\n";
        NoteDeletionFromVirtualSpace(AStep.Deletes);
        FReported.clear();
        FMayRaiseListError = FMayRaiseOutOfMemory = false;
        try {
            (this->*AStep.Run)();
            if (FEdit->HasExtOption(TSxCodeExtOption::coFolding))
                FoldSome();
        } catch (const std::exception& e) {
            Check(Expected(e), std::string("exception: ") + e.what());
        }
        PumpPostedMessages();
        Render(*FEdit);  // a paint of whatever state the step left
        for (const std::string& what : FReported)
            Check(false, "exception at the event boundary: " + what);
        CheckInvariants();
    }

    /// A deletion whose earlier end lies behind its line's end puts the line's
    /// tail right behind the line's text; its record puts the text back at the
    /// line's end, in front of that tail, so the replay is not the deletion's inverse.
    void NoteDeletionFromVirtualSpace(TDeletes ADeletes)
    {
        const bool selection = FEdit->HasSelection();
        if (ADeletes == dNone || (ADeletes == dSelection && !selection))
            return;
        const TPoint from = selection ? Earlier(FEdit->SelStart(), FEdit->SelEnd()) : Caret();
        if (from.X > Integer(LineOrEmpty(from.Y).size()))
            Lossy("a deletion from behind a line's end");
    }

    void CheckInvariants()
    {
        const TPoint caret = Caret();
        const Integer count = FEdit->Lines().Count();
        FLog += "  -> \"" + StrToUtf8(FEdit->Text()) + "\" caret " + At(caret) + " selection " +
                At(FEdit->SelStart()) + "-" + At(FEdit->SelEnd()) + "\n";
        Check(caret.X >= 0 && caret.Y >= 0, "caret at " + At(caret));
        // Writes to Lines leave the caret where it was; from the first step that
        // finds it on a line again, every step must keep it there.
        if (!FCaretStale)
            Check(caret.Y <= std::max(count - 1, 0), "caret " + At(caret) + " below the last line");
        FCaretStale = FCaretStale && caret.Y > std::max(count - 1, 0);
        Check(FEdit->UndoList().Count() <= UndoLimit, "undo list beyond its limit");
        if (FEdit->UndoList().Count() >= UndoLimit)
            Lossy("the undo list is full");
        CheckSelectionLength();
        if (FEdit->HasExtOption(TSxCodeExtOption::coFolding))
            CheckFolds();
    }

    /// With coFolding: one fold call after each step, as the user or the application makes it.
    void FoldSome()
    {
        const Integer line = FIn->Below(std::max(FEdit->Lines().Count(), 1));
        switch (FIn->Below(5)) {
        case 0: FEdit->Fold(line); break;
        case 1: FEdit->Unfold(line); break;
        case 2: FEdit->FoldAll(); break;
        case 3: FEdit->UnfoldAll(); break;
        default: break;
        }
    }

    /// The caret stands on a line that shows, and the regions kept up to
    /// date edit by edit are those a fresh scan of the text finds.
    void CheckFolds()
    {
        Check(FCaretStale || FEdit->IsLineVisible(FEdit->LinePos()), "caret on a hidden line");
        TStringList copy;
        copy.Assign(FEdit->Lines());
        TSxFoldStructure fresh(copy);
        fresh.SetParser(FEdit->Parser());
        Check(FEdit->FoldRegions() == fresh.Regions(0, MaxInt), "fold regions differ from a fresh scan");
    }

    /// SelLength counts what GetSelected gives, less two characters per line
    /// break, where both ends lie inside the text; GetSelected moves nothing.
    void CheckSelectionLength()
    {
        const TPoint s = FEdit->SelStart(), e = FEdit->SelEnd();
        const auto inside = [this](TPoint p) {
            return p.Y >= 0 && p.Y < FEdit->Lines().Count() && p.X >= 0 && p.X <= Integer(LineOrEmpty(p.Y).size());
        };
        if (!inside(s) || !inside(e))
            return;
        const TPoint caret = Caret();
        String selected;
        FEdit->GetSelected(selected);
        const Integer length = FEdit->SelLength();
        // The swap step puts the caret on the moving end, so only a caret that
        // stood there stays where it was.
        Check(FEdit->SelStart() == s && FEdit->SelEnd() == e && (caret != s || Caret() == caret),
              "reading the selection moved it");
        const auto breaks = Integer(2 * std::abs(e.Y - s.Y));
        Check(length == Integer(selected.size()) - breaks, "SelLength " + std::to_string(length) + " for " +
                                                               std::to_string(selected.size()) + " characters");
    }

    bool FinishWithUndo()
    {
        if (FLossy || FFailed)
            return false;
        FEdit->SetReadOnly(false);
        // Redo joins for the round trip when the steps ran without it. With it,
        // steps undone in the session and not redone lie beyond the edited
        // text: they are redone first, so that redoing all comes back to it.
        FEdit->SetExtOptions(FEdit->ExtOptions() + TSxCodeExtOptions{TSxCodeExtOption::coRedo});
        while (FEdit->CanRedo())
            SendMessage(FEdit, uSxCodeEdit::WM_SX_REDO);
        const String edited = FEdit->Text();
        FLog += "undo all\n";
        try {
            while (FEdit->UndoList().Count() > 0) {
                SendMessage(FEdit, WM_UNDO);
                FLog += "  -> \"" + StrToUtf8(FEdit->Text()) + "\"\n";
            }
        } catch (const std::exception& e) {
            Check(false, std::string("undo of the sequence raised: ") + e.what());
        }
        const String now = UndoComparable(FEdit->Text());
        Check(now == FStartText, "undo gave back \"" + StrToUtf8(now) + "\" for \"" + StrToUtf8(FStartText) + "\"");
        CheckRedoRoundTrip(edited);
        return true;
    }

    /// Redo of every undone step gives the edited text back exactly, however
    /// lossy the undo was, and undoing all again gives the undone text.
    void CheckRedoRoundTrip(const String& AEdited)
    {
        const String undone = FEdit->Text();
        FLog += "redo all, undo all\n";
        try {
            while (FEdit->CanRedo())
                SendMessage(FEdit, uSxCodeEdit::WM_SX_REDO);
            Check(FEdit->Text() == AEdited, "redo gave back \"" + StrToUtf8(FEdit->Text()) + "\"");
            while (FEdit->UndoList().Count() > 0)
                SendMessage(FEdit, WM_UNDO);
        } catch (const std::exception& e) {
            Check(false, std::string("redo or undo again raised: ") + e.what());
        }
        Check(FEdit->Text() == undone, "undo after redo gave \"" + StrToUtf8(FEdit->Text()) + "\"");
    }

    void PumpPostedMessages()
    {
        // Each pass of a replace-all posts the next; a chain that posts more passes
        // than the text has characters (plus a margin) never ends.
        const std::size_t limit = 2 * FEdit->Text().size() + 64;
        for (std::size_t pass = 0;; ++pass) {
            const int before = FEdit->Dispatched;
            ProcessPostedMessages();
            if (FEdit->Dispatched == before)
                return;
            Check(pass < limit, "a chain of posted messages that never ends");
        }
    }

    // Choices read from the bytes.
    Integer LineChoice()
    {
        const Integer count = FEdit->Lines().Count();
        switch (FIn->Below(8)) {
        case 0: return 0;
        case 1: return count - 1;
        case 2: return count + FIn->Below(3);
        case 3: return -1 - FIn->Below(2);
        default: return FIn->Below(std::max(count, 1));
        }
    }
    Integer ColumnChoice(Integer ALine)
    {
        const auto length = Integer(LineOrEmpty(ALine).size());
        switch (FIn->Below(10)) {
        case 0: return 0;
        case 1: return length;
        case 2: return length + 1 + FIn->Below(4);
        case 3: return 1000 + FIn->Below(1000);
        case 4: return MaxInt - FIn->Below(3);
        case 5: return -1 - FIn->Below(3);
        default: return FIn->Below(length + 1);
        }
    }
    Char CharChoice()
    {
        static const Char Palette[] = {u'a', u'b', u'x', u' ', u' ', u'(', u'*', u')', u'{', u'\'', u'"',
                                       u'1', u'_', 0xE9, 0x4E2D, 127, 1, 10, 0xD83D, 0xDE00};
        const Integer pick = FIn->Below(int(std::size(Palette)) + 8);
        return pick < Integer(std::size(Palette)) ? Palette[pick] : Char(u'a' + FIn->Below(26));
    }
    String TextChoice(std::size_t AMax)
    {
        String text;
        for (Integer n = FIn->Below(int(AMax) + 1); n > 0; --n) {
            switch (FIn->Below(8)) {
            case 0: text += u"\r\n"; break;
            case 1: text += FIn->Below(2) ? u"\n" : u"\r"; break;
            default: text.push_back(CharChoice()); break;
            }
        }
        return text;
    }

    void PlaceCaret()
    {
        FEdit->SetLinePos(LineChoice());
        FEdit->SetCharPos(ColumnChoice(FEdit->LinePos()));
        FCaretStale = false;
    }

    void SelectRange()
    {
        const Integer anchorLine = LineChoice();
        const TPoint anchor = Point(ColumnChoice(anchorLine), anchorLine);
        PlaceCaret();
        FEdit->SetSelEnd(anchor);
    }

    void TypeSome()
    {
        for (Integer n = 1 + FIn->Below(4); n > 0; --n)
            SendChar(CharChoice());
    }
    void Tab() { SendChar(9); }
    void Undo() { UndoOnce(false); }
    void ToggleReadOnly() { FEdit->SetReadOnly(!FEdit->ReadOnly()); }

    void SendChar(Char AChar)
    {
        MayGrowHugeAtCaret();
        FLog += "  char " + std::to_string(int(AChar)) + "\n";
        SendMessage(FEdit, WM_CHAR, AChar);
    }

    /// Enter trims the blanks in front of the caret from the line it leaves;
    /// its undo joins the halves again without them, inside the line.
    void Enter()
    {
        const TPoint at = FEdit->HasSelection() ? Earlier(FEdit->SelStart(), FEdit->SelEnd()) : Caret();
        const String line = LineOrEmpty(at.Y);
        const std::size_t head = std::min(line.size(), std::size_t(std::max(at.X, 0)));
        if (head > 0 && line[head - 1] <= u' ')
            Lossy("enter behind blanks");
        SendChar(13);
    }

    /// Backspace replays are lossy where a line loses its last character (or, in
    /// virtual space, had none) and goes, where a line joins one that ends in
    /// blanks, where the trim takes blanks left of the caret so that the record
    /// points behind the line's end, and behind a deleted selection, whose caret
    /// lands where any of these may happen.
    void Backspace()
    {
        const String line = LineOrEmpty(FEdit->LinePos());
        const Integer x = FEdit->CharPos();
        if (FEdit->HasSelection())
            Lossy("backspace over a selection");
        else if (x >= 1 && line.size() <= 1)
            Lossy("backspace may empty the line, which then goes");
        else if (x >= 2 && std::size_t(x - 2) < line.size() && line[std::size_t(x - 2)] <= u' ')
            Lossy("backspace leaves blanks at the caret that the trim may take");
        else if (x == 0 && FEdit->LinePos() > 0) {
            const String above = LineOrEmpty(FEdit->LinePos() - 1);
            if (!above.empty() && above.back() <= u' ')
                Lossy("backspace joins a line ending in blanks");
        }
        SendChar(8);
    }

    void PressKey()
    {
        static const Qt::Key Keys[] = {Qt::Key_Left,   Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home,
                                       Qt::Key_End,    Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Delete,
                                       Qt::Key_A,      Qt::Key_X,     Qt::Key_C,  Qt::Key_V,    Qt::Key_Z};
        static const Qt::KeyboardModifiers Modifiers[] = {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier,
                                                          Qt::ShiftModifier | Qt::ControlModifier};
        const Qt::Key key = Keys[FIn->Below(int(std::size(Keys)))];
        const Qt::KeyboardModifiers modifiers = Modifiers[FIn->Below(4)];
        if (key == Qt::Key_Z && modifiers.testFlag(Qt::ControlModifier))
            return UndoOnce(true);
        // Delete, a paste and every letter typed without Ctrl write at the caret.
        MayGrowHugeAtCaret();
        FLog += "  key " + std::to_string(int(key)) + " modifiers " + std::to_string(int(modifiers)) + "\n";
        Press(*FEdit, key, modifiers);
    }

    void ClipboardCommand()
    {
        static const Cardinal Commands[] = {WM_CUT, WM_COPY, WM_PASTE, uSxCodeEdit::WM_SX_SELECTWORD};
        const Cardinal command = Commands[FIn->Below(4)];
        MayGrowHugeAtCaret();
        FLog += "  message " + std::to_string(command) + "\n";
        SendMessage(FEdit, command);
    }

    /// True when undoing the newest record must raise the line store's index error.
    bool UndoMustFail()
    {
        const Integer count = FEdit->UndoList().Count();
        const TSxUndoItem* item = count > 0 ? FEdit->UndoList().Items(count - 1) : nullptr;
        const bool putsBack =
            item && (item->ChangeType() == uSxCodeEdit::ctCut || item->ChangeType() == uSxCodeEdit::ctDelete);
        return putsBack && (item->StartPos().Y < 0 || item->StartPos().Y >= FEdit->Lines().Count());
    }

    void UndoOnce(bool AByKey)
    {
        if (FEdit->ReadOnly())
            Lossy("undo on a read-only control");
        FMayRaiseListError = UndoMustFail();
        if (FMayRaiseListError)
            Lossy("undo of a record that no longer fits");
        if (AByKey)
            Press(*FEdit, Qt::Key_Z, Qt::ControlModifier);
        else
            SendMessage(FEdit, WM_UNDO);
    }

    void ReplaceLines()
    {
        const String text = TextChoice(40);
        Lossy("lines replaced by the application");
        switch (FIn->Below(4)) {
        case 0: return FEdit->SetText(text);
        case 1: FEdit->Lines().SetText(text); break;
        case 2: FEdit->Lines().Add(text); break;
        default:
            if (FEdit->Lines().Count() > 0)
                FEdit->Lines().Delete(FIn->Below(FEdit->Lines().Count()));
            break;
        }
        FCaretStale = true;
    }

    void InsertCode()
    {
        const String text = TextChoice(30);
        if (FIn->Below(4) == 0)
            return FEdit->AddCode(text);
        const Integer line = LineChoice();
        const Integer column = ColumnChoice(line);
        MayGrowHuge(column);
        FLog += "  at " + At(Point(column, line)) + "\n";
        FEdit->InsertCode(line, column, text);
    }

    void SearchOrReplace()
    {
        const bool replace = FIn->Below(2) == 1;
        const String line = LineOrEmpty(FIn->Below(std::max(FEdit->Lines().Count(), 1)));
        const Integer from = FIn->Below(Integer(line.size()) + 1);
        // A braced list reads its fields front to back, in the order of the corpus.
        const SearchInput in{
            .Find = FIn->Below(3) ? line.substr(std::size_t(from), std::size_t(1 + FIn->Below(4))) : TextChoice(3),
            .ReplaceWith = TextChoice(4), .Backward = FIn->Below(2) != 0, .CaseSensitive = FIn->Below(2) != 0,
            .WholeWords = FIn->Below(2) != 0, .Prompt = FIn->Below(2) != 0, .Scope = FIn->Below(2), .Origin = FIn->Below(2),
            .Result = TModalResult(FIn->Below(4) == 0 ? mrCancel : FIn->Below(2) ? mrOk : mrYesToAll)};
        FModals.Answers.clear();
        for (Integer n = FIn->Below(4); n > 0; --n)
            FModals.Answers.push_back(FIn->Below(3) == 0 ? idCancel : FIn->Below(2) ? idYes : idNo);
        FModals.DefaultAnswer = FIn->Below(2) ? idYes : idCancel;
        FModals.OnForm = [in](TForm& form) { FillSearchDialog(form, in); };
        FLog += "  \"" + StrToUtf8(*in.Find) + "\" -> \"" + StrToUtf8(in.ReplaceWith) + "\" " +
                std::to_string(in.Result) + "\n";
        PostMessage(FEdit, uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, replace ? 1 : 0);
        PumpPostedMessages();
        if (FIn->Below(2))
            PostMessage(FEdit, uSxCodeEdit::WM_SX_SEARCHREPLACE);  // search again
    }

    void SetClipboardContent()
    {
        const Integer kind = FIn->Below(3);
        if (kind == 0)
            return Clipboard().SetAsText(TextChoice(20));
        if (kind == 1)
            return Clipboard().Clear();
        auto* data = new QMimeData;  // no text at all
        data->setData(QStringLiteral("application/x-sx-binary"), QByteArray("\x01\x02", 2));
        QApplication::clipboard()->setMimeData(data);
    }

    std::function<void(const std::string&)> FOnFailure;
    CountingCodeEdit* FEdit = nullptr;
    ModalScript FModals;
    ByteReader* FIn = nullptr;
    std::string FLog;
    String FStartText;
    const char* FLossy = nullptr;
    bool FCaretStale = false;
    bool FFailed = false;
    /// Exceptions that reached the framework's event boundary during the step.
    std::vector<std::string> FReported;
    /// What the running step may raise (see Expected).
    bool FMayRaiseListError = false, FMayRaiseOutOfMemory = false;
};

}  // namespace

bool RunEditingSession(Host& AHost, ByteReader& AIn, int AMaxSteps,
                       const std::function<void(const std::string&)>& AOnFailure, TSxCodeExtOptions AOptions)
{
    EditingSession session(AHost, AOnFailure);
    session.Edit().SetExtOptions(AOptions);
    if (AOptions.Contains(TSxCodeExtOption::coFolding))
        session.Edit().SetParser(new TSxCodePascalParser(&session.Edit()));
    return session.Run(AIn, AMaxSteps);
}

}  // namespace sx::test
