// Streams: the shared helpers of TStream and the memory stream.
#include "platform/Streams.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace sx {

std::int64_t TStream::Size()
{
    const std::int64_t here = Position();
    const std::int64_t size = Seek(0, TSeekOrigin::soEnd);
    SetPosition(here);
    return size;
}

void TStream::ReadBuffer(void* Buffer, Integer Count)
{
    if (Count != 0 && Read(Buffer, Count) != Count)
        throw EStreamError(u"Stream read error");
}

void TStream::WriteBuffer(const void* Buffer, Integer Count)
{
    if (Count != 0 && Write(Buffer, Count) != Count)
        throw EStreamError(u"Stream write error");
}

Integer TMemoryStream::Read(void* Buffer, Integer Count)
{
    if (Count <= 0 || FPosition >= std::int64_t(FData.size()))
        return 0;
    const auto n = Integer(std::min<std::int64_t>(Count, std::int64_t(FData.size()) - FPosition));
    std::memcpy(Buffer, FData.data() + FPosition, size_t(n));
    FPosition += n;
    return n;
}

Integer TMemoryStream::Write(const void* Buffer, Integer Count)
{
    if (Count <= 0)
        return 0;
    const auto end = size_t(FPosition) + size_t(Count);
    if (end > FData.size())
        FData.resize(end);
    std::memcpy(FData.data() + FPosition, Buffer, size_t(Count));
    FPosition = std::int64_t(end);
    return Count;
}

std::int64_t TMemoryStream::Seek(std::int64_t Offset, TSeekOrigin Origin)
{
    const std::int64_t base = Origin == TSeekOrigin::soBeginning ? 0
                              : Origin == TSeekOrigin::soCurrent ? FPosition
                                                                 : std::int64_t(FData.size());
    FPosition = std::max<std::int64_t>(0, base + Offset);
    return FPosition;
}

void TMemoryStream::Clear()
{
    FData.clear();
    FPosition = 0;
}

void TMemoryStream::SetBytes(TByteBuffer bytes)
{
    FData = std::move(bytes);
    FPosition = 0;
}

TByteBuffer TMemoryStream::TakeBytes()
{
    FPosition = 0;
    return std::exchange(FData, {});
}

}  // namespace sx
