// Data links: a control's tie to a data source. TDataLink follows the data
// set's state and events; TFieldDataLink binds one field and carries its
// changes to the control and the control's pending value back.
#pragma once

#include "platform/Db.h"

namespace sx {

/// Follows one data source: active while its data set is open, editing
/// while it is in an edit state, and told of each data event.
class TDataLink : public TPersistent {
public:
    TDataLink() = default;
    ~TDataLink() override;

    TDataSource* DataSource() const { return FDataSource; }
    /// Raises EDatabaseError while DataSourceFixed is set.
    void SetDataSource(TDataSource* ADataSource);
    TDataSet* DataSet() const { return FDataSource ? FDataSource->DataSet() : nullptr; }
    /// The source may not be changed.
    bool DataSourceFixed() const { return FDataSourceFixed; }
    void SetDataSourceFixed(bool Value) { FDataSourceFixed = Value; }
    bool Active() const { return FActive; }
    /// The data set is in an edit state and the link is not read-only.
    bool Editing() const { return FEditing; }
    bool ReadOnly() const { return FReadOnly; }
    void SetReadOnly(bool Value);

    /// Asks the source to put the data set into dsEdit; answers Editing.
    virtual bool Edit();
    /// Collects the pending value through UpdateData; a change of a field
    /// that this brings about is not reported back to this link.
    void UpdateRecord();

protected:
    virtual void ActiveChanged() {}
    virtual void EditingChanged() {}
    /// The record, or the one field given, changed.
    virtual void RecordChanged(TField* Field) { (void)Field; }
    virtual void DataSetChanged() { RecordChanged(nullptr); }
    virtual void DataSetScrolled() { DataSetChanged(); }
    virtual void LayoutChanged() { DataSetChanged(); }
    virtual void UpdateData() {}
    virtual void CheckBrowseMode() {}

private:
    friend class TDataSource;
    void DataEvent(TDataEvent Event, TField* Field);
    void UpdateState();
    void SetActive(bool Value);
    void SetEditing(bool Value);

    TDataSource* FDataSource = nullptr;
    bool FDataSourceFixed = false;
    bool FActive = false;
    bool FEditing = false;
    bool FReadOnly = false;
    bool FUpdating = false;
};

/// The link of a control that shows one field: it finds the field by name,
/// keeps the control's modified mark, and calls the control back.
class TFieldDataLink : public TDataLink {
public:
    TFieldDataLink() = default;
    ~TFieldDataLink() override;

    /// The control served; given once, when the control is made.
    TComponent* Control() const { return FControl; }
    void SetControl(TComponent* Value) { FControl = Value; }
    const String& FieldName() const { return FFieldName; }
    /// Raises EDatabaseError when the open data set has no field of that name.
    void SetFieldName(const String& Value);
    TField* Field() const { return FField; }
    /// The data set is in an edit state and the field can be changed.
    bool Editing() const { return FEditing; }
    bool CanModify() const;

    bool Edit() override;
    /// Sets the modified mark: the control holds a value the field has not yet.
    void Modified() { FModified = true; }
    /// Reports a change of the whole record, which clears the mark.
    void Reset() { RecordChanged(nullptr); }

    /// The record or the field changed and the control should show it anew.
    /// The modified mark is clear after the call.
    TNotifyEvent OnDataChange;
    /// Editing changed; the mark is clear by then.
    TNotifyEvent OnEditingChange;
    /// The control's value is wanted: called from UpdateRecord when the mark is set.
    TNotifyEvent OnUpdateData;
    TNotifyEvent OnActiveChange;

protected:
    void ActiveChanged() override;
    void EditingChanged() override;
    void RecordChanged(TField* Field) override;
    void LayoutChanged() override;
    void UpdateData() override;

private:
    void UpdateField();
    void SetField(TField* Value);
    void SetEditing(bool Value);

    TComponent* FControl = nullptr;
    String FFieldName;
    TField* FField = nullptr;
    bool FEditing = false;
    bool FModified = false;
};

}  // namespace sx
