// A virtual printer's command interpreter: it takes the bytes that reach the printer
// (already descrambled), answers through its link, and draws what the printer prints.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "emulator/image.h"
#include "emulator/models.h"
#include "emulator/notes.h"
#include "emulator/printer_state.h"

namespace posprint::emulator {

// What an interpreter may do to the line it is attached to.
struct PrinterLink {
  std::function<void(const std::string& burst)> answer;  // one answer burst, plain
  std::function<void(std::uint8_t key)> scramble;        // from now on XOR with key; 0: plain
};

class Interpreter {
 public:
  virtual ~Interpreter() = default;

  virtual void Feed(std::uint8_t byte) = 0;
  // The sender has gone for good: a command still waiting for its bytes is reported.
  virtual void Finish() = 0;
  // Bytes of a command that is still waiting for the rest of itself.
  virtual std::size_t PendingBytes() const = 0;
  virtual void SetState(PrinterState state) = 0;

  // Finished tickets (cut off) or labels (printed), in order.
  virtual int FinishedPages() const = 0;
  virtual Image Page(int index) const = 0;
  // What has been printed since the last finished page (empty when nothing).
  virtual Image Unfinished() const = 0;
  // Everything printed, as one picture (a strip with its cut marks, or the labels one
  // under the other).
  virtual Image Preview() const = 0;
};

std::unique_ptr<Interpreter> MakeEscPosPrinter(const ModelProfile& profile, PrinterLink link, Notes& notes);
std::unique_ptr<Interpreter> MakeEscPPrinter(const ModelProfile& profile, PrinterLink link, Notes& notes);
// dotsPerMm: the label printer's resolution (6, 8, 12 or 24).
std::unique_ptr<Interpreter> MakeZplPrinter(const ModelProfile& profile, int dotsPerMm, PrinterLink link, Notes& notes);
std::unique_ptr<Interpreter> MakeItaloraPrinter(const ModelProfile& profile, int dotsPerMm, PrinterLink link,
                                                Notes& notes);

}  // namespace posprint::emulator
