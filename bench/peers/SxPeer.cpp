// Our control as an application drives it: LoadFromFile, the scroll bar,
// the caret properties, the numbered messages of find, replace and undo with
// the dialog answered through the modal-form seam, and posted messages
// pumped until the control has nothing more queued.
#include "PeerEditor.h"

#include "codeedit/fSxCodeEditSearchReplaceDlg.h"
#include "codeedit/uSxCodeEdit.h"
#include "codeedit/uSxCodePascalParser.h"
#include "platform/Dialogs.h"
#include "platform/QtConvert.h"

#include <QCoreApplication>
#include <QElapsedTimer>

namespace peers {

namespace {

using namespace sx;

class SxEditor : public PeerEditor {
public:
    SxEditor()
    {
        FEdit = new TSxCodeEdit(nullptr);
        FEdit->Widget()->setParent(Window());
        FEdit->SetBounds(0, 0, ViewWidth, ViewHeight);
        FEdit->SetParser(new TSxCodePascalParser(FEdit));
        ShowWindow();
    }
    ~SxEditor() override
    {
        SetMsgBoxHook(nullptr);
        delete FEdit;
    }

    const char* Name() const override { return "ours"; }
    QWidget* View() const override { return FEdit->Widget(); }

    void Load(const QString& path) override { FEdit->LoadFromFile(FromQString(path)); }
    void ScrollTo(int line) override { FEdit->VScrollBar().SetPosition(line); }
    void PutCaret(int line, int column) override
    {
        FEdit->SetLinePos(line);
        FEdit->SetCharPos(column);
    }
    void Pump() override { ProcessPostedMessages(); }
    void SetPartialPaint(bool on) override
    {
        FEdit->SetExtOptions(on ? TSxCodeExtOptions{TSxCodeExtOption::coPartialPaint} : TSxCodeExtOptions{});
    }

    int Find(const QString& word, bool caseSensitive) override
    {
        bool notFound = false;
        SetMsgBoxHook([&](TMsgBoxKind, const String&, const String&) {
            notFound = true;
            return idOk;
        });
        OpenDialog(uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, 0, [&](TFrmCodeEditSearchReplaceDlg& dialog) {
            dialog.edtTextToFind()->SetText(FromQString(word));
            dialog.chkBxCaseSensitive()->SetChecked(caseSensitive);
            dialog.SetModalResult(mrOk);
        });
        Pump();
        SetMsgBoxHook(nullptr);
        return notFound ? -1 : FEdit->LinePos();
    }

    bool ReplaceAll(const QString& word, const QString& by, qint64 timeoutMs) override
    {
        bool ended = false;
        SetMsgBoxHook([&](TMsgBoxKind, const String&, const String&) {
            ended = true;
            return idOk;
        });
        OpenDialog(uSxCodeEdit::WM_SX_SEARCHREPLACEDLG, 1, [&](TFrmCodeEditSearchReplaceDlg& dialog) {
            dialog.edtTextToFind()->SetText(FromQString(word));
            dialog.chkBxCaseSensitive()->SetChecked(true);
            dialog.edtReplaceWith->SetText(FromQString(by));
            dialog.chkBxPromptOnReplace->SetChecked(false);
            dialog.SetModalResult(mrYesToAll);
        });
        // The chain runs as under an application's event loop: a pass, then
        // whatever else is queued (paints included), then the next pass.
        QElapsedTimer clock;
        clock.start();
        while (!ended && clock.elapsed() < timeoutMs)
            QCoreApplication::processEvents();
        if (!ended)
            QCoreApplication::removePostedEvents(FEdit->MessageTarget());
        SetMsgBoxHook(nullptr);
        return ended;
    }

    void Undo() override { SendMessage(FEdit, WM_UNDO); }

    int LineCount() const override { return FEdit->Lines().Count(); }
    QString LineText(int line) const override { return ToQString(FEdit->Lines().Get(line)); }

private:
    template <class Fill>
    void OpenDialog(Cardinal message, NativeUInt kind, Fill fill)
    {
        SetShowModalHook([&](TForm& form) {
            auto& dialog = static_cast<TFrmCodeEditSearchReplaceDlg&>(form);
            dialog.rgDirection()->SetItemIndex(0);
            fill(dialog);
        });
        SendMessage(FEdit, message, kind);
        SetShowModalHook(nullptr);
    }

    TSxCodeEdit* FEdit;
};

}  // namespace

std::unique_ptr<PeerEditor> MakeSxEditor() { return std::make_unique<SxEditor>(); }

}  // namespace peers
