// A gap vector: one array of elements with a gap at the place of the last
// insertion or deletion, so that edits near each other move only what lies
// between them. Used for the line records of a million-line text.
#pragma once

#include "platform/BigAllocator.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace sx {

template <class T>
class LineGap {
public:
    /// growSize is the least number of free places added when the array grows;
    /// tests make it tiny to exercise growth.
    explicit LineGap(std::size_t growSize = 64) : FGrowSize(growSize < 1 ? 1 : growSize) {}

    std::size_t Length() const { return FBody.size() - FGapLength; }
    bool Empty() const { return Length() == 0; }

    /// Element at index; the caller keeps index below Length().
    T& operator[](std::size_t index) { return FBody[Physical(index)]; }
    const T& operator[](std::size_t index) const { return FBody[Physical(index)]; }

    void Insert(std::size_t index, T value)
    {
        RoomFor(1);
        GapTo(index);
        FBody[FGapStart] = std::move(value);
        ++FGapStart;
        --FGapLength;
    }

    void Delete(std::size_t index)
    {
        GapTo(index);
        FBody[FGapStart + FGapLength] = T{};  // release the element's storage now
        ++FGapLength;
    }

    /// Empties the array; its memory stays for the next fill, since giving
    /// it back costs every later load its page faults again.
    void Clear()
    {
        FBody.clear();
        FGapStart = 0;
        FGapLength = 0;
    }

    /// Makes room for at least count more elements without moving the gap.
    void Reserve(std::size_t count) { RoomFor(count); }

    /// Moves the gap so that it starts at index; moves only the elements
    /// between the old and the new place.
    /// invariant: FGapStart + FGapLength <= FBody.size()
    void GapTo(std::size_t index)
    {
        if (index == FGapStart)
            return;
        if (FGapLength == 0) {
            // an empty gap can stand anywhere; moving would assign elements to themselves
        } else if (index < FGapStart) {
            // move [index, FGapStart) up behind the gap
            for (std::size_t i = FGapStart; i > index; --i)
                FBody[i - 1 + FGapLength] = std::move(FBody[i - 1]);
        } else {
            // move [FGapStart + FGapLength, index + FGapLength) down in front of the gap
            for (std::size_t i = FGapStart; i < index; ++i)
                FBody[i] = std::move(FBody[i + FGapLength]);
        }
        FGapStart = index;
    }

    std::size_t GapStart() const { return FGapStart; }

private:
    std::size_t Physical(std::size_t index) const { return index < FGapStart ? index : index + FGapLength; }

    void RoomFor(std::size_t count)
    {
        if (FGapLength >= count)
            return;
        GapTo(Length());
        const std::size_t grown = FBody.size() + FBody.size() / 2 + FGrowSize;
        const std::size_t needed = FBody.size() - FGapLength + count;
        const std::size_t newSize = grown > needed ? grown : needed;
        FGapLength += newSize - FBody.size();
        FBody.resize(newSize);
    }

    std::vector<T, TBigAllocator<T>> FBody;
    std::size_t FGapStart = 0;
    std::size_t FGapLength = 0;
    std::size_t FGrowSize;
};

}  // namespace sx
