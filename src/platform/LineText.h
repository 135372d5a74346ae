// The text of the lines of a line store, kept compact: one byte per character
// for a line of Latin-1 characters only (most source text), two otherwise; a
// whole text stored at once is packed into shared blocks with no heap block
// per line.
#pragma once

#include "platform/BigAllocator.h"
#include "platform/Types.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace sx {

/// The characters of one stored line where they lie: one byte each (Latin-1,
/// the character is the byte's value) or UTF-16 code units. Valid until the
/// line store changes.
class TLineView {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    constexpr TLineView() = default;
    constexpr TLineView(const Byte* Narrow, std::size_t Length) : FNarrow(Narrow), FLength(Length) {}
    constexpr TLineView(const Char* Wide, std::size_t Length) : FWide(Wide), FLength(Length) {}

    std::size_t size() const { return FLength; }
    bool empty() const { return FLength == 0; }
    Char operator[](std::size_t Index) const { return FWide ? FWide[Index] : Char(FNarrow[Index]); }

    /// The bytes of a narrow line, or none for a wide one.
    const Byte* NarrowData() const { return FWide ? nullptr : FNarrow; }
    /// The code units of a wide line, or none for a narrow one.
    const Char* WideData() const { return FWide; }

    String ToString() const;
    /// Up to Count characters from From on: only what the line holds.
    String Substr(std::size_t From, std::size_t Count = npos) const;
    void AppendTo(String& Out) const;
    /// The first index of a character other than C, or npos.
    std::size_t FindFirstNot(Char C) const;

private:
    const Byte* FNarrow = nullptr;
    const Char* FWide = nullptr;
    std::size_t FLength = 0;
};

/// Whether every character is below 256, so that the text fits one byte each.
bool FitsNarrow(const Char* Text, std::size_t Length);

/// Calls visit(start, length) for each line of the characters from begin to
/// end, split at CR, LF or CR LF; a break at the very end makes no extra line.
template <class C, class Visit>
void ForEachLine(const C* begin, const C* end, Visit visit)
{
    const C* start = begin;
    while (start < end) {
        const C* p = start;
        while (p < end && *p != C('\r') && *p != C('\n'))
            ++p;
        visit(start, std::size_t(p - start));
        if (p < end && *p == C('\r'))
            ++p;
        if (p < end && *p == C('\n'))
            ++p;
        start = p;
    }
}

/// Where the text of one line lies. Plain data, made and freed by a
/// TLineTextStore; an empty line holds nothing.
struct TLineText {
    const void* Data = nullptr;
    std::uint32_t Length = 0;
    /// Bit 0: wide. Bit 1: a heap block of the line's own. Bits 2 on: the
    /// index + 1 of the shared block that holds it, 0 for none.
    std::uint32_t Place = 0;

    TLineView View() const
    {
        return (Place & WideBit) ? TLineView(static_cast<const Char*>(Data), Length)
                                 : TLineView(static_cast<const Byte*>(Data), Length);
    }

    static constexpr std::uint32_t WideBit = 1;
    static constexpr std::uint32_t OwnBit = 2;
    static constexpr std::uint32_t BlockShift = 2;
};

/// Makes and frees the text of lines. A line stored on its own (an edit) gets
/// a heap block of its own, freed with it. Lines stored in bulk (a loaded or
/// assigned text) are packed one behind the other into shared blocks, or
/// left where they are in a buffer that the store adopts as a block of its
/// own (a file's bytes); a block is freed when the last of its lines goes.
class TLineTextStore {
public:
    /// blockBytes is the size of a shared block; tests make it tiny.
    explicit TLineTextStore(std::size_t blockBytes = DefaultBlockBytes);
    ~TLineTextStore();
    TLineTextStore(const TLineTextStore&) = delete;
    TLineTextStore& operator=(const TLineTextStore&) = delete;

    /// A copy of the text in a heap block of its own, narrow where it fits.
    TLineText Own(TLineView Text);
    /// A copy of the text packed into a shared block, narrow where it fits.
    TLineText Pack(TLineView Text);
    /// Frees the text's own block, or takes it out of its shared block.
    void Release(const TLineText& Text);

    /// Takes a buffer over as a shared block and answers its number, for
    /// lines that lie in it as they are.
    std::uint32_t Adopt(TByteBuffer Bytes);
    /// A narrow line that lies in the adopted block as it is: no copy.
    TLineText InPlace(std::uint32_t ABlock, const Byte* Text, std::size_t Length);
    /// Frees an adopted block that no line has come to lie in.
    void DropIfUnused(std::uint32_t ABlock);

    /// Shared blocks that hold lines, for tests.
    std::size_t LiveBlocks() const;

    /// A megabyte: the cost of a block vanishes among its lines, and a block
    /// kept alive by a few lines that outlive their neighbours costs little.
    static constexpr std::size_t DefaultBlockBytes = 1 << 20;

private:
    struct Block {
        TByteBuffer Bytes;
        std::size_t Used = 0;
        std::size_t Lines = 0;
    };

    /// A place for bytes (2-aligned for wide text) in a shared block.
    Byte* Reserve(std::size_t bytes, std::uint32_t& blockIndex);
    std::size_t NewBlock(TByteBuffer bytes);
    void FreeBlock(std::size_t index);

    static constexpr std::size_t NoBlock = static_cast<std::size_t>(-1);

    std::size_t FBlockBytes;
    std::vector<Block> FBlocks;
    /// The block being filled, or NoBlock.
    std::size_t FCurrent = NoBlock;
    /// Indexes of freed blocks, for reuse.
    std::vector<std::size_t> FFree;
};

}  // namespace sx
