// An allocator for big buffers, such as a file's bytes or the records of a
// million lines: where the system has huge pages, a block of one huge page
// or more is aligned to them and offered for them, so that filling it costs
// a few page faults rather than thousands; and room that a resize makes for
// elements of a plain type is left unwritten, since it is filled right after.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace sx {

/// The size of a huge page where there are huge pages (2 MB on x86-64 and
/// on most other systems); smaller blocks come from the heap as usual.
constexpr std::size_t HugePageBytes = std::size_t(2) << 20;

template <class T>
class TBigAllocator {
public:
    using value_type = T;

    TBigAllocator() = default;
    template <class U>
    TBigAllocator(const TBigAllocator<U>&) noexcept
    {
    }

    T* allocate(std::size_t n)
    {
        if (!IsBig(n))
            return std::allocator<T>().allocate(n);
#if defined(__linux__) && defined(MADV_HUGEPAGE)
        const std::size_t bytes = Rounded(n);
        void* block = std::aligned_alloc(HugePageBytes, bytes);
        if (!block)
            throw std::bad_alloc();
        madvise(block, bytes, MADV_HUGEPAGE);  // a hint: the block serves as well without
        return static_cast<T*>(block);
#else
        return std::allocator<T>().allocate(n);
#endif
    }

    void deallocate(T* p, std::size_t n) noexcept
    {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
        if (IsBig(n)) {
            std::free(p);
            return;
        }
#endif
        std::allocator<T>().deallocate(p, n);
    }

    /// Room made without a value: a plain type is left unwritten, any other
    /// is made as new makes it.
    template <class U>
    void construct(U* p) noexcept(std::is_nothrow_default_constructible_v<U>)
    {
        ::new (static_cast<void*>(p)) U;
    }
    template <class U, class... Args>
    void construct(U* p, Args&&... args)
    {
        ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
    }

    friend bool operator==(const TBigAllocator&, const TBigAllocator&) { return true; }

private:
    static bool IsBig(std::size_t n) { return n * sizeof(T) >= HugePageBytes; }
    static std::size_t Rounded(std::size_t n) { return (n * sizeof(T) + HugePageBytes - 1) / HugePageBytes * HugePageBytes; }
};

/// A buffer of bytes from the big allocator.
using TByteBuffer = std::vector<std::uint8_t, TBigAllocator<std::uint8_t>>;

/// Gives the whole pages of a big buffer that lie past its first Keep bytes
/// back to the system (where it can), so that they no longer count as
/// resident; the buffer keeps its size, and nothing may read those bytes
/// any more. A small buffer stays as it is: its tail is no page's worth.
inline void ReleaseTail(TByteBuffer& Bytes, std::size_t Keep)
{
#if defined(__linux__)
    if (Bytes.size() < HugePageBytes || Keep >= Bytes.size())
        return;
    const auto page = std::uintptr_t(sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(Bytes.data());
    const std::uintptr_t from = (begin + Keep + page - 1) / page * page;
    const std::uintptr_t to = (begin + Bytes.size()) / page * page;
    if (from < to)
        madvise(reinterpret_cast<void*>(from), to - from, MADV_DONTNEED);
#else
    (void)Bytes;
    (void)Keep;
#endif
}

}  // namespace sx
