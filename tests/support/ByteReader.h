// The bytes of a fuzzer or of a seeded generator read as small numbers and
// as UTF-16 text, so that one driver serves the fuzz targets and the
// seeded random tests of the ordinary suite.
#pragma once

#include "platform/Types.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace sx::test {

/// Reads the fuzzer's bytes front to back; past the end every read gives 0.
class ByteReader {
public:
    ByteReader(const std::uint8_t* data, std::size_t size) : FData(data), FSize(size) {}

    bool AtEnd() const { return FPos >= FSize; }
    std::size_t Left() const { return FSize - FPos; }
    std::uint8_t Byte() { return AtEnd() ? 0 : FData[FPos++]; }
    /// A number from 0 to ALimit - 1.
    Integer Below(Integer ALimit) { return ALimit <= 0 ? 0 : Integer(Byte() % unsigned(ALimit)); }
    /// Up to AMax bytes as text (see TextOf).
    String Text(std::size_t AMax);

private:
    const std::uint8_t* FData;
    std::size_t FSize;
    std::size_t FPos = 0;
};

/// Bytes as UTF-16: a byte below 0xF0 is the character of that code; 0xF0 and
/// above take the next two bytes as one code unit, so any unit can occur,
/// surrogate halves included, while short inputs stay readable ASCII.
inline String TextOf(const std::uint8_t* data, std::size_t size, std::size_t* used = nullptr)
{
    String text;
    text.reserve(size);
    std::size_t i = 0;
    while (i < size) {
        const std::uint8_t b = data[i++];
        if (b < 0xF0 || i + 2 > size) {
            text.push_back(Char(b));
        } else {
            text.push_back(Char(data[i] | (data[i + 1] << 8)));
            i += 2;
        }
    }
    if (used)
        *used = i;
    return text;
}

inline String ByteReader::Text(std::size_t AMax)
{
    std::size_t used = 0;
    const std::size_t take = std::min(AMax, Left());
    String text = TextOf(FData + FPos, take, &used);
    FPos += used;
    return text;
}

}  // namespace sx::test
