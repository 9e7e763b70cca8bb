// The condition a virtual printer is in: it decides the status answers and whether
// anything comes out on paper.
#pragma once

#include <string>

namespace posprint::emulator {

enum class PrinterState {
  kReady,      // prints and answers ready
  kNearEnd,    // prints; the paper roll is nearly used up
  kPaperOut,   // prints nothing: no paper
  kCoverOpen,  // prints nothing: the cover (or print head) is open
  kError,      // prints nothing: a mechanical error (cutter jam, head too hot)
  kSilent,     // switched off or unplugged: answers nothing and prints nothing
};

// "ready", "near-end", "paper-out", "cover-open", "error", "silent" (the names of sim:STATE).
const char* StateName(PrinterState state);
// Accepts those names in any letter case; false for any other word.
bool ParseState(const std::string& name, PrinterState* state);
// The names, comma separated, for messages.
std::string StateNames();

// Whether a printer in that state puts anything on paper.
inline bool Prints(PrinterState state) { return state == PrinterState::kReady || state == PrinterState::kNearEnd; }

}  // namespace posprint::emulator
