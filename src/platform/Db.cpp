// The data set's states, navigation and editing, its fields' conversions,
// and the data source that passes the data set's events on to the links.
#include "platform/Db.h"

#include "platform/DbLinks.h"
#include "platform/Streams.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace sx {

namespace {

const TDbValue NullValue;

bool IsEditState(TDataSetState state) { return state == dsEdit || state == dsInsert; }

bool ParsesAsInteger(const std::string& text)
{
    long long value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data() + (text.starts_with('+') ? 1 : 0), end, value);
    return ec == std::errc() && ptr == end;
}

bool ParsesAsFloat(const std::string& text)
{
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data() + (text.starts_with('+') ? 1 : 0), end, value);
    return ec == std::errc() && ptr == end && std::isfinite(value);
}

/// The stored form of a text typed into a field of the given type.
TDbValue ValueFromText(TFieldType type, const String& text)
{
    switch (type) {
    case TFieldType::ftInteger:
    case TFieldType::ftFloat: {
        const std::string number = StrToUtf8(Trim(text));
        if (number.empty())
            return TDbValue{};
        const bool integer = type == TFieldType::ftInteger;
        if (integer ? !ParsesAsInteger(number) : !ParsesAsFloat(number))
            throw EConvertError(u"'" + text + (integer ? u"' is not a valid integer value" : u"' is not a valid floating point value"));
        return TDbValue{integer ? TDbValue::vkInteger : TDbValue::vkFloat, number};
    }
    case TFieldType::ftBlob:
        return TDbValue{TDbValue::vkBlob, StrToUtf8(text)};
    case TFieldType::ftString:
    case TFieldType::ftMemo:
        break;
    }
    return TDbValue{TDbValue::vkText, StrToUtf8(text)};
}

}  // namespace

// ---------------------------------------------------------------------------
// TField

TField::TField(TDataSet* ADataSet, const String& AFieldName, TFieldType ADataType, Integer ASize, Integer AIndex)
    : FDataSet(ADataSet), FFieldName(AFieldName), FDataType(ADataType), FSize(ASize), FIndex(AIndex)
{
}

bool TField::CanModify() const { return !FReadOnly && FDataSet && FDataSet->CanModify(); }

const TDbValue& TField::Value() const
{
    if (FValidateBuffer)
        return *FValidateBuffer;
    const TDbRecord* record = FDataSet->CurrentRecord();
    return record ? record->Values.at(std::size_t(FIndex)) : NullValue;
}

String TField::AsString() const { return StrFromUtf8(Value().Data); }

void TField::SetAsString(const String& Value) { FDataSet->SetFieldValue(this, ValueFromText(FDataType, Value)); }

void TField::Clear() { FDataSet->SetFieldValue(this, TDbValue{}); }

void TField::Validate(const TDbValue* Buffer)
{
    if (!OnValidate)
        return;
    // The handler reads the value on trial through the field itself.
    struct TrialValue {
        TField* Field;
        const TDbValue* Saved;
        ~TrialValue() { Field->FValidateBuffer = Saved; }
    } trial{this, FValidateBuffer};
    if (Buffer)
        FValidateBuffer = Buffer;
    OnValidate(this);
}

// ---------------------------------------------------------------------------
// The stream that writes a BLOB field

/// Collects the bytes written and stores them in the field when it is freed,
/// as the classic BLOB stream does; bmWrite starts empty and always stores.
class TBlobWriteStream : public TMemoryStream {
public:
    TBlobWriteStream(TDataSet* ADataSet, TField* AField, TBlobStreamMode AMode)
        : FDataSet(ADataSet), FField(AField), FModified(AMode == bmWrite)
    {
        if (AMode == bmReadWrite) {
            const std::string& bytes = AField->Value().Data;
            WriteBuffer(bytes.data(), Integer(bytes.size()));
            SetPosition(0);
        }
    }
    ~TBlobWriteStream() override
    {
        if (!FModified)
            return;
        try {
            FDataSet->StoreBlob(FField, std::string(Bytes().begin(), Bytes().end()));
        } catch (...) {
            // A stream is freed however its writer ends; a data set that left
            // its edit state meanwhile keeps the value it has.
        }
    }
    Integer Write(const void* Buffer, Integer Count) override
    {
        FModified = true;
        return TMemoryStream::Write(Buffer, Count);
    }

private:
    TDataSet* FDataSet;
    TField* FField;
    bool FModified;
};

// ---------------------------------------------------------------------------
// TDataSet

SX_DEFINE_CLASS(TDataSet, TComponent)

TDataSet::TDataSet(TComponent* AOwner) : TComponent(AOwner) {}

TDataSet::~TDataSet()
{
    // The links let go of their fields before the fields go.
    while (!FDataSources.empty())
        RemoveDataSource(FDataSources.back());
    FreeFields();
}

void TDataSet::DatabaseError(const String& Message) const
{
    throw EDatabaseError(Name().empty() ? Message : Name() + u": " + Message);
}

void TDataSet::SetActive(bool Value)
{
    if (Value == Active())
        return;
    if (Value) {
        try {
            InternalOpen();
        } catch (...) {
            InternalClose();
            FreeFields();
            FRecords.clear();
            throw;
        }
        FRecNo = FRecords.empty() ? -1 : 0;
        FBof = true;
        FEof = FRecords.empty();
        SetState(dsBrowse);
        if (AfterOpen)
            AfterOpen(this);
        return;
    }
    SetState(dsInactive);
    InternalClose();
    FreeFields();
    FRecords.clear();
    FEditRecord = TDbRecord{};
    FRecNo = -1;
    FBof = FEof = true;
}

void TDataSet::SetState(TDataSetState Value)
{
    if (FState == Value)
        return;
    FState = Value;
    FModified = false;
    DataEvent(deUpdateState);
}

void TDataSet::DataEvent(TDataEvent Event, TField* Field)
{
    if (Event == deFieldChange)
        FModified = true;
    // A handler may detach sources, so each is looked up again before its turn.
    const std::vector<TDataSource*> sources = FDataSources;
    for (TDataSource* source : sources)
        if (std::find(FDataSources.begin(), FDataSources.end(), source) != FDataSources.end())
            source->DataEvent(Event, Field);
}

void TDataSet::AddDataSource(TDataSource* DataSource)
{
    FDataSources.push_back(DataSource);
    DataSource->FDataSet = this;
    DataSource->DataEvent(deUpdateState, nullptr);
}

void TDataSet::RemoveDataSource(TDataSource* DataSource)
{
    DataSource->FDataSet = nullptr;
    std::erase(FDataSources, DataSource);
    DataSource->DataEvent(deUpdateState, nullptr);
}

void TDataSet::CheckActive() const
{
    if (!Active())
        DatabaseError(u"Cannot perform this operation on a closed dataset");
}

void TDataSet::CheckEditState() const
{
    if (!IsEditState(FState))
        DatabaseError(u"Dataset not in edit or insert mode");
}

void TDataSet::CheckCanModify() const
{
    if (!CanModify())
        DatabaseError(u"Cannot modify a read-only dataset");
}

const TDbRecord* TDataSet::CurrentRecord() const
{
    if (IsEditState(FState))
        return &FEditRecord;
    if (FRecNo >= 0 && FRecNo < RecordCount())
        return &FRecords[std::size_t(FRecNo)];
    return nullptr;
}

TDbRecord TDataSet::EmptyRecord() const
{
    TDbRecord record;
    record.Values.resize(FFields.size());
    return record;
}

TField* TDataSet::AddField(const String& FieldName, TFieldType DataType, Integer Size)
{
    FFields.push_back(std::make_unique<TField>(this, FieldName, DataType, Size, FieldCount()));
    return FFields.back().get();
}

void TDataSet::FreeFields() { FFields.clear(); }

TField* TDataSet::FindField(const String& FieldName) const
{
    for (const auto& field : FFields)
        if (CompareText(field->FieldName(), FieldName) == 0)
            return field.get();
    return nullptr;
}

TField* TDataSet::FieldByName(const String& FieldName) const
{
    TField* field = FindField(FieldName);
    if (!field)
        DatabaseError(u"Field '" + FieldName + u"' not found");
    return field;
}

void TDataSet::SetFieldValue(TField* Field, TDbValue Value)
{
    CheckEditState();
    if (Field->ReadOnly())
        DatabaseError(u"Field '" + Field->FieldName() + u"' cannot be modified");
    Field->Validate(&Value);
    FEditRecord.Values.at(std::size_t(Field->Index())) = std::move(Value);
    DataEvent(deFieldChange, Field);
}

void TDataSet::StoreBlob(TField* Field, std::string Bytes)
{
    CheckEditState();
    const auto kind = Field->DataType() == TFieldType::ftBlob ? TDbValue::vkBlob : TDbValue::vkText;
    FEditRecord.Values.at(std::size_t(Field->Index())) = TDbValue{kind, std::move(Bytes)};
    DataEvent(deFieldChange, Field);
}

TStream* TDataSet::CreateBlobStream(TField* Field, TBlobStreamMode Mode)
{
    if (Mode == bmRead) {
        const std::string& bytes = Field->Value().Data;
        return new TMemoryStream(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
    }
    if (Field->ReadOnly())
        DatabaseError(u"Field '" + Field->FieldName() + u"' cannot be modified");
    CheckEditState();
    return new TBlobWriteStream(this, Field, Mode);
}

void TDataSet::MoveTo(Integer Index, TDataEvent Event)
{
    FRecNo = Index;
    DataEvent(Event);
    if (AfterScroll)
        AfterScroll(this);
}

void TDataSet::First()
{
    CheckBrowseMode();
    FBof = true;
    FEof = FRecords.empty();
    MoveTo(FRecords.empty() ? -1 : 0, deDataSetChange);
}

void TDataSet::Last()
{
    CheckBrowseMode();
    FEof = true;
    FBof = FRecords.empty();
    MoveTo(RecordCount() - 1, deDataSetChange);
}

Integer TDataSet::MoveBy(Integer Distance)
{
    CheckBrowseMode();
    if (FRecords.empty()) {
        FBof = FEof = true;
        return 0;
    }
    const Integer wanted = FRecNo + Distance;
    const Integer target = std::clamp(wanted, 0, RecordCount() - 1);
    FBof = Distance < 0 && wanted < 0;
    FEof = Distance > 0 && wanted > target;
    const Integer moved = target - FRecNo;
    if (moved != 0)
        MoveTo(target, deDataSetScroll);
    return moved;
}

void TDataSet::Next() { MoveBy(1); }

void TDataSet::Prior() { MoveBy(-1); }

void TDataSet::SetRecNo(Integer Value)
{
    CheckBrowseMode();
    if (FRecords.empty())
        return;
    const Integer target = std::clamp(Value, 0, RecordCount() - 1);
    FBof = FEof = false;
    if (target != FRecNo)
        MoveTo(target, deDataSetScroll);
}

void TDataSet::Edit()
{
    CheckActive();
    if (IsEditState(FState))
        return;
    if (FRecords.empty()) {
        Insert();
        return;
    }
    CheckCanModify();
    FEditRecord = FRecords[std::size_t(FRecNo)];
    SetState(dsEdit);
    // The one record change behind the step into dsEdit.
    DataEvent(deRecordChange);
}

void TDataSet::BeginInsertAppend(bool AtEnd)
{
    CheckBrowseMode();
    CheckCanModify();
    FEditRecord = EmptyRecord();
    FRecNo = AtEnd ? RecordCount() : std::max(FRecNo, 0);
    SetState(dsInsert);
    FModified = false;
    // The data change behind the step into dsInsert shows the new, empty record.
    DataEvent(deDataSetChange);
}

void TDataSet::Insert() { BeginInsertAppend(false); }

void TDataSet::Append() { BeginInsertAppend(true); }

void TDataSet::UpdateRecord()
{
    CheckEditState();
    DataEvent(deUpdateRecord);
}

void TDataSet::Post()
{
    CheckActive();
    UpdateRecord();
    DataEvent(deCheckBrowseMode);
    // The storage gets a copy: a refused write leaves the edit as it was.
    TDbRecord written = FEditRecord;
    const auto at = std::size_t(FRecNo);
    if (FState == dsEdit) {
        InternalPost(written, &FRecords[at]);
        FRecords[at] = std::move(written);
    } else {
        InternalPost(written, nullptr);
        FRecords.insert(FRecords.begin() + std::ptrdiff_t(at), std::move(written));
    }
    FEditRecord = TDbRecord{};
    FBof = FEof = false;
    SetState(dsBrowse);
    DataEvent(deDataSetChange);
    if (AfterPost)
        AfterPost(this);
}

void TDataSet::Cancel()
{
    if (!IsEditState(FState))
        return;
    DataEvent(deCheckBrowseMode);
    FEditRecord = TDbRecord{};
    FRecNo = std::min(FRecNo, RecordCount() - 1);
    SetState(dsBrowse);
    DataEvent(deDataSetChange);
    if (AfterCancel)
        AfterCancel(this);
}

void TDataSet::Delete()
{
    CheckActive();
    if (FState == dsInsert) {
        Cancel();
        return;
    }
    if (FRecords.empty())
        DatabaseError(u"Cannot perform this operation on an empty dataset");
    DataEvent(deCheckBrowseMode);
    CheckCanModify();
    InternalDelete(FRecords[std::size_t(FRecNo)]);
    FRecords.erase(FRecords.begin() + FRecNo);
    FRecNo = std::min(FRecNo, RecordCount() - 1);
    FEditRecord = TDbRecord{};
    SetState(dsBrowse);
    DataEvent(deDataSetChange);
}

void TDataSet::CheckBrowseMode()
{
    CheckActive();
    DataEvent(deCheckBrowseMode);
    if (!IsEditState(FState))
        return;
    UpdateRecord();
    if (FModified)
        Post();
    else
        Cancel();
}

// ---------------------------------------------------------------------------
// TDataSource

SX_DEFINE_CLASS(TDataSource, TComponent)

TDataSource::TDataSource(TComponent* AOwner) : TComponent(AOwner) {}

TDataSource::~TDataSource()
{
    OnDataChange = nullptr;
    OnStateChange = nullptr;
    while (!FDataLinks.empty())
        RemoveDataLink(FDataLinks.back());
    SetDataSet(nullptr);
}

void TDataSource::SetDataSet(TDataSet* Value)
{
    if (Value == FDataSet)
        return;
    if (FDataSet)
        FDataSet->RemoveDataSource(this);
    if (Value)
        Value->AddDataSource(this);
}

void TDataSource::Edit()
{
    if (FAutoEdit && FState == dsBrowse)
        FDataSet->Edit();
}

void TDataSource::DataEvent(TDataEvent Event, TField* Field)
{
    if (Event == deUpdateState) {
        SetState(FDataSet ? FDataSet->State() : dsInactive);
        return;
    }
    if (FState == dsInactive)
        return;
    NotifyDataLinks(Event, Field);
    if (!OnDataChange)
        return;
    switch (Event) {
    case deFieldChange:
    case deRecordChange: OnDataChange(this, Field); break;
    case deDataSetChange:
    case deDataSetScroll:
    case deLayoutChange: OnDataChange(this, nullptr); break;
    default: break;
    }
}

void TDataSource::SetState(TDataSetState Value)
{
    if (FState == Value)
        return;
    const TDataSetState prior = FState;
    FState = Value;
    NotifyDataLinks(deUpdateState, nullptr);
    if (OnStateChange)
        OnStateChange(this);
    if (prior == dsInactive && OnDataChange)
        OnDataChange(this, nullptr);
}

void TDataSource::NotifyDataLinks(TDataEvent Event, TField* Field)
{
    // A handler may detach links, so each is looked up again before its turn.
    const std::vector<TDataLink*> links = FDataLinks;
    for (TDataLink* link : links)
        if (std::find(FDataLinks.begin(), FDataLinks.end(), link) != FDataLinks.end())
            link->DataEvent(Event, Field);
}

void TDataSource::AddDataLink(TDataLink* DataLink)
{
    FDataLinks.push_back(DataLink);
    DataLink->FDataSource = this;
    DataLink->UpdateState();
}

void TDataSource::RemoveDataLink(TDataLink* DataLink)
{
    DataLink->FDataSource = nullptr;
    std::erase(FDataLinks, DataLink);
    DataLink->UpdateState();
}

}  // namespace sx
