// Compact line text: narrow or wide views, heap blocks of single lines, and
// shared blocks that lines are packed into and that go with their last line.
#include "platform/LineText.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

namespace sx {

String TLineView::ToString() const
{
    String s;
    AppendTo(s);
    return s;
}

String TLineView::Substr(std::size_t From, std::size_t Count) const
{
    if (From >= FLength)
        return String();
    const std::size_t n = std::min(Count, FLength - From);
    if (FWide)
        return String(FWide + From, n);
    String s(n, u'\0');
    std::copy(FNarrow + From, FNarrow + From + n, s.begin());
    return s;
}

void TLineView::AppendTo(String& Out) const
{
    if (FWide) {
        Out.append(FWide, FLength);
        return;
    }
    const std::size_t at = Out.size();
    Out.resize(at + FLength);
    std::copy(FNarrow, FNarrow + FLength, Out.begin() + std::ptrdiff_t(at));
}

std::size_t TLineView::FindFirstNot(Char C) const
{
    for (std::size_t i = 0; i < FLength; ++i)
        if ((*this)[i] != C)
            return i;
    return npos;
}

bool FitsNarrow(const Char* Text, std::size_t Length)
{
    Char any = 0;
    for (std::size_t i = 0; i < Length; ++i)
        any |= Text[i];
    return any < 0x100;
}

namespace {

/// Copies a view's characters into code units (wide, for wide text only) or
/// bytes (narrow).
void CopyCharacters(TLineView text, bool wide, Byte* out)
{
    const std::size_t n = text.size();
    if (wide)
        std::memcpy(out, text.WideData(), n * sizeof(Char));
    else if (const Byte* narrow = text.NarrowData())
        std::memcpy(out, narrow, n);
    else
        std::transform(text.WideData(), text.WideData() + n, out, [](Char c) { return Byte(c); });
}

/// Wide text with a character beyond Latin-1 stays wide; all else is stored narrow.
bool NeedsWide(TLineView text) { return text.WideData() && !FitsNarrow(text.WideData(), text.size()); }

}  // namespace

TLineText::TLineText(const void* AData, std::size_t ALength, bool AWide, bool AOwn)
    : FBits(std::uint16_t((AWide ? WideBit : 0) | (AOwn ? OwnBit : 0))), FLength(std::uint32_t(ALength))
{
    const auto address = reinterpret_cast<std::uintptr_t>(AData);
    if (std::uint64_t(address) >> 48 != 0)
        throw std::bad_alloc();
    FAddressLow = std::uint32_t(address);
    FAddressHigh = std::uint16_t(std::uint64_t(address) >> 32);
}

TLineTextStore::TLineTextStore(std::size_t blockBytes) : FBlockBytes(std::max<std::size_t>(blockBytes, 2)) {}

TLineTextStore::~TLineTextStore() = default;

TLineText TLineTextStore::Own(TLineView Text)
{
    if (Text.empty())
        return TLineText();
    return OwnUnique(Text);
}

TLineText TLineTextStore::OwnUnique(TLineView Text)
{
    const bool wide = NeedsWide(Text);
    const std::size_t bytes = Text.size() * (wide ? sizeof(Char) : 1);
    auto* data = new Byte[std::max<std::size_t>(bytes, 1)];
    CopyCharacters(Text, wide, data);
    try {
        return TLineText(data, Text.size(), wide, true);
    } catch (...) {
        delete[] data;
        throw;
    }
}

TLineText TLineTextStore::Pack(TLineView Text)
{
    if (Text.empty())
        return TLineText();
    const bool wide = NeedsWide(Text);
    Byte* data = Reserve(Text.size() * (wide ? sizeof(Char) : 1) + (wide ? 1 : 0));
    if (wide && reinterpret_cast<std::uintptr_t>(data) % 2 != 0)
        ++data;
    CopyCharacters(Text, wide, data);
    return TLineText(data, Text.size(), wide, false);
}

void TLineTextStore::Release(const TLineText& Text)
{
    if (Text.Own()) {
        delete[] static_cast<const Byte*>(Text.Data());
        return;
    }
    if (Text.Length() == 0)
        return;
    const std::size_t index = std::prev(FBlockAt.upper_bound(static_cast<const Byte*>(Text.Data())))->second;
    if (--FBlocks[index].Lines == 0)
        FreeBlock(index);
}

void TLineTextStore::ReleaseAllBlocks()
{
    FBlocks.clear();
    FBlockAt.clear();
    FFree.clear();
    FCurrent = NoBlock;
}

void TLineTextStore::FreeBlock(std::size_t index)
{
    FBlockAt.erase(FBlocks[index].Bytes.data());
    FBlocks[index] = Block{};
    FFree.push_back(index);
    if (FCurrent == index)
        FCurrent = NoBlock;
}

std::uint32_t TLineTextStore::Adopt(TByteBuffer Bytes)
{
    const std::size_t index = NewBlock(std::move(Bytes));
    FBlocks[index].Used = FBlocks[index].Bytes.size();
    return std::uint32_t(index);
}

TLineText TLineTextStore::InPlace(std::uint32_t ABlock, const Byte* Text, std::size_t Length)
{
    return LyingIn(ABlock, Text, Length, false);
}

TLineText TLineTextStore::InPlace(std::uint32_t ABlock, const Char* Text, std::size_t Length)
{
    return LyingIn(ABlock, Text, Length, true);
}

TLineText TLineTextStore::LyingIn(std::uint32_t ABlock, const void* Text, std::size_t Length, bool Wide)
{
    if (Length == 0)
        return TLineText();
    const TLineText text(Text, Length, Wide, false);
    ++FBlocks[ABlock].Lines;
    return text;
}

void TLineTextStore::GiveBackTail(std::uint32_t ABlock, const Byte* UsedEnd)
{
    Block& block = FBlocks[ABlock];
    block.Used = std::min(std::size_t(UsedEnd - block.Bytes.data()), block.Bytes.size());
    ReleaseTail(block.Bytes, block.Used);
}

void TLineTextStore::DropIfUnused(std::uint32_t ABlock)
{
    if (FBlocks[ABlock].Lines == 0)
        FreeBlock(ABlock);
}

std::size_t TLineTextStore::LiveBlocks() const { return FBlockAt.size(); }

Byte* TLineTextStore::Reserve(std::size_t bytes)
{
    // A line of more than half a block gets a block of its own, so that the
    // block being filled keeps its room for the lines behind it.
    std::size_t index;
    if (bytes > FBlockBytes / 2) {
        index = NewBlock(TByteBuffer(bytes));
    } else {
        if (FCurrent == NoBlock || FBlocks[FCurrent].Bytes.size() - FBlocks[FCurrent].Used < bytes)
            FCurrent = NewBlock(TByteBuffer(FBlockBytes));
        index = FCurrent;
    }
    Block& block = FBlocks[index];
    Byte* at = block.Bytes.data() + block.Used;
    block.Used += bytes;
    ++block.Lines;
    return at;
}

std::size_t TLineTextStore::NewBlock(TByteBuffer bytes)
{
    std::size_t index = FBlocks.size();
    if (!FFree.empty()) {
        index = FFree.back();
        FFree.pop_back();
    } else {
        FBlocks.emplace_back();
    }
    FBlocks[index].Bytes = std::move(bytes);
    if (!FBlocks[index].Bytes.empty())
        FBlockAt.emplace(FBlocks[index].Bytes.data(), index);
    return index;
}

}  // namespace sx
