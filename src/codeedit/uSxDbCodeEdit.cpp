// The data-aware code edit: the text comes in from the field on each data
// change, the data set goes to edit state ahead of each change of the text,
// and the whole text goes out when the data link collects pending values.
#include "codeedit/uSxDbCodeEdit.h"

#include "platform/Keys.h"
#include "platform/Streams.h"

#include <exception>
#include <memory>

namespace sx {

namespace {

/// The text a BLOB shows when it can't be loaded: the message in brackets.
String BracketedMessage(const String& message) { return u"(" + message + u")"; }

bool IsExactlyCtrl(TShiftState Shift)
{
    return Shift.Contains(TShiftStateItem::ssCtrl) && !Shift.Contains(TShiftStateItem::ssShift) &&
           !Shift.Contains(TShiftStateItem::ssAlt);
}

/// Runs Restore when the scope ends, however it ends.
template <class F>
class PutBack {
public:
    explicit PutBack(F restore) : FRestore(std::move(restore)) {}
    ~PutBack() noexcept(false)
    {
        // While an exception passes, one raised here would end the program.
        if (std::uncaught_exceptions() > FUncaught) {
            try {
                FRestore();
            } catch (...) {
            }
        } else {
            FRestore();
        }
    }
    PutBack(const PutBack&) = delete;
    PutBack& operator=(const PutBack&) = delete;

private:
    F FRestore;
    int FUncaught = std::uncaught_exceptions();
};

}  // namespace

SX_DEFINE_CLASS(TSxDbCodeEdit, TSxCodeEdit)

const TMessageHandler<TSxDbCodeEdit> TSxDbCodeEdit::MessageTable[1] = {
    {CM_GETDATALINK, &TSxDbCodeEdit::CMGetDataLink},
};

TSxDbCodeEdit::TSxDbCodeEdit(TComponent* AOwner) : TSxCodeEdit(AOwner)
{
    FDataLink = new TFieldDataLink();
    FDataLink->SetControl(this);
    FDataLink->OnDataChange = [this](TObject* Sender) { DataChange(Sender); };
    FDataLink->OnEditingChange = [this](TObject* Sender) { EditingChange(Sender); };
    FDataLink->OnUpdateData = [this](TObject* Sender) { UpdateData(Sender); };
}

TSxDbCodeEdit::~TSxDbCodeEdit()
{
    // Notification looks at the link, so it is none from here on.
    FreeAndNil(FDataLink);
}

void TSxDbCodeEdit::Dispatch(TMessage& Message)
{
    if (!DispatchToHandler(*this, MessageTable, Message))
        TSxCodeEdit::Dispatch(Message);
}

void TSxDbCodeEdit::Loaded()
{
    TSxCodeEdit::Loaded();
    if (ComponentState() & csDesigning)
        DataChange(this);
}

void TSxDbCodeEdit::Notification(TComponent* AComponent, TOperation Operation)
{
    TSxCodeEdit::Notification(AComponent, Operation);
    if (Operation == TOperation::opRemove && FDataLink && AComponent && AComponent == DataSource())
        SetDataSource(nullptr);
}

void TSxDbCodeEdit::SetDataSource(TDataSource* Value)
{
    if (!(FDataLink->DataSourceFixed() && IsLoading()))
        FDataLink->SetDataSource(Value);
    if (Value)
        Value->FreeNotification(this);
}

void TSxDbCodeEdit::SetDataField(const String& Value) { FDataLink->SetFieldName(Value); }

bool TSxDbCodeEdit::GetReadOnly() { return TSxCodeEdit::GetReadOnly() || (FDataLink && FDataLink->ReadOnly()); }

void TSxDbCodeEdit::SetReadOnly(bool Value)
{
    TSxCodeEdit::SetReadOnly(Value);
    FDataLink->SetReadOnly(Value);
}

void TSxDbCodeEdit::DataChange(TObject*)
{
    if (TField* field = Field()) {
        if (FBeginEdit) {
            // The data set's answer to the control's own edit request.
            FBeginEdit = false;
            return;
        }
        if (field->IsBlob())
            LoadMemo();
        else
            SetText(field->GetEditText());
        if (FLoadData)
            FLoadData(this);
    } else {
        SetText((ComponentState() & csDesigning) ? Name() : String());
    }
    UpdateReadOnly();
}

void TSxDbCodeEdit::LoadMemo()
{
    const Integer charPos = FCharPos;
    const Integer linePos = FLinePos;
    const TPoint selStart = FSelStart;
    const TPoint selEnd = FSelEnd;
    // The caret returns to its line and column; the last two moves collapse the selection onto it.
    const PutBack restore([&] {
        SetSelStart(selStart);
        SetSelEnd(selEnd);
        SetLinePos(linePos);
        SetCharPos(charPos);
    });
    if (Field()->AsString().empty())
        FLines->Clear();
    else
        LoadBlobLines();
    InitSelectionAndPosition();
    EditingChange(this);
}

void TSxDbCodeEdit::LoadBlobLines()
{
    try {
        const std::unique_ptr<TStream> stream(FDataLink->DataSet()->CreateBlobStream(Field(), bmRead));
        FLines->BeginUpdate();
        const PutBack endUpdate([this] { FLines->EndUpdate(); });
        FLines->LoadFromStream(*stream);
    } catch (const EInvalidOperation& e) {
        FLines->SetText(BracketedMessage(e.Message()));
    }
}

void TSxDbCodeEdit::EditingChange(TObject*)
{
    const TDataSource* source = FDataLink->DataSource();
    if (FDataLink->Editing() && source && source->State() != dsInsert)
        FBeginEdit = true;
}

void TSxDbCodeEdit::Changed()
{
    EnsureEditState();
    FDataLink->Modified();
    TSxCodeEdit::Changed();
}

void TSxDbCodeEdit::EnsureEditState()
{
    const TPoint selStart = FSelStart;
    const TPoint selEnd = FSelEnd;
    const Integer charPos = FCharPos;
    const Integer linePos = FLinePos;
    // The moves come first and the two setters write the selection back behind them.
    const PutBack restore([&] {
        SetLinePos(linePos);
        SetCharPos(charPos);
        SetSelStart(selStart);
        SetSelEnd(selEnd);
    });
    TDataSet* dataSet = FDataLink->DataSet();
    TDataSource* source = FDataLink->DataSource();
    if (!dataSet || !source || dataSet->State() != dsBrowse)
        return;
    if (source->AutoEdit() && !GetReadOnly())
        dataSet->Edit();
    else
        throw EAbort(u"Can't go to editstate");
}

void TSxDbCodeEdit::UpdateData(TObject*)
{
    TField* field = Field();
    if (!field->IsBlob()) {
        field->SetAsString(FLines->Text());
        return;
    }
    {
        const std::unique_ptr<TStream> stream(FDataLink->DataSet()->CreateBlobStream(field, bmWrite));
        FLines->SaveToStream(*stream);
    }
    field->Validate(nullptr);
}

void TSxDbCodeEdit::SetFocused(bool Value)
{
    if (Value == FFocused)
        return;
    FFocused = Value;
    // A BLOB keeps its caret; any other field is read anew.
    if (!(Field() && Field()->IsBlob()))
        FDataLink->Reset();
}

void TSxDbCodeEdit::CMEnter(TMessage& Message)
{
    SetFocused(true);
    TSxCodeEdit::CMEnter(Message);
}

void TSxDbCodeEdit::CMExit(TMessage& Message)
{
    try {
        FDataLink->UpdateRecord();
    } catch (...) {
        SetFocus();
        throw;
    }
    SetFocused(false);
    TSxCodeEdit::CMExit(Message);
}

void TSxDbCodeEdit::CMGetDataLink(TMessage& Message) { Message.Result = reinterpret_cast<NativeInt>(FDataLink); }

void TSxDbCodeEdit::UpdateReadOnly()
{
    if (TField* field = Field())
        SetReadOnly(field->ReadOnly());
}

void TSxDbCodeEdit::KeyCommand(Word& Key, TShiftState Shift)
{
    const bool paste = (Key == 0x56 || Key == 0x76) && IsExactlyCtrl(Shift);
    const bool cut = Key == 0x58 || Key == 0x78;
    if (Key == VK_INSERT || paste || cut)
        EnsureEditState();
    TSxCodeEdit::KeyCommand(Key, Shift);
}

void TSxDbCodeEdit::KeyDown(Word& Key, TShiftState Shift)
{
    if (Key == VK_DELETE)
        EnsureEditState();
    TSxCodeEdit::KeyDown(Key, Shift);
}

void TSxDbCodeEdit::DragDrop(TObject* Source, Integer X, Integer Y)
{
    FDataLink->Edit();
    TSxCodeEdit::DragDrop(Source, X, Y);
}

}  // namespace sx
