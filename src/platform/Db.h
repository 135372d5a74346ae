// Data access of the framework layer: a data set with its states, navigation
// and editing over records held in memory, its fields, and the data source
// that carries its notifications to the data links of controls.
#pragma once

#include "platform/Classes.h"
#include "platform/Streams.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace sx {

class TDataLink;
class TDataSet;
class TDataSource;

/// The states of a data set; dsBrowse is 1 and dsInsert 3, as the classic framework numbers them.
enum TDataSetState { dsInactive, dsBrowse, dsEdit, dsInsert };

/// What a data set tells its data sources and, through them, the data links.
enum TDataEvent {
    deFieldChange,      ///< one field of the current record changed; the field comes along
    deRecordChange,     ///< the current record changed as a whole (the step into dsEdit)
    deDataSetChange,    ///< the records changed: open, post, cancel, insert, delete, refresh
    deDataSetScroll,    ///< another record became the current one
    deLayoutChange,     ///< the fields changed
    deUpdateRecord,     ///< collect pending values from the controls, ahead of a post
    deUpdateState,      ///< the state changed
    deCheckBrowseMode,  ///< the data set is about to leave an edit state
};

enum class TFieldType { ftString, ftInteger, ftFloat, ftMemo, ftBlob };

enum TBlobStreamMode { bmRead, bmWrite, bmReadWrite };

class EDatabaseError : public Exception {
    using Exception::Exception;
};

/// One stored value: its kind and its bytes, UTF-8 for text and the decimal
/// form for numbers.
struct TDbValue {
    enum TKind { vkNull, vkInteger, vkFloat, vkText, vkBlob };
    TKind Kind = vkNull;
    std::string Data;
    friend bool operator==(const TDbValue&, const TDbValue&) = default;
};

/// One record: a value per field, and the key by which its storage finds it again.
struct TDbRecord {
    std::vector<TDbValue> Values;
    TDbValue Key;
};

class TField;
using TFieldNotifyEvent = std::function<void(TField* Sender)>;

/// One column of a data set, read and written through the current record.
class TField : public TObject {
public:
    TField(TDataSet* ADataSet, const String& AFieldName, TFieldType ADataType, Integer ASize, Integer AIndex);

    TDataSet* DataSet() const { return FDataSet; }
    const String& FieldName() const { return FFieldName; }
    TFieldType DataType() const { return FDataType; }
    /// The declared length of a string field; 0 for other fields.
    Integer Size() const { return FSize; }
    /// The position among the data set's fields, from 0.
    Integer Index() const { return FIndex; }
    bool IsBlob() const { return FDataType == TFieldType::ftMemo || FDataType == TFieldType::ftBlob; }
    bool ReadOnly() const { return FReadOnly; }
    void SetReadOnly(bool Value) { FReadOnly = Value; }
    /// Not read-only, in a data set that can be changed.
    bool CanModify() const;

    /// The value of the current record; while OnValidate runs, the value on trial.
    const TDbValue& Value() const;
    bool IsNull() const { return Value().Kind == TDbValue::vkNull; }
    String AsString() const;
    /// Converts and stores the value: raises EConvertError for a number that
    /// is none, EDatabaseError outside an edit state or on a read-only field,
    /// and whatever OnValidate raises; the stored value stays then.
    void SetAsString(const String& Value);
    void Clear();
    /// The text for editing.
    String GetEditText() const { return AsString(); }
    String Text() const { return GetEditText(); }

    /// Runs OnValidate with Buffer as the value on trial, or with the stored
    /// value when Buffer is none. A handler refuses a value by raising.
    void Validate(const TDbValue* Buffer);
    TFieldNotifyEvent OnValidate;

private:
    TDataSet* FDataSet;
    String FFieldName;
    TFieldType FDataType;
    Integer FSize;
    Integer FIndex;
    bool FReadOnly = false;
    const TDbValue* FValidateBuffer = nullptr;
};

/// Notifies of a data change with the field that changed, or none for the record.
using TDataChangeEvent = std::function<void(TObject* Sender, TField* Field)>;

/// A data set: records with fields, one current record, and the states of
/// browsing and editing. The records live in memory; a descendant fills them
/// when it opens and writes each posted or deleted record to its storage.
class TDataSet : public TComponent {
    SX_DECLARE_CLASS
public:
    explicit TDataSet(TComponent* AOwner);
    ~TDataSet() override;

    TDataSetState State() const { return FState; }
    bool Active() const { return FState != dsInactive; }
    void SetActive(bool Value);
    void Open() { SetActive(true); }
    /// Leaves any edit without posting it.
    void Close() { SetActive(false); }

    // Navigation. Each posts a pending edit first, as CheckBrowseMode does.
    void First();
    void Next();
    void Prior();
    void Last();
    /// Moves by Distance records, no further than the first or last; answers how far it went.
    Integer MoveBy(Integer Distance);
    /// Makes record RecNo (from 0) the current one.
    void SetRecNo(Integer Value);
    Integer RecNo() const { return FRecNo; }
    Integer RecordCount() const { return Integer(FRecords.size()); }
    bool IsEmpty() const { return FRecords.empty(); }
    bool Bof() const { return FBof; }
    bool Eof() const { return FEof; }

    // Editing.
    /// Puts the current record into dsEdit; an empty data set goes to dsInsert instead.
    void Edit();
    /// A new, empty record in front of the current one, in dsInsert.
    void Insert();
    /// A new, empty record behind the last one, in dsInsert.
    void Append();
    /// Collects the controls' values, writes the record to the storage and
    /// goes back to dsBrowse. A write the storage refuses raises, and the data
    /// set stays in its edit state with the values as they were.
    void Post();
    /// Drops the edit and shows the stored record again.
    void Cancel();
    /// Removes the current record from the storage; in dsInsert, cancels.
    void Delete();
    /// Posts a modified edit, cancels an unmodified one.
    void CheckBrowseMode();
    /// Asks every data link for its pending value (deUpdateRecord).
    void UpdateRecord();
    /// A field changed since the edit began.
    bool Modified() const { return FModified; }
    virtual bool CanModify() const { return true; }

    // Fields.
    Integer FieldCount() const { return Integer(FFields.size()); }
    TField* Fields(Integer Index) const { return FFields.at(std::size_t(Index)).get(); }
    /// The field of that name (case-blind), or none.
    TField* FindField(const String& FieldName) const;
    /// The field of that name; raises EDatabaseError when there is none.
    TField* FieldByName(const String& FieldName) const;

    /// A stream over a BLOB field's value, which the caller frees. A stream
    /// for writing needs an edit state; it replaces the value when it is freed.
    virtual TStream* CreateBlobStream(TField* Field, TBlobStreamMode Mode);

    /// Tells every data source, and through them every data link.
    void DataEvent(TDataEvent Event, TField* Field = nullptr);

    TNotifyEvent AfterOpen;
    TNotifyEvent AfterPost;
    TNotifyEvent AfterCancel;
    TNotifyEvent AfterScroll;

protected:
    friend class TField;
    friend class TDataSource;

    /// Makes the fields and reads the records; raises when the storage can't be read.
    virtual void InternalOpen() = 0;
    virtual void InternalClose() {}
    /// Writes a posted record: Old is the stored one, none for a new record.
    /// May bring Record up to date with what the storage holds, its Key too.
    /// Raises when the storage refuses; nothing is written then.
    virtual void InternalPost(TDbRecord& Record, const TDbRecord* Old) = 0;
    virtual void InternalDelete(const TDbRecord& Record) = 0;

    TField* AddField(const String& FieldName, TFieldType DataType, Integer Size);
    std::vector<TDbRecord>& Records() { return FRecords; }
    [[noreturn]] void DatabaseError(const String& Message) const;

private:
    void AddDataSource(TDataSource* DataSource);
    void RemoveDataSource(TDataSource* DataSource);
    void SetState(TDataSetState Value);
    void CheckActive() const;
    void CheckEditState() const;
    void CheckCanModify() const;
    void BeginInsertAppend(bool AtEnd);
    /// The record that field values come from and go to.
    const TDbRecord* CurrentRecord() const;
    /// Stores a field's value in the edited record, validated, and reports the change.
    void SetFieldValue(TField* Field, TDbValue Value);
    /// Stores a BLOB stream's bytes when it is freed; validation is the writer's business.
    void StoreBlob(TField* Field, std::string Bytes);
    /// Makes a record current and tells the links; an empty set has no record.
    void MoveTo(Integer Index, TDataEvent Event);
    TDbRecord EmptyRecord() const;
    void FreeFields();

    TDataSetState FState = dsInactive;
    std::vector<std::unique_ptr<TField>> FFields;
    std::vector<TDbRecord> FRecords;
    /// The record being edited or inserted.
    TDbRecord FEditRecord;
    Integer FRecNo = -1;
    bool FBof = true;
    bool FEof = true;
    bool FModified = false;
    std::vector<TDataSource*> FDataSources;

    friend class TBlobWriteStream;
};

/// The go-between of a data set and the data links of controls.
class TDataSource : public TComponent {
    SX_DECLARE_CLASS
public:
    explicit TDataSource(TComponent* AOwner);
    ~TDataSource() override;

    TDataSet* DataSet() const { return FDataSet; }
    void SetDataSet(TDataSet* Value);
    /// The user's editing may put the data set into dsEdit; on by default.
    bool AutoEdit() const { return FAutoEdit; }
    void SetAutoEdit(bool Value) { FAutoEdit = Value; }
    /// The data set's state as the links last heard of it.
    TDataSetState State() const { return FState; }
    /// Puts a browsing data set into dsEdit when AutoEdit allows.
    void Edit();

    TDataChangeEvent OnDataChange;
    TNotifyEvent OnStateChange;

private:
    friend class TDataSet;
    friend class TDataLink;
    void DataEvent(TDataEvent Event, TField* Field);
    void SetState(TDataSetState Value);
    void NotifyDataLinks(TDataEvent Event, TField* Field);
    void AddDataLink(TDataLink* DataLink);
    void RemoveDataLink(TDataLink* DataLink);

    TDataSet* FDataSet = nullptr;
    bool FAutoEdit = true;
    TDataSetState FState = dsInactive;
    std::vector<TDataLink*> FDataLinks;
};

}  // namespace sx
