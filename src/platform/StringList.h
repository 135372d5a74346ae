// Lists of text lines: the abstract TStrings and the TStringList line store,
// whose lines live in a gap vector with one integer slot per line.
#pragma once

#include "Classes.h"
#include "LineGap.h"

#include <functional>

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

/// The line store: lines in a gap vector, OnChanging before and OnChange
/// after each change, both held back while an update is open.
class TStringList : public TStrings {
public:
    explicit TStringList(std::size_t growSize = 64) : FLines(growSize) {}

    Integer Count() const override { return Integer(FLines.Length()); }
    String Get(Integer Index) const override;
    /// The line without a copy; Index must be valid.
    const String& Line(Integer Index) const { return FLines[std::size_t(Index)].Text; }
    void Put(Integer Index, const String& S) override;
    NativeInt GetObject(Integer Index) const override;
    void PutObject(Integer Index, NativeInt AObject) override;
    void Insert(Integer Index, const String& S) override;
    void Delete(Integer Index) override;
    void Clear() override;
    void SetText(const String& Value) override;
    void Assign(const TStrings& Source) override;

    TNotifyEvent OnChange;
    TNotifyEvent OnChanging;

protected:
    void SetUpdateState(bool Updating) override;
    virtual void Changing();
    virtual void Changed();

private:
    struct LineRecord {
        String Text;
        NativeInt Object = 0;
    };

    void CheckIndex(Integer Index) const;
    void InsertRecord(Integer Index, LineRecord record);

    LineGap<LineRecord> FLines;
};

/// Clears List and fills it with the pieces of S between occurrences of
/// Delimiter, empty pieces included: an empty S gives one empty piece, and a
/// delimiter at the end gives an empty last piece.
void SxStringToList(const String& S, const String& Delimiter, TStrings& List);

}  // namespace sx
