#include "emulator/printer_state.h"

#include <cctype>

namespace posprint::emulator {
namespace {

struct Name {
  PrinterState state;
  const char* name;
};
constexpr Name kNames[] = {
    {PrinterState::kReady, "ready"},          {PrinterState::kNearEnd, "near-end"},
    {PrinterState::kPaperOut, "paper-out"},   {PrinterState::kCoverOpen, "cover-open"},
    {PrinterState::kError, "error"},          {PrinterState::kSilent, "silent"},
};

}  // namespace

const char* StateName(PrinterState state) {
  for (const Name& row : kNames)
    if (row.state == state) return row.name;
  return "ready";
}

bool ParseState(const std::string& name, PrinterState* state) {
  std::string lower;
  for (char c : name) lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  for (const Name& row : kNames) {
    if (lower == row.name) {
      *state = row.state;
      return true;
    }
  }
  return false;
}

std::string StateNames() {
  std::string names;
  for (const Name& row : kNames) {
    if (!names.empty()) names += ", ";
    names += row.name;
  }
  return names;
}

}  // namespace posprint::emulator
