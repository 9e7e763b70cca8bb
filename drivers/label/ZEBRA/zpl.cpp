// ZPL II set-up, labels, fonts and the "~HS" host status query.
#include "drivers/label/ZEBRA/zpl.h"

#include <cstdarg>
#include <cstdio>
#include <limits>
#include <string>

#include "drivers/label/ZEBRA/zpl_io.h"
#include "frame/command_format.h"
#include "frame/status_query.h"
#include "platform/clock.h"
#include "platform/otool.h"

namespace ZEBRA {

using detail::Send;
using detail::SendFormatted;
using detail::State;

namespace detail {

PrinterResult Send(const PortContext& ctx, const char* bytes, std::size_t count) {
  if (count == 0) return kSuccess;
  const int wanted = static_cast<int>(count);
  return otool_WRITE(ctx.handle, bytes, wanted) >= wanted ? kSuccess : kFailure;
}

PrinterResult SendFormatted(const PortContext& ctx, const char* format, ...) {
  ZplState& state = State(ctx);
  va_list args;
  va_start(args, format);
  const int length = FormatCommandV(state.commandBuffer, sizeof state.commandBuffer, format, args);
  va_end(args);
  if (length < 0 || static_cast<std::size_t>(length) >= sizeof state.commandBuffer) return kFailure;
  return Send(ctx, state.commandBuffer, static_cast<std::size_t>(length));
}

}  // namespace detail

namespace {

// The font cell at magnification 1 and multiplier 1, in dots.
constexpr std::uint32_t kCellWidth = 13;
constexpr std::uint32_t kCellGap = 3;
constexpr std::uint32_t kCellHeight = 26;
constexpr std::uint32_t kCellLineGap = 5;

// ^CI27: the printer's code page 1252 character set, which the driver's text is in.
constexpr unsigned kCharacterSet1252 = 27;
// The printer needs a moment to store its settings (^JUS) before it takes a label.
constexpr int kSettingsStoreMs = 500;
// Input buffer size request of the set-up.
constexpr int kInputBufferRequestValue = 10;

// The characters that fit between the label home and the right edge: at least 1.
std::uint32_t CharsPerLine(const ZplState& state) {
  const std::uint32_t cell = detail::CellAdvance(state);
  if (cell == 0 || state.labelWidth <= state.originX) return 1;
  const std::uint32_t chars = (state.labelWidth - state.originX) / cell;
  return chars == 0 ? 1 : chars;
}

void PublishLineWidth(PortContext& ctx, std::uint32_t charsPerLine) {
  constexpr std::uint32_t kMax = std::numeric_limits<std::int32_t>::max();
  ctx.lineWidth = static_cast<std::int32_t>(charsPerLine > kMax ? kMax : charsPerLine);
}

void SetWidthMetrics(ZplState& state, std::uint32_t multiplier) {
  state.charWidth = kCellWidth * state.magnification * multiplier;
  state.charGap = kCellGap * state.magnification * multiplier;
}

void SetHeightMetrics(ZplState& state, std::uint32_t multiplier) {
  state.charHeight = kCellHeight * state.magnification * multiplier;
  state.lineGap = kCellLineGap * state.magnification * multiplier;
}

bool IsMultiplier(int value) { return value >= 1 && value <= 8; }

}  // namespace

PrinterResult zpl_ResetTerminator(PortContext& ctx) {
  ctx.SetTerminator("\r\n");
  return kSuccess;
}

// Sent once after the port opens. The printer stores these settings (^JUS), so no
// write result is examined here: a printer that missed one still prints with its
// stored set-up, and the status query tells whether it is there at all.
PrinterResult zpl_Init(PortContext& ctx) {
  ZplState& state = State(ctx);
  otool_IOCTL(ctx.handle, kPortSetInputBuffer, kInputBufferRequestValue);
  Send(ctx, "^XA");                                          // ^XA: start of format
  SendFormatted(ctx, "^MT%c", state.mediaType);              // ^MT: media type
  SendFormatted(ctx, "^MM%c", state.printMode);              // ^MM: tear-off or peel-off
  SendFormatted(ctx, "~TA%03d", static_cast<int>(state.tearOffAdjust));  // ~TA: tear-off position
  SendFormatted(ctx, "^PR%u,%u,%u", state.printSpeed, state.printSpeed, state.printSpeed);  // print, slew, back-feed
  SendFormatted(ctx, "^LL%u^PW%u", state.labelLength, state.labelWidth);  // ^LL label length, ^PW print width
  SendFormatted(ctx, "^LH%u,%u", state.originX, state.originY);           // ^LH: label home
  state.fontName = 'F';
  SetWidthMetrics(state, 1);
  SetHeightMetrics(state, 1);
  SendFormatted(ctx, "^CF%c,%u,%u", state.fontName, state.charHeight, state.charWidth);  // ^CF: default font
  SendFormatted(ctx, "^CI%u", kCharacterSet1252);            // ^CI: international character set
  Send(ctx, "^MFN,F");                                       // ^MF: no media feed at power-up, feed after head close
  Send(ctx, "^JUS");                                         // ^JU S: save the settings
  Send(ctx, "^XZ");                                          // ^XZ: end of format
  delay(kSettingsStoreMs);
  Send(ctx, "^XA^JA^XZ");                                    // ^JA: cancel anything left in the buffer
  state.charsPerLine = CharsPerLine(state);
  state.cursorX = 0;
  state.cursorY = 0;
  PublishLineWidth(ctx, state.charsPerLine);
  return kSuccess;
}

PrinterResult zpl_StartLabel(PortContext& ctx) {
  ZplState& state = State(ctx);
  // Clears a label that an earlier failure left open, then opens this one.
  if (Send(ctx, "^XA^JA^XZ") != kSuccess) return kFailure;
  if (Send(ctx, "^XA") != kSuccess) return kFailure;
  SendFormatted(ctx, "^LH,%u", state.originY);  // ^LH: back to the configured home (after a logo moved it)
  state.cursorX = 0;
  state.cursorY = 0;
  return kSuccess;
}

PrinterResult zpl_EndLabel(PortContext& ctx) { return Send(ctx, "^XZ"); }  // ^XZ: print the label

PrinterResult zpl_Cancel(PortContext& ctx) { return Send(ctx, "^XA^JA^XZ"); }

// --- fonts ---

PrinterResult zpl_SetFont(PortContext& ctx, int widthMultiplier, int heightMultiplier) {
  ZplState& state = State(ctx);
  state.fontName = 'F';
  if (IsMultiplier(widthMultiplier)) {
    SetWidthMetrics(state, static_cast<std::uint32_t>(widthMultiplier));
    state.charsPerLine = CharsPerLine(state);
    PublishLineWidth(ctx, state.charsPerLine);
  }
  if (IsMultiplier(heightMultiplier)) SetHeightMetrics(state, static_cast<std::uint32_t>(heightMultiplier));
  // ^CF f,h,w: default font, character height and width in dots
  return SendFormatted(ctx, "^CF%c,%u,%u", state.fontName, state.charHeight, state.charWidth);
}

// A multiplier of 0 keeps what was set before: double height keeps the current width.
PrinterResult zpl_FontNormal(PortContext& ctx) { return zpl_SetFont(ctx, 1, 1); }
PrinterResult zpl_FontDoubleHeight(PortContext& ctx) { return zpl_SetFont(ctx, 0, 2); }
PrinterResult zpl_FontDoubleWidth(PortContext& ctx) { return zpl_SetFont(ctx, 2, 0); }
PrinterResult zpl_FontTripleHeight(PortContext& ctx) { return zpl_SetFont(ctx, 0, 3); }
PrinterResult zpl_FontTripleWidth(PortContext& ctx) { return zpl_SetFont(ctx, 3, 0); }
PrinterResult zpl_FontDouble(PortContext& ctx) { return zpl_SetFont(ctx, 2, 2); }
PrinterResult zpl_FontDoubleWidthTripleHeight(PortContext& ctx) { return zpl_SetFont(ctx, 2, 3); }
PrinterResult zpl_FontCustom(PortContext& ctx, int widthMultiplier, int heightMultiplier) {
  return zpl_SetFont(ctx, widthMultiplier, heightMultiplier);
}

// --- the "~HS" host status ---

namespace {

// Port status bits of the query.
constexpr std::uint32_t kNoAnswer = kFlagNoAnswer;      // silent printer, or a failed write
constexpr std::uint32_t kMalformed = kFlagUnsolicited;  // an answer that is not a ~HS string

// The lengths of the three strings, framing included.
constexpr std::size_t kFirstStringLength = 36;
constexpr std::size_t kThirdStringLength = 10;

// ~HS answers three strings, each <STX> ... <ETX><CR><LF>. A printer may send them in one
// burst or with pauses between, so one read may carry more than one string: a string
// ends after its LF, and what follows waits for the next string.
// Each read asks for just the string expected next: a serial read that wants more than
// has come waits for the line to fall quiet, which would add that pause to every CHECK.
class AnswerReader {
 public:
  explicit AnswerReader(PortContext& ctx) : ctx_(ctx) {}

  // False when the port gave nothing; else the next string, in the command buffer.
  bool Next(std::string& answer, std::size_t expectedLength) {
    if (pending_.empty()) {
      char* buffer = State(ctx_).commandBuffer;
      const int got = otool_READ(ctx_.handle, buffer, static_cast<int>(expectedLength));
      if (got <= 0) return false;
      pending_.assign(buffer, static_cast<std::size_t>(got));
    }
    const std::size_t lf = pending_.find('\n');
    const std::size_t length = lf == std::string::npos ? pending_.size() : lf + 1;
    answer = pending_.substr(0, length);
    pending_.erase(0, length);
    return true;
  }

 private:
  PortContext& ctx_;
  std::string pending_;
};

// The framing of the first two strings: 36 bytes, STX, ETX, CR, LF.
bool IsFramedStatusString(const std::string& answer) {
  return answer.size() == kFirstStringLength && answer[0] == '\x02' && answer[33] == '\x03' && answer[34] == '\r' &&
         answer[35] == '\n';
}

// The flags of the first string, by byte position counted from STX:
// <STX>aaa,b,c,dddd,eee,f,g,h,iii,j,k,l<ETX><CR><LF>
char DecodeFirstString(const std::string& answer) {
  auto set = [&answer](std::size_t at) { return answer[at] == '1'; };
  if (set(5)) return kZplPaperOut;                           // b: paper out
  if (set(7)) return kZplPaused;                             // c: pause
  if (set(18) || set(20) || set(28)) return kZplError;       // f buffer full, g diagnostics, j corrupt RAM
  if (set(30) || set(32)) return kZplTemperature;            // k under, l over temperature
  return kZplReady;
}

// The line flag: a bit of the port state word for the port driver. The query raises it
// when the port itself is not ready and lowers it when the printer stays silent; it is
// only touched while the port runs with software flow control (XON/XOFF).
int SetLineFlag(const PortContext& ctx, bool on) {
  int word = 0;
  int result = otool_IOCTL(ctx.handle, kPortGetState, static_cast<void*>(&word));
  if (!(word & kPortStateXonXoff)) return result;
  word = on ? (word | kPortStateLineFlag) : (word & ~kPortStateLineFlag);
  return otool_IOCTL(ctx.handle, kPortSetState, word);
}

}  // namespace

char zpl_QueryStatus(PortContext& ctx) {
  ctx.statusFlags &= ~(kNoAnswer | kMalformed);
  char result = kZplReady;
  if (!PortReady(ctx)) {
    SetLineFlag(ctx, true);
    ctx.statusFlags |= kNoAnswer;
    return kZplError;
  }
  if (Send(ctx, "~HS") != kSuccess) {  // ~HS: host status return
    ctx.statusFlags |= kNoAnswer;
    return kZplError;
  }
  AnswerReader reader(ctx);
  std::string answer;
  auto silent = [&ctx]() {
    ctx.statusFlags |= kNoAnswer;
    SetLineFlag(ctx, false);
    return kZplError;
  };

  if (!reader.Next(answer, kFirstStringLength)) return silent();
  if (IsFramedStatusString(answer)) {
    result = DecodeFirstString(answer);
  } else {
    ctx.statusFlags |= kMalformed;
    result = kZplError;
  }
  // The second string (function settings, memory) only has to be framed.
  if (!reader.Next(answer, kFirstStringLength)) return silent();
  if (!IsFramedStatusString(answer)) {
    ctx.statusFlags |= kMalformed;
    result = kZplError;
  }
  // The third string (password, static RAM): <STX>xxxx,y<ETX><CR><LF>.
  if (!reader.Next(answer, kThirdStringLength)) return silent();
  // Read to its expected length, a longer string shows as ten bytes that do not end in LF.
  if (answer.size() != kThirdStringLength || answer.back() != '\n') {
    ctx.statusFlags |= kMalformed;
    result = kZplError;
  }
  return result;
}

}  // namespace ZEBRA
