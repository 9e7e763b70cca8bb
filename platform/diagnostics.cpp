// Substitutions are noted per thread: the host reads them after each command it ran
// on that thread, and concurrent hosts do not see each other's.
#include "platform/diagnostics.h"

#include <utility>

namespace posprint {
namespace {
thread_local std::vector<Substitution> noted;
}  // namespace

void NoteSubstitution(wchar_t character, int codePage) { noted.push_back({character, codePage}); }

std::vector<Substitution> TakeSubstitutions() {
  std::vector<Substitution> taken;
  taken.swap(noted);
  return taken;
}

}  // namespace posprint
