// A set of enumeration values, the classic "set of" type: a bit per value.
#pragma once

#include <bitset>
#include <cstddef>
#include <initializer_list>

namespace sx {

/// A set over the enumeration E whose values lie below N.
template <class E, std::size_t N = 32>
class TSet {
public:
    constexpr TSet() = default;
    TSet(std::initializer_list<E> values)
    {
        for (E v : values)
            Include(v);
    }

    bool Contains(E v) const { return Index(v) < N && FBits.test(Index(v)); }
    TSet& Include(E v)
    {
        FBits.set(Index(v));
        return *this;
    }
    TSet& Exclude(E v)
    {
        FBits.reset(Index(v));
        return *this;
    }
    bool Empty() const { return FBits.none(); }
    std::size_t Size() const { return FBits.count(); }
    /// The set as the low bits of an integer, as it is stored by the classic framework.
    unsigned long long ToBits() const { return FBits.to_ullong(); }
    static TSet FromBits(unsigned long long bits)
    {
        TSet s;
        s.FBits = std::bitset<N>(bits);
        return s;
    }

    friend TSet operator+(TSet a, const TSet& b)
    {
        a.FBits |= b.FBits;
        return a;
    }
    friend TSet operator-(TSet a, const TSet& b)
    {
        a.FBits &= ~b.FBits;
        return a;
    }
    friend TSet operator*(TSet a, const TSet& b)
    {
        a.FBits &= b.FBits;
        return a;
    }
    friend bool operator==(const TSet&, const TSet&) = default;

private:
    static std::size_t Index(E v) { return static_cast<std::size_t>(v); }
    std::bitset<N> FBits;
};

}  // namespace sx
