// The text of the lines of a line store, kept compact: one byte per character
// for a line of Latin-1 characters only (most source text), two otherwise; a
// whole text stored at once is packed into shared blocks with no heap block
// per line.
#pragma once

#include "platform/BigAllocator.h"
#include "platform/Types.h"

#include <cstddef>
#include <cstdint>
#include <map>
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

/// Where the text of one line lies, in 12 bytes: the address of its first
/// character, its length, whether it is wide and whether it is a heap block
/// of its own, and 14 bits the line store keeps for the line (its small
/// slot). Plain data, made and freed by a TLineTextStore; an empty line
/// holds nothing.
class TLineText {
public:
    TLineText() = default;

    TLineView View() const
    {
        return Wide() ? TLineView(static_cast<const Char*>(Data()), FLength)
                      : TLineView(static_cast<const Byte*>(Data()), FLength);
    }
    const void* Data() const
    {
        return reinterpret_cast<const void*>(std::uintptr_t(FAddressHigh) << 32 | FAddressLow);
    }
    std::size_t Length() const { return FLength; }
    bool Wide() const { return (FBits & WideBit) != 0; }
    /// A heap block of the line's own, not shared with other lines.
    bool Own() const { return (FBits & OwnBit) != 0; }

    /// The 14 bits kept for the line store, as a number from SmallMin to SmallMax.
    std::int32_t Small() const { return std::int16_t(FBits) >> SmallShift; }
    void SetSmall(std::int32_t Value)
    {
        FBits = std::uint16_t((FBits & FlagBits) | std::uint32_t(Value) << SmallShift);
    }
    static constexpr std::int32_t SmallMin = -(1 << 13);
    static constexpr std::int32_t SmallMax = (1 << 13) - 1;

private:
    friend class TLineTextStore;
    /// Raises std::bad_alloc for an address beyond 48 bits, which no
    /// user-space address of today's 64-bit systems reaches.
    TLineText(const void* AData, std::size_t ALength, bool AWide, bool AOwn);

    static constexpr std::uint16_t WideBit = 1;
    static constexpr std::uint16_t OwnBit = 2;
    static constexpr std::uint16_t FlagBits = WideBit | OwnBit;
    static constexpr int SmallShift = 2;

    std::uint32_t FAddressLow = 0;
    std::uint16_t FAddressHigh = 0;
    std::uint16_t FBits = 0;
    std::uint32_t FLength = 0;
};
static_assert(sizeof(TLineText) == 12, "a line record of 12 bytes: its size times the line count is the memory floor");

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
    /// A copy of the text in a heap block of its own that no other line
    /// has, even when the text is empty: its address names the line.
    TLineText OwnUnique(TLineView Text);
    /// Frees the text's own block, or takes it out of its shared block.
    void Release(const TLineText& Text);
    /// Frees every shared block at once, when no line lies in one any more.
    void ReleaseAllBlocks();

    /// Takes a buffer over as a shared block and answers its number, for
    /// lines that lie in it as they are.
    std::uint32_t Adopt(TByteBuffer Bytes);
    /// A narrow line that lies in the adopted block as it is: no copy.
    TLineText InPlace(std::uint32_t ABlock, const Byte* Text, std::size_t Length);
    /// A wide line that lies in the adopted block, 2-aligned: no copy.
    TLineText InPlace(std::uint32_t ABlock, const Char* Text, std::size_t Length);
    /// Gives the memory of an adopted block behind UsedEnd back to the
    /// system: its lines lie in front of it.
    void GiveBackTail(std::uint32_t ABlock, const Byte* UsedEnd);
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

    /// A place for bytes in a shared block, counted as one more line of it.
    Byte* Reserve(std::size_t bytes);
    TLineText LyingIn(std::uint32_t ABlock, const void* Text, std::size_t Length, bool Wide);
    std::size_t NewBlock(TByteBuffer bytes);
    void FreeBlock(std::size_t index);

    static constexpr std::size_t NoBlock = static_cast<std::size_t>(-1);

    std::size_t FBlockBytes;
    std::vector<Block> FBlocks;
    /// The blocks in use by the address of their first byte: a line's
    /// address finds its block.
    std::map<const Byte*, std::size_t> FBlockAt;
    /// The block being filled, or NoBlock.
    std::size_t FCurrent = NoBlock;
    /// Indexes of freed blocks, for reuse.
    std::vector<std::size_t> FFree;
};

}  // namespace sx
