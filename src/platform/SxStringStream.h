// TSxStringStream: an in-memory text stream that reads a text file and gives
// its whole text back as one UTF-16 string, telling the file's encoding from a
// byte-order mark or, without one, from the bytes themselves.
#pragma once

#include "platform/Streams.h"
#include "platform/StringList.h"

#include <cstddef>
#include <cstdint>

namespace sx {

/// The code pages the text stream reads and writes, by their usual numbers.
namespace CodePages {
constexpr Integer Utf16LE = 1200;
constexpr Integer Utf16BE = 1201;
constexpr Integer Windows1252 = 1252;
constexpr Integer Utf8 = 65001;
/// For LoadFromFile: tell the encoding from the file.
constexpr Integer Detect = -1;
}  // namespace CodePages

class TSxStringStream : public TMemoryStream {
public:
    /// aCodePage is the encoding of the stream's bytes until a load tells the
    /// file's; with 1200 the bytes are the UTF-16 text GetWString gives back.
    /// aCapacityHint is accepted and ignored: a load sizes the buffer from the
    /// file. Raises EConvertError for a code page the stream does not know.
    TSxStringStream(Integer aCodePage, Integer aCapacityHint);

    /// Replaces the bytes with the file's. aCodePage is the file's encoding or
    /// CodePages::Detect: a byte-order mark of UTF-8, UTF-16 LE or UTF-16 BE
    /// decides; without one, valid UTF-8 is UTF-8 and anything else Windows-1252.
    /// Raises EFOpenError when the file cannot be opened or read.
    void LoadFromFile(const String& aFileName, Integer aCodePage);

    /// Writes the bytes held, as they are, to a new or emptied file. Raises
    /// EFCreateError when the file cannot be made or written.
    void SaveToFile(const String& aFileName) const;

    /// The text of all bytes, decoded from CodePage, without a byte-order mark.
    /// Nothing is dropped: a byte that cannot be decoded becomes U+FFFD.
    String GetWString() const;

    /// Lines.SetText(GetWString()) without the whole text as one string: the
    /// bytes go over to the list, and each line of 8-bit text whose bytes
    /// are its characters stays where it lies in them; the others are
    /// decoded. The stream is left empty.
    void TakeLines(TStringList& Lines);

    /// The encoding of the bytes held.
    Integer CodePage() const { return FCodePage; }

    /// Extension: whether the bytes begin with the byte-order mark of CodePage.
    bool HasByteOrderMark() const;
    /// Extension: whether the text decodes without a loss: UTF-8 bytes behind
    /// a byte-order mark hold only well-formed sequences, UTF-16 bytes come
    /// in pairs. Without a mark invalid UTF-8 is read as Windows-1252, which
    /// keeps every byte.
    bool IsWellFormed() const;
    /// Extension: the first line break of the text ("\r\n", "\n" or "\r"),
    /// empty when it has none.
    String FirstLineBreak() const;
    /// Extension: whether the text's last character is a line break.
    bool EndsWithLineBreak() const;
    /// Extension: the bytes become AText in code page aCodePage, behind its
    /// byte-order mark when aMark. Answers false, and keeps the bytes, when
    /// Windows-1252 cannot hold a character of the text. UTF-8 cannot hold a
    /// lone surrogate: it becomes U+FFFD there.
    bool SetWString(const String& AText, Integer aCodePage, bool aMark);

private:
    void ReadFile(const String& aFileName);
    /// The bytes of one character: 2 in UTF-16, 1 otherwise.
    std::size_t UnitSize() const;
    /// The character of the unit at AOffset if it is ASCII, otherwise U+FFFF.
    Char AsciiUnitAt(std::size_t AOffset) const;

    Integer FCodePage;
};

}  // namespace sx
