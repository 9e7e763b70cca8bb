// Diagnostics that the host reports to its user alongside a command's result.
#pragma once

#include <cstdint>
#include <vector>

namespace posprint {

struct Substitution {
  wchar_t character;  // the character that could not be printed
  int codePage;       // the code page it was converted to
};

// Called by the text conversion for every character replaced by '?'.
void NoteSubstitution(wchar_t character, int codePage);
// Hands out (and forgets) the substitutions noted on this thread since the last call.
std::vector<Substitution> TakeSubstitutions();

// Called by otool_WRITE with the count of every write the port accepted (any port).
void NoteBytesWritten(int count);
// Bytes the ports of this process have accepted since it started; a host shows the
// difference between two readings as its progress.
std::uint64_t BytesWritten();

}  // namespace posprint
