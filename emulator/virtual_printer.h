// Virtual printers: a printer of any implemented model that receives exactly what a
// driver sends, answers like the real printer and draws what it would print.
//
// Two ways to use one:
// - through the port layer: RegisterSimPort() adds the port kind "sim:" (and
//   "sim:STATE", such as "sim:paper-out"); a driver that opens it talks to the virtual
//   printer chosen with SetModel(). WritePreview() then draws what it printed.
// - over a pseudo-terminal or TCP for other programs (`posprint emulate`): Listen().
//
// The class VirtualPrinter underneath is the printer itself, for tests and tools that
// feed it bytes directly.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "emulator/image.h"
#include "emulator/interpreter.h"
#include "emulator/models.h"
#include "emulator/notes.h"
#include "emulator/printer_state.h"

namespace posprint::emulator {

class VirtualPrinter {
 public:
  // dotsPerMm: the resolution of a label printer (6, 8, 12 or 24); receipt and ticket
  // printers always draw 8 dots a millimetre.
  explicit VirtualPrinter(const ModelProfile& profile, int dotsPerMm = 8);
  // Null when no virtual printer plays that model (model or component name, any case).
  static std::unique_ptr<VirtualPrinter> ForModel(const std::string& model, int dotsPerMm = 8);

  const ModelProfile& Profile() const { return profile_; }
  void SetState(PrinterState state);
  PrinterState State() const { return state_; }

  // Bytes as they arrive on the line (scrambled while the link is scrambled).
  void Receive(const void* bytes, std::size_t count);
  void Receive(const std::string& bytes) { Receive(bytes.data(), bytes.size()); }
  // The oldest answer burst, as it goes out on the line; false when none is waiting.
  bool TakeAnswer(std::string* burst);
  std::size_t AnswersWaiting() const { return answers_.size(); }
  // Drops the answers nobody read (a purge of the port); the count of bytes dropped.
  int DiscardAnswers();
  // Whether the printer holds the line with XOFF now: a printer with XON/XOFF flow control
  // that cannot print takes nothing more until it can.
  bool HoldsLine() const;
  // The XOR key of the scrambled link; 0 on a plain one.
  std::uint8_t ScrambleKey() const { return key_; }
  // The sender is gone for good: a command cut short is reported.
  void Finish();

  int FinishedPages() const { return interpreter_->FinishedPages(); }
  Image Page(int index) const { return interpreter_->Page(index); }
  Image Unfinished() const { return interpreter_->Unfinished(); }
  Image Preview() const { return interpreter_->Preview(); }
  const Notes& PrinterNotes() const { return notes_; }

 private:
  void DecidePortMode(std::uint8_t firstByte);

  const ModelProfile& profile_;
  PrinterState state_ = PrinterState::kReady;
  Notes notes_;
  std::unique_ptr<Interpreter> interpreter_;
  std::vector<std::string> answers_;
  std::uint8_t key_ = 0;
  bool heardAnything_ = false;
};

// --- the process's virtual printer, behind the "sim:" port ---

// Chooses the model the virtual printer plays and switches on a fresh one (paper empty,
// state ready). False when no virtual printer plays that model.
bool SetModel(const std::wstring& model);
std::wstring CurrentModel();
bool HasVirtualPrinter(const std::wstring& model);
std::vector<std::string> VirtualModels();
void SetState(PrinterState state);
PrinterState CurrentState();
// The resolution of the virtual label printer (taken by the next SetModel).
void SetLabelDotsPerMm(int dotsPerMm);

// Adds the port kind "sim:" to the port layer (idempotent). "sim:" opens the virtual
// printer as it is; "sim:STATE" first puts it in that state; an unknown STATE does not open.
void RegisterSimPort();

// Everything the virtual printer printed since SetModel, as one PNG (an empty print gives
// a 1 x 1 white picture).
bool WritePreview(const std::string& path, std::string* error);
int PrintedPages();
std::vector<std::string> PrinterNotes();

// --- a virtual printer for other programs ---

struct ListenOptions {
  std::string model;       // as SetModel
  std::string listen;      // "pty", "pty:LINK" (also a symbolic link LINK to it) or "tcp:HOST:PORT"
  PrinterState state = PrinterState::kReady;
  std::string previewDir;  // each ticket or label as a PNG here; empty: none
  int dotsPerMm = 8;
};

// Runs until stop becomes true. ready is called once with the port name other programs
// open ("/dev/pts/4", "tcp:127.0.0.1:9100"); log with each note and each page written.
// Returns false with *error set when the printer could not be set up.
bool Listen(const ListenOptions& options, const std::atomic<bool>& stop,
            const std::function<void(const std::string&)>& ready,
            const std::function<void(const std::string&)>& log, std::string* error);

}  // namespace posprint::emulator
