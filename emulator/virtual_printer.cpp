#include "emulator/virtual_printer.h"

#include "emulator/png_file.h"

namespace posprint::emulator {
namespace {

// The first byte of a command (ESC, DLE, GS) as it arrives on a link scrambled with the
// family's key.
bool ScrambledCommandStart(std::uint8_t byte) {
  const std::uint8_t plain = byte ^ kFamilyScrambleKey;
  return plain == 0x1B || plain == 0x10 || plain == 0x1D;
}

}  // namespace

VirtualPrinter::VirtualPrinter(const ModelProfile& profile, int dotsPerMm) : profile_(profile) {
  PrinterLink link;
  link.answer = [this](const std::string& burst) {
    std::string line = burst;
    for (char& c : line) c = static_cast<char>(c ^ key_);
    answers_.push_back(line);
  };
  link.scramble = [this](std::uint8_t key) { key_ = key; };
  switch (profile.language) {
    case Language::kEscPos: interpreter_ = MakeEscPosPrinter(profile, link, notes_); break;
    case Language::kEscP: interpreter_ = MakeEscPPrinter(profile, link, notes_); break;
    case Language::kZpl: interpreter_ = MakeZplPrinter(profile, dotsPerMm, link, notes_); break;
    case Language::kItalora: interpreter_ = MakeItaloraPrinter(profile, dotsPerMm, link, notes_); break;
  }
  if (profile.portMode == PortMode::kScrambled) key_ = kFamilyScrambleKey;
}

std::unique_ptr<VirtualPrinter> VirtualPrinter::ForModel(const std::string& model, int dotsPerMm) {
  const ModelProfile* profile = FindProfile(model);
  if (!profile) return nullptr;
  return std::make_unique<VirtualPrinter>(*profile, dotsPerMm);
}

void VirtualPrinter::SetState(PrinterState state) {
  state_ = state;
  interpreter_->SetState(state);
}

void VirtualPrinter::DecidePortMode(std::uint8_t firstByte) {
  // A printer set up like its terminal: scrambled when what it first hears is.
  if (profile_.portMode == PortMode::kLearn && ScrambledCommandStart(firstByte)) key_ = kFamilyScrambleKey;
}

void VirtualPrinter::Receive(const void* bytes, std::size_t count) {
  const auto* line = static_cast<const std::uint8_t*>(bytes);
  for (std::size_t i = 0; i < count; ++i) {
    if (!heardAnything_) {
      heardAnything_ = true;
      DecidePortMode(line[i]);
    }
    // The key may change with any command, so each byte is descrambled as it comes.
    interpreter_->Feed(static_cast<std::uint8_t>(line[i] ^ key_));
  }
}

bool VirtualPrinter::TakeAnswer(std::string* burst) {
  if (answers_.empty()) return false;
  *burst = answers_.front();
  answers_.erase(answers_.begin());
  return true;
}

int VirtualPrinter::DiscardAnswers() {
  int count = 0;
  for (const std::string& answer : answers_) count += static_cast<int>(answer.size());
  answers_.clear();
  return count;
}

bool VirtualPrinter::HoldsLine() const {
  return profile_.holdsLineWhenStopped && state_ != PrinterState::kSilent && !Prints(state_);
}

void VirtualPrinter::Finish() { interpreter_->Finish(); }

}  // namespace posprint::emulator
