// The stream family of the framework layer: an abstract byte stream with a
// settable position, and a stream over memory.
#pragma once

#include "platform/BigAllocator.h"
#include "platform/Classes.h"

#include <cstdint>
#include <vector>

namespace sx {

enum class TSeekOrigin { soBeginning, soCurrent, soEnd };

class TStream : public TObject {
public:
    /// Reads up to Count bytes into Buffer and answers how many were read.
    virtual Integer Read(void* Buffer, Integer Count) = 0;
    /// Writes up to Count bytes and answers how many were written.
    virtual Integer Write(const void* Buffer, Integer Count) = 0;
    virtual std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) = 0;

    std::int64_t Position() { return Seek(0, TSeekOrigin::soCurrent); }
    void SetPosition(std::int64_t value) { Seek(value, TSeekOrigin::soBeginning); }
    std::int64_t Size();
    /// Reads exactly Count bytes; raises EStreamError when fewer are there.
    void ReadBuffer(void* Buffer, Integer Count);
    void WriteBuffer(const void* Buffer, Integer Count);
};

/// A stream over a growable block of memory.
class TMemoryStream : public TStream {
public:
    TMemoryStream() = default;
    explicit TMemoryStream(const std::vector<std::uint8_t>& bytes) : FData(bytes.begin(), bytes.end()) {}

    Integer Read(void* Buffer, Integer Count) override;
    Integer Write(const void* Buffer, Integer Count) override;
    std::int64_t Seek(std::int64_t Offset, TSeekOrigin Origin) override;

    const TByteBuffer& Bytes() const { return FData; }
    void Clear();
    /// Replaces the bytes, position at 0.
    void SetBytes(TByteBuffer bytes);
    /// Takes the bytes out and leaves the stream empty.
    TByteBuffer TakeBytes();

private:
    TByteBuffer FData;
    std::int64_t FPosition = 0;
};

}  // namespace sx
