// TStrings in terms of its virtual accessors, and the gap-vector line store.
#include "platform/StringList.h"

#include "platform/Streams.h"

#include <algorithm>
#include <vector>

namespace sx {

namespace {

/// The text of bytes that a stream of text holds: UTF-16 after a byte-order
/// mark of either order, else UTF-8, whose own mark is dropped.
String DecodeStreamText(const std::vector<std::uint8_t>& bytes)
{
    const std::size_t n = bytes.size();
    const bool littleEndian = n >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE;
    const bool bigEndian = n >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF;
    if (littleEndian || bigEndian) {
        String text;
        text.reserve(n / 2);
        for (std::size_t i = 2; i + 1 < n; i += 2)
            text += littleEndian ? Char(bytes[i] | (bytes[i + 1] << 8)) : Char((bytes[i] << 8) | bytes[i + 1]);
        return text;
    }
    const std::size_t skip = n >= 3 && bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF ? 3 : 0;
    return StrFromUtf8(std::string(bytes.begin() + std::ptrdiff_t(skip), bytes.end()));
}

/// Calls visit(piece) for each line of Value split at CR, LF or CR LF.
template <class Visit>
void SplitLines(const String& Value, Visit visit)
{
    ForEachLine(Value.data(), Value.data() + Value.size(),
                [&](const Char* line, std::size_t length) { visit(String(line, length)); });
}

}  // namespace

void TStrings::Error(const char16_t* message, Integer Index)
{
    throw EListError(String(message) + u" (" + IntToStr(Index) + u")");
}

Integer TStrings::Add(const String& S)
{
    const Integer index = Count();
    Insert(index, S);
    return index;
}

Integer TStrings::AddObject(const String& S, NativeInt AObject)
{
    const Integer index = Add(S);
    PutObject(index, AObject);
    return index;
}

void TStrings::InsertObject(Integer Index, const String& S, NativeInt AObject)
{
    Insert(Index, S);
    PutObject(Index, AObject);
}

Integer TStrings::IndexOf(const String& S) const
{
    for (Integer i = 0; i < Count(); ++i)
        if (CompareText(Get(i), S) == 0)
            return i;
    return -1;
}

String TStrings::Text() const
{
    std::size_t size = 0;
    const Integer count = Count();
    for (Integer i = 0; i < count; ++i)
        size += Get(i).size() + sLineBreak.size();
    String result;
    result.reserve(size);
    for (Integer i = 0; i < count; ++i) {
        result += Get(i);
        result += sLineBreak;
    }
    return result;
}

void TStrings::SetText(const String& Value)
{
    BeginUpdate();
    try {
        Clear();
        SplitLines(Value, [this](String line) { Add(line); });
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TStrings::LoadFromStream(TStream& Stream)
{
    std::vector<std::uint8_t> bytes(std::size_t(std::max<std::int64_t>(0, Stream.Size() - Stream.Position())));
    Stream.ReadBuffer(bytes.data(), Integer(bytes.size()));
    SetText(DecodeStreamText(bytes));
}

void TStrings::SaveToStream(TStream& Stream) const
{
    const std::string bytes = StrToUtf8(Text());
    Stream.WriteBuffer(bytes.data(), Integer(bytes.size()));
}

void TStrings::Assign(const TStrings& Source)
{
    if (&Source == this)
        return;
    BeginUpdate();
    try {
        Clear();
        AddStrings(Source);
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TStrings::AddStrings(const TStrings& Source)
{
    BeginUpdate();
    try {
        for (Integer i = 0; i < Source.Count(); ++i)
            AddObject(Source.Get(i), Source.GetObject(i));
    } catch (...) {
        EndUpdate();
        throw;
    }
    EndUpdate();
}

void TStrings::BeginUpdate()
{
    if (FUpdateCount == 0)
        SetUpdateState(true);
    ++FUpdateCount;
}

void TStrings::EndUpdate()
{
    if (FUpdateCount <= 0)
        return;
    --FUpdateCount;
    if (FUpdateCount == 0)
        SetUpdateState(false);
}

TStringList::~TStringList() { RemoveAll(); }

void TStringList::CheckIndex(Integer Index) const
{
    if (Index < 0 || Index >= Count())
        Error(u"List index out of bounds", Index);
}

String TStringList::Get(Integer Index) const
{
    CheckIndex(Index);
    return Line(Index).ToString();
}

void TStringList::Put(Integer Index, const String& S)
{
    CheckIndex(Index);
    Changing();
    TLineText& line = FLines[std::size_t(Index)];
    const TLineView text(S.data(), S.size());
    Replace(line, line.Small() == BigSlot ? FTexts.OwnUnique(text) : FTexts.Own(text));
    Changed();
}

NativeInt TStringList::GetObject(Integer Index) const
{
    CheckIndex(Index);
    return ObjectOf(FLines[std::size_t(Index)]);
}

void TStringList::PutObject(Integer Index, NativeInt AObject)
{
    CheckIndex(Index);
    Changing();
    SetObject(FLines[std::size_t(Index)], AObject);
    Changed();
}

NativeInt TStringList::ObjectOf(const TLineText& Line) const
{
    return Line.Small() == BigSlot ? FBigSlots.at(Line.Data()) : NativeInt(Line.Small());
}

void TStringList::SetObject(TLineText& Line, NativeInt AObject)
{
    if (Line.Small() == BigSlot) {
        if (!FitsSmall(AObject))
            FBigSlots[Line.Data()] = AObject;
        else
            FBigSlots.erase(Line.Data());
    } else if (!FitsSmall(AObject)) {
        // The address of the line's own text names its slot: a shared or
        // empty text gets a copy of its own (an own text is never empty).
        if (!Line.Own()) {
            const TLineText copy = FTexts.OwnUnique(Line.View());
            FTexts.Release(Line);
            Line = copy;
        }
        FBigSlots[Line.Data()] = AObject;
    }
    Line.SetSmall(FitsSmall(AObject) ? std::int32_t(AObject) : BigSlot);
}

void TStringList::Replace(TLineText& Line, TLineText Text)
{
    const std::int32_t small = Line.Small();
    if (small == BigSlot) {
        const auto slot = FBigSlots.extract(Line.Data());
        FTexts.Release(Line);
        FBigSlots.emplace(Text.Data(), slot.mapped());
    } else {
        FTexts.Release(Line);
    }
    Line = Text;
    Line.SetSmall(small);
}

void TStringList::Release(const TLineText& Line)
{
    if (Line.Small() == BigSlot)
        FBigSlots.erase(Line.Data());
    FTexts.Release(Line);
}

void TStringList::Insert(Integer Index, const String& S)
{
    if (Index < 0 || Index > Count())
        Error(u"List index out of bounds", Index);
    Changing();
    FLines.Reserve(1);  // the room first: a text made for a record that cannot be stored would leak
    FLines.Insert(std::size_t(Index), FTexts.Own(TLineView(S.data(), S.size())));
    Changed();
}

void TStringList::Delete(Integer Index)
{
    CheckIndex(Index);
    Changing();
    Release(FLines[std::size_t(Index)]);
    FLines.Delete(std::size_t(Index));
    Changed();
}

void TStringList::Clear()
{
    if (Count() == 0)
        return;
    Changing();
    RemoveAll();
    Changed();
}

void TStringList::RemoveAll()
{
    // Every shared block goes, so only the lines' own blocks are freed one by one.
    for (std::size_t i = 0; i < FLines.Length(); ++i)
        if (FLines[i].Own())
            FTexts.Release(FLines[i]);
    FTexts.ReleaseAllBlocks();
    FBigSlots.clear();
    FLines.Clear();
}

void TStringList::Append(TLineText Text, NativeInt Object)
{
    try {
        SetObject(Text, Object);
    } catch (...) {
        FTexts.Release(Text);
        throw;
    }
    FLines.Insert(FLines.Length(), Text);
}

TStringList::TLoader::~TLoader()
{
    for (const std::uint32_t block : FAdopted)
        FList.FTexts.DropIfUnused(block);
}

void TStringList::TLoader::Add(TLineView Text, NativeInt Object)
{
    FList.FLines.Reserve(1);  // the room first: a text made for a record that cannot be stored would leak
    FList.Append(FList.FTexts.Pack(Text), Object);
}

std::uint32_t TStringList::TLoader::Adopt(TByteBuffer Bytes)
{
    FAdopted.reserve(FAdopted.size() + 1);
    FAdopted.push_back(FList.FTexts.Adopt(std::move(Bytes)));
    return FAdopted.back();
}

void TStringList::TLoader::AddInPlace(std::uint32_t Block, const Byte* Text, std::size_t Length)
{
    FList.FLines.Reserve(1);
    FList.Append(FList.FTexts.InPlace(Block, Text, Length), 0);
}

void TStringList::TLoader::AddInPlace(std::uint32_t Block, const Char* Text, std::size_t Length)
{
    FList.FLines.Reserve(1);
    FList.Append(FList.FTexts.InPlace(Block, Text, Length), 0);
}

void TStringList::TLoader::GiveBackTail(std::uint32_t Block, const Byte* UsedEnd)
{
    FList.FTexts.GiveBackTail(Block, UsedEnd);
}

String TStringList::Text() const
{
    std::size_t size = 0;
    for (std::size_t i = 0; i < FLines.Length(); ++i)
        size += FLines[i].Length() + sLineBreak.size();
    String result;
    result.reserve(size);
    for (std::size_t i = 0; i < FLines.Length(); ++i) {
        FLines[i].View().AppendTo(result);
        result += sLineBreak;
    }
    return result;
}

void TStringList::SetText(const String& Value) { LoadText(Value, false); }

void TStringList::LoadText(std::u16string_view Value, bool ABreakEndsLine)
{
    const auto breaks = std::size_t(std::count(Value.begin(), Value.end(), u'\n'));
    const bool emptyLast = ABreakEndsLine && (Value.empty() || Value.back() == u'\n' || Value.back() == u'\r');
    Load(breaks + 1, [&](TLoader& loader) {
        ForEachLine(Value.data(), Value.data() + Value.size(),
                    [&](const Char* line, std::size_t length) { loader.Add(TLineView(line, length)); });
        if (emptyLast)
            loader.Add(TLineView());
    });
}

void TStringList::Assign(const TStrings& Source)
{
    if (&Source == this)
        return;
    const auto* list = dynamic_cast<const TStringList*>(&Source);
    Load(std::size_t(Source.Count()), [&](TLoader& loader) {
        for (Integer i = 0; i < Source.Count(); ++i) {
            if (list) {
                loader.Add(list->Line(i), list->ObjectOf(list->FLines[std::size_t(i)]));
            } else {
                const String line = Source.Get(i);
                loader.Add(TLineView(line.data(), line.size()), Source.GetObject(i));
            }
        }
    });
}

void TStringList::SetUpdateState(bool Updating)
{
    if (Updating)
        Changing();
    else
        Changed();
}

void TStringList::Changing()
{
    if (UpdateCount() == 0 && OnChanging)
        OnChanging(this);
}

void TStringList::Changed()
{
    if (UpdateCount() == 0 && OnChange)
        OnChange(this);
}

void SxStringToList(const String& S, const String& Delimiter, TStrings& List)
{
    List.BeginUpdate();
    List.Clear();
    std::size_t from = 0;
    for (std::size_t at; !Delimiter.empty() && (at = S.find(Delimiter, from)) != String::npos;
         from = at + Delimiter.size())
        List.Add(S.substr(from, at - from));
    List.Add(S.substr(from));
    List.EndUpdate();
}

}  // namespace sx
