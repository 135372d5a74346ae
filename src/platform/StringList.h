// Lists of text lines: the abstract TStrings and the TStringList line store,
// whose lines live in a gap vector with one integer slot per line and their
// text kept compact.
#pragma once

#include "platform/Classes.h"
#include "platform/LineGap.h"
#include "platform/LineText.h"

#include <functional>
#include <string_view>
#include <unordered_map>

namespace sx {

class TStream;

/// A list of lines with one integer slot each ("object" in the classic list).
class TStrings : public TPersistent {
public:
    virtual Integer Count() const = 0;
    virtual String Get(Integer Index) const = 0;
    virtual void Put(Integer Index, const String& S) = 0;
    virtual NativeInt GetObject(Integer Index) const = 0;
    virtual void PutObject(Integer Index, NativeInt AObject) = 0;
    virtual void Insert(Integer Index, const String& S) = 0;
    virtual void Delete(Integer Index) = 0;
    virtual void Clear() = 0;

    String Strings(Integer Index) const { return Get(Index); }
    NativeInt Objects(Integer Index) const { return GetObject(Index); }
    Integer Add(const String& S);
    Integer AddObject(const String& S, NativeInt AObject);
    void InsertObject(Integer Index, const String& S, NativeInt AObject);
    Integer IndexOf(const String& S) const;

    /// The lines joined, each followed by CR LF.
    virtual String Text() const;
    /// Replaces the lines by the pieces of Value between CR, LF or CR LF; a
    /// break at the very end makes no extra line, and an empty Value no line.
    virtual void SetText(const String& Value);

    /// Replaces the lines with the text of the stream from its position to
    /// its end: UTF-16 after its byte-order mark, else UTF-8 (a mark skipped).
    virtual void LoadFromStream(TStream& Stream);
    /// Writes Text as UTF-8 without a byte-order mark, the same default both ways.
    virtual void SaveToStream(TStream& Stream) const;

    /// Copies lines and slots of Source.
    virtual void Assign(const TStrings& Source);
    void AddStrings(const TStrings& Source);

    /// Nested updates: the change events fire at the outermost begin and end only.
    void BeginUpdate();
    void EndUpdate();
    Integer UpdateCount() const { return FUpdateCount; }

protected:
    virtual void SetUpdateState(bool Updating) { (void)Updating; }
    [[noreturn]] static void Error(const char16_t* message, Integer Index);

private:
    Integer FUpdateCount = 0;
};

/// The line store: line records in a gap vector, each with the place of its
/// text (see LineText.h) and its integer slot; OnChanging before and OnChange
/// after each change, both held back while an update is open.
class TStringList : public TStrings {
public:
    /// growSize is the least growth of the gap vector and textBlockBytes the
    /// size of a shared text block; tests make both tiny.
    explicit TStringList(std::size_t growSize = 64, std::size_t textBlockBytes = TLineTextStore::DefaultBlockBytes)
        : FLines(growSize), FTexts(textBlockBytes)
    {
    }
    ~TStringList() override;
    TStringList(const TStringList&) = delete;
    TStringList& operator=(const TStringList&) = delete;

    Integer Count() const override { return Integer(FLines.Length()); }
    String Get(Integer Index) const override;
    /// The line's characters where they lie, without a copy; Index must be valid.
    TLineView Line(Integer Index) const { return FLines[std::size_t(Index)].View(); }
    void Put(Integer Index, const String& S) override;
    NativeInt GetObject(Integer Index) const override;
    void PutObject(Integer Index, NativeInt AObject) override;
    void Insert(Integer Index, const String& S) override;
    void Delete(Integer Index) override;
    void Clear() override;
    String Text() const override;
    void SetText(const String& Value) override;
    void Assign(const TStrings& Source) override;
    /// SetText of a text held anywhere, read in place. With ABreakEndsLine
    /// every line break ends a line, the last one too, so that n line breaks
    /// make n + 1 lines; SetText drops the empty line behind a last break.
    void LoadText(std::u16string_view Value, bool ABreakEndsLine);

    /// What the fill of Load hands the lines to, one at a time, in order.
    class TLoader {
    public:
        TLoader(const TLoader&) = delete;
        TLoader& operator=(const TLoader&) = delete;
        ~TLoader();
        /// A line whose text is copied, packed into a shared block.
        void Add(TLineView Text, NativeInt Object = 0);
        /// Takes a buffer over, for lines that lie in it as they are.
        std::uint32_t Adopt(TByteBuffer Bytes);
        /// A line of narrow text that lies in an adopted buffer: no copy.
        void AddInPlace(std::uint32_t Block, const Byte* Text, std::size_t Length);
        /// A line of wide text that lies in an adopted buffer, 2-aligned: no copy.
        void AddInPlace(std::uint32_t Block, const Char* Text, std::size_t Length);
        /// The lines lie in front of UsedEnd in an adopted buffer: the memory
        /// behind it goes back to the system.
        void GiveBackTail(std::uint32_t Block, const Byte* UsedEnd);

    private:
        friend class TStringList;
        explicit TLoader(TStringList& Lines) : FList(Lines) {}
        TStringList& FList;
        std::vector<std::uint32_t> FAdopted;
    };

    /// Replaces the lines, in one change as SetText makes it, with the lines
    /// that fill hands to the TLoader it is given; CountHint makes room for
    /// that many lines at once.
    template <class Fill>
    void Load(std::size_t CountHint, Fill&& fill)
    {
        BeginUpdate();
        try {
            RemoveAll();
            FLines.Reserve(CountHint);
            TLoader loader(*this);
            fill(loader);
        } catch (...) {
            EndUpdate();
            throw;
        }
        EndUpdate();
    }

    /// Shared text blocks in use, for tests.
    std::size_t TextBlocks() const { return FTexts.LiveBlocks(); }

    TNotifyEvent OnChange;
    TNotifyEvent OnChanging;

protected:
    void SetUpdateState(bool Updating) override;
    virtual void Changing();
    virtual void Changed();

private:
    void CheckIndex(Integer Index) const;
    /// Frees every line's text and empties the gap vector, with no event.
    void RemoveAll();
    /// Stores a new line at the end: its text, and its slot as SetObject does.
    void Append(TLineText Text, NativeInt Object);

    /// A slot lives in the record's small bits when it fits them; a larger
    /// one, marked by BigSlot there, in FBigSlots under the address of the
    /// line's own text, which the line gets for it.
    NativeInt ObjectOf(const TLineText& Line) const;
    void SetObject(TLineText& Line, NativeInt AObject);
    static bool FitsSmall(NativeInt AObject) { return AObject > BigSlot && AObject <= TLineText::SmallMax; }
    /// The line's text becomes Text; its slot stays.
    void Replace(TLineText& Line, TLineText Text);
    /// Frees the line's text and forgets its large slot.
    void Release(const TLineText& Line);

    static constexpr std::int32_t BigSlot = TLineText::SmallMin;

    LineGap<TLineText> FLines;
    TLineTextStore FTexts;
    std::unordered_map<const void*, NativeInt> FBigSlots;
};

/// Clears List and fills it with the pieces of S between occurrences of
/// Delimiter, empty pieces included: an empty S gives one empty piece, and a
/// delimiter at the end gives an empty last piece.
void SxStringToList(const String& S, const String& Delimiter, TStrings& List);

}  // namespace sx
