// TSxDbCodeEdit: the code edit control bound to one field of a data set. It
// shows the field's text, puts the data set into edit state before the user's
// first change touches the text, and writes the whole text back when the data
// link collects pending values (on leaving the control and before each post).
#pragma once

#include "codeedit/uSxCodeEdit.h"
#include "platform/DbLinks.h"

namespace sx {

class TSxDbCodeEdit : public TSxCodeEdit {
    SX_DECLARE_CLASS
public:
    explicit TSxDbCodeEdit(TComponent* AOwner);
    ~TSxDbCodeEdit() override;

    void Loaded() override;
    void Notification(TComponent* AComponent, TOperation Operation) override;
    void Dispatch(TMessage& Message) override;

    // Published properties.
    String DataField() const { return GetDataField(); }
    void SetDataField(const String& Value);
    TDataSource* DataSource() const { return GetDataSource(); }
    void SetDataSource(TDataSource* Value);
    /// Fires behind each load of the text from the bound field, with the control as sender.
    const TNotifyEvent& OnLoadData() const { return FLoadData; }
    void SetOnLoadData(TNotifyEvent Value) { FLoadData = std::move(Value); }

    // Public properties.
    TField* Field() const { return GetField(); }

    /// Read-only when the control or its data link is.
    bool GetReadOnly() override;
    void SetReadOnly(bool Value) override;
    /// Commands that will change the text ask for edit state before the base posts them.
    void KeyCommand(Word& Key, TShiftState Shift) override;
    /// Runs ahead of every change of the text: edit state first, then the
    /// link's modified mark, then OnChange.
    void Changed() override;
    void DragDrop(TObject* Source, Integer X, Integer Y) override;

protected:
    void KeyDown(Word& Key, TShiftState Shift) override;
    void CMEnter(TMessage& Message) override;
    /// Collects the text into the field; a field that refuses it keeps the focus here.
    void CMExit(TMessage& Message) override;
    /// Answers the data link.
    virtual void CMGetDataLink(TMessage& Message);

private:
    /// Loads a BLOB field's text, keeping caret and selection where they were.
    void LoadMemo();
    /// Lines from the BLOB's stream; a BLOB that can't be read shows its message in brackets.
    void LoadBlobLines();
    /// The link's OnDataChange: where the text comes in.
    void DataChange(TObject* Sender);
    /// The link's OnEditingChange: swallows the one data change behind the data set's step into dsEdit.
    void EditingChange(TObject* Sender);
    /// The link's OnUpdateData: where the text goes out.
    void UpdateData(TObject* Sender);
    void SetFocused(bool Value);
    /// The field's ReadOnly becomes the control's.
    void UpdateReadOnly();
    /// Puts a browsing data set into dsEdit, or ends the edit with a silent
    /// EAbort where AutoEdit is off or the control is read-only.
    void EnsureEditState();
    String GetDataField() const { return FDataLink->FieldName(); }
    TDataSource* GetDataSource() const { return FDataLink->DataSource(); }
    TField* GetField() const { return FDataLink->Field(); }

    TFieldDataLink* FDataLink = nullptr;
    bool FFocused = false;
    /// One-shot: the next data change is to be ignored.
    bool FBeginEdit = false;
    TNotifyEvent FLoadData;

    static const TMessageHandler<TSxDbCodeEdit> MessageTable[1];
};

}  // namespace sx
