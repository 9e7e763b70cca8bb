// Substitutions are noted per thread: the host reads them after each command it ran
// on that thread, and concurrent hosts do not see each other's. The byte count is one for
// the process: a host reads it as a running total.
#include "platform/diagnostics.h"

#include <atomic>
#include <utility>

namespace posprint {
namespace {
thread_local std::vector<Substitution> noted;
std::atomic<std::uint64_t> bytesWritten{0};
}  // namespace

void NoteSubstitution(wchar_t character, int codePage) { noted.push_back({character, codePage}); }

std::vector<Substitution> TakeSubstitutions() {
  std::vector<Substitution> taken;
  taken.swap(noted);
  return taken;
}

void NoteBytesWritten(int count) {
  if (count > 0) bytesWritten.fetch_add(static_cast<std::uint64_t>(count), std::memory_order_relaxed);
}

std::uint64_t BytesWritten() { return bytesWritten.load(std::memory_order_relaxed); }

}  // namespace posprint
