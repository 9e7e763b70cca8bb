// What the byte-stream printers on a paper strip or continuous form share (the ESC/POS
// family and the ESC/P dot-matrix printer): bytes gather until the command at their front
// is whole, a command the sender never finished is reported, and the paper's pieces are
// the pages.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "emulator/interpreter.h"
#include "emulator/receipt_paper.h"

namespace posprint::emulator {

class StripPrinter : public Interpreter {
 public:
  StripPrinter(int paperDots, int printableDots, Notes& notes);

  void Feed(std::uint8_t byte) final;
  void Finish() final;
  std::size_t PendingBytes() const final { return pending_.size() - start_; }
  void SetState(PrinterState state) final { state_ = state; }

  int FinishedPages() const final { return paper_.CutPieces(); }
  Image Page(int index) const final { return paper_.Piece(index); }
  Image Unfinished() const final { return paper_.SinceLastCut(); }
  Image Preview() const final { return paper_.Strip(); }

 protected:
  // One command from the front of the bytes; the count it used, 0 when it needs more.
  virtual std::size_t Parse(const std::uint8_t* p, std::size_t n) = 0;
  // Each byte as it arrives, before any command sees it (for real-time requests).
  virtual void Arrived(std::uint8_t byte) { (void)byte; }

  // A note about the command at the front, with its place in the stream.
  void Note(const std::string& text);
  std::size_t Received() const { return received_; }
  // Where the command at the front began in the stream.
  std::size_t CommandStart() const { return received_ - PendingBytes(); }
  bool Printing() const { return Prints(state_); }

  Notes& notes_;
  ReceiptPaper paper_;
  PrinterState state_ = PrinterState::kReady;

 private:
  std::vector<std::uint8_t> pending_;
  std::size_t start_ = 0;
  std::size_t received_ = 0;
};

}  // namespace posprint::emulator
