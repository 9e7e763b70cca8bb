// Heap allocations of the whole benchmark process, counted by a replacement of the global
// operator new (alloc_counter.cpp): every allocation of the driver, the frame and the
// platform goes through it, the shared libraries' included.
#pragma once

#include <cstdint>

namespace posprint::bench {

std::uint64_t AllocationCount();
std::uint64_t AllocatedBytes();

}  // namespace posprint::bench
