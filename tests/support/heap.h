// The bytes that are allocated and not yet freed: growth shows here, and not in resident memory,
// of which a sanitizer keeps freed pages.
#pragma once

#include <malloc.h>

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
// Of the sanitizer's runtime; g++ has no header for it.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace velto::test {

inline std::size_t LiveHeapBytes() {
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

}  // namespace velto::test
