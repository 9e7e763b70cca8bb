// The ITALORA's command layer. The printer takes one command a text line:
//   "?" NN { "&" parameter } CR
// NN is the two-digit command number; each parameter is introduced by "&". Positions and
// sizes are millimetres from the label's top-left corner, always a multiple of the
// printer's step (one dot) and written with three decimals. A text parameter is always
// the last one and runs to the CR, so it may hold "&". The printer answers only the
// status question, with a line of the same shape that begins with "!".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "frame/bmp.h"
#include "frame/port_context.h"
#include "frame/printer_result.h"

namespace ITALORA {

// DriverConfig of the ITALORA. Millimetres are rounded to the step when configured.
struct Config {
  std::int32_t dotsPerMm = 8;  // "param_Resolution": 8, 12 or 24 dots a millimetre
  float step = 0.125f;         // one dot, in millimetres
  float labelWidth = 100.0f;   // "param_WidthLabel"
  float labelLength = 70.0f;   // "param_LenghtLabel" (or "param_LengthLabel")
  float originX = 1.0f;        // "param_Origin_X": left margin
  float originY = 1.0f;        // "param_Origin_Y": top margin
  std::uint16_t speed = 100;   // "param_Speed": millimetres a second, 25..200
  std::uint8_t darkness = 8;   // "param_Darkness": 1..15
  std::uint8_t copies = 1;     // "param_Copies": 1..99, printed at the end of each label
  char media = 'D';            // "param_PrintFoilType" TRUE: 'T' (ribbon); else 'D' (direct thermal)
};

// Command numbers.
enum Command : int {
  kCmdReset = 0,
  kCmdSetup = 1,
  kCmdLabelStart = 2,
  kCmdLabelEnd = 3,
  kCmdText = 10,
  kCmdLine = 20,
  kCmdBarcode = 30,
  kCmdRecallLogo = 40,
  kCmdStoreLogo = 41,
  kCmdStatus = 90,
};

// Builds one command line.
class CommandLine {
 public:
  explicit CommandLine(int number);
  CommandLine& Number(long value);
  // A length or position, rounded to the step, never below 0.
  CommandLine& Millimetres(float value, float step);
  // A word or the free text that ends the line; control characters become blanks, so
  // that nothing can end the line early.
  CommandLine& Text(std::string_view text);
  // The finished line, CR included.
  std::string Line() const { return line_ + '\r'; }

 private:
  std::string line_;
};

PrinterResult italora_Send(const PortContext& ctx, const CommandLine& command);

// What a text command draws: the font's cell, scaled.
struct TextCommand {
  float x = 0, y = 0;
  int degrees = 0;      // 0, 90, 180, 270: turned about the text's top-left corner
  int font = 1;         // 1, 2, 3
  int heightTimes = 1;  // 1..8
  int widthTimes = 1;   // 1..8
  int style = 0;        // bits: 1 bold, 2 underline, 4 italic, 8 white on black
};

struct BarcodeCommand {
  float x = 0, y = 0;
  char justify = 'C';      // 'L': x is the left edge, 'C': the centre, 'R': the right edge
  int degrees = 0;
  const char* symbology = "128";
  float module = 0.375f;   // narrow bar (QR: cell) in millimetres
  float height = 10.0f;    // bar height in millimetres
  int textPosition = 2;    // human-readable line: 0 none, 1 above, 2 below, 3 both
};

// The printer's name of a barcode kind and the longest data it takes.
struct Symbology {
  int barcodeType;   // BarcodeType code
  const char* name;  // the symbology parameter of ?30
  int longest;       // characters
};
// Null for a kind the printer does not print.
const Symbology* italora_FindSymbology(int barcodeType);

PrinterResult italora_Reset(const PortContext& ctx);
PrinterResult italora_Setup(const PortContext& ctx);
PrinterResult italora_LabelStart(const PortContext& ctx);
PrinterResult italora_LabelEnd(const PortContext& ctx);
PrinterResult italora_Text(const PortContext& ctx, const TextCommand& command, std::string_view text);
PrinterResult italora_Line(const PortContext& ctx, float x, float y, float length, float thickness);
PrinterResult italora_Barcode(const PortContext& ctx, const BarcodeCommand& command, std::string_view data);
// Stores a 1-bit picture in the printer's memory under name (rows top first, 1 = black).
PrinterResult italora_StoreLogo(const PortContext& ctx, std::string_view name, const std::vector<std::uint8_t>& bmp,
                                const BmpImage& image);
PrinterResult italora_RecallLogo(const PortContext& ctx, float x, float y, int degrees, std::string_view name);

// The printer's answer to the status question, "!90&p&h&r&s&e" CR.
struct StatusAnswer {
  int paperOut = 0;   // 1: no labels
  int headOpen = 0;   // 1: print head lifted
  int ribbonOut = 0;  // 1: ribbon ended (thermal transfer only)
  int paused = 0;     // 1: paused from the panel
  int error = 0;      // 0 none, 1 head too hot, any other a printer fault
};
// Parses one answer line (CR included); false when it is not exactly that shape.
bool italora_ParseStatus(std::string_view answer, StatusAnswer& status);
// The status as CheckStatus reports it.
int italora_StatusNumber(const StatusAnswer& status);
// "?90" and its answer, within kAnswerTimeoutMs; 101 when none or a malformed one came.
int italora_QueryStatus(PortContext& ctx);

constexpr int kAnswerTimeoutMs = 1000;
constexpr int kLongestAnswer = 32;

}  // namespace ITALORA
