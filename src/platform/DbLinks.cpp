// Data links: how a link follows its source's state and events, and how the
// field link turns them into the calls its control answers.
#include "platform/DbLinks.h"

namespace sx {

// ---------------------------------------------------------------------------
// TDataLink

TDataLink::~TDataLink()
{
    // Going away is no change of state that anybody is told of.
    FActive = false;
    FEditing = false;
    FDataSourceFixed = false;
    SetDataSource(nullptr);
}

void TDataLink::SetDataSource(TDataSource* ADataSource)
{
    if (ADataSource == FDataSource)
        return;
    if (FDataSourceFixed)
        throw EDatabaseError(u"DataSource cannot be changed");
    if (FDataSource)
        FDataSource->RemoveDataLink(this);
    if (ADataSource)
        ADataSource->AddDataLink(this);
}

void TDataLink::SetReadOnly(bool Value)
{
    if (Value == FReadOnly)
        return;
    FReadOnly = Value;
    UpdateState();
}

void TDataLink::UpdateState()
{
    const TDataSetState state = FDataSource ? FDataSource->State() : dsInactive;
    SetActive(state != dsInactive);
    SetEditing((state == dsEdit || state == dsInsert) && !FReadOnly);
}

void TDataLink::SetActive(bool Value)
{
    if (Value == FActive)
        return;
    FActive = Value;
    ActiveChanged();
}

void TDataLink::SetEditing(bool Value)
{
    if (Value == FEditing)
        return;
    FEditing = Value;
    EditingChanged();
}

bool TDataLink::Edit()
{
    if (!FReadOnly && FDataSource)
        FDataSource->Edit();
    return FEditing;
}

void TDataLink::UpdateRecord()
{
    struct Updating {
        bool& Flag;
        ~Updating() { Flag = false; }
    } updating{FUpdating};
    FUpdating = true;
    UpdateData();
}

void TDataLink::DataEvent(TDataEvent Event, TField* Field)
{
    if (Event == deUpdateState) {
        UpdateState();
        return;
    }
    if (!FActive)
        return;
    switch (Event) {
    case deFieldChange:
    case deRecordChange:
        if (!FUpdating)
            RecordChanged(Field);
        break;
    case deDataSetChange: DataSetChanged(); break;
    case deDataSetScroll: DataSetScrolled(); break;
    case deLayoutChange: LayoutChanged(); break;
    case deUpdateRecord: UpdateRecord(); break;
    case deCheckBrowseMode: CheckBrowseMode(); break;
    case deUpdateState: break;
    }
}

// ---------------------------------------------------------------------------
// TFieldDataLink

TFieldDataLink::~TFieldDataLink()
{
    OnDataChange = nullptr;
    OnEditingChange = nullptr;
    OnUpdateData = nullptr;
    OnActiveChange = nullptr;
}

void TFieldDataLink::SetFieldName(const String& Value)
{
    if (Value == FFieldName)
        return;
    FFieldName = Value;
    UpdateField();
}

bool TFieldDataLink::CanModify() const { return !ReadOnly() && FField && FField->CanModify(); }

bool TFieldDataLink::Edit()
{
    if (CanModify())
        TDataLink::Edit();
    return FEditing;
}

void TFieldDataLink::UpdateField()
{
    if (Active() && !FFieldName.empty()) {
        // Made none first, so that finding the same field again still counts as a change.
        FField = nullptr;
        SetField(DataSet()->FieldByName(FFieldName));
    } else {
        SetField(nullptr);
    }
}

void TFieldDataLink::SetField(TField* Value)
{
    if (Value == FField)
        return;
    FField = Value;
    EditingChanged();
    RecordChanged(nullptr);
}

void TFieldDataLink::SetEditing(bool Value)
{
    if (Value == FEditing)
        return;
    FEditing = Value;
    FModified = false;
    if (OnEditingChange)
        OnEditingChange(this);
}

void TFieldDataLink::ActiveChanged()
{
    UpdateField();
    if (OnActiveChange)
        OnActiveChange(this);
}

void TFieldDataLink::EditingChanged() { SetEditing(TDataLink::Editing() && CanModify()); }

void TFieldDataLink::RecordChanged(TField* Field)
{
    if (Field && Field != FField)
        return;
    if (OnDataChange)
        OnDataChange(this);
    FModified = false;
}

void TFieldDataLink::LayoutChanged() { UpdateField(); }

void TFieldDataLink::UpdateData()
{
    if (!FModified)
        return;
    if (FField && OnUpdateData)
        OnUpdateData(this);
    // Not reached when the control's value is refused: the mark stays set.
    FModified = false;
}

}  // namespace sx
