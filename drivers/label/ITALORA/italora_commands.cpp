#include "drivers/label/ITALORA/italora_commands.h"

#include <cstdio>

#include "frame/keywords.h"
#include "frame/output.h"
#include "platform/otool.h"

namespace ITALORA {
namespace {

// The ITALORA's status numbers beyond ready and no answer.
constexpr int kStatusLabelsOut = kStatusPaperOut;      // 102
constexpr int kStatusRibbonOut = kStatus103;           // 103
constexpr int kStatusPaused = kStatus104;              // 104
constexpr int kStatusHeadOpen = kStatusCoverOpen;      // 105
constexpr int kStatusFault = kStatusPrinterError;      // 108
constexpr int kStatusHeadTemperature = kStatus110;     // 110

// Sets the port's read time-out for one answer and puts the old one back.
class AnswerTimeout {
 public:
  explicit AnswerTimeout(int handle) : handle_(handle) {
    saved_ = otool_IOCTL(handle_, kPortGetReadTimeout, static_cast<void*>(&previous_)) >= 0;
    otool_IOCTL(handle_, kPortSetReadTimeout, kAnswerTimeoutMs);
  }
  ~AnswerTimeout() {
    if (saved_) otool_IOCTL(handle_, kPortSetReadTimeout, previous_);
  }
  AnswerTimeout(const AnswerTimeout&) = delete;
  AnswerTimeout& operator=(const AnswerTimeout&) = delete;

 private:
  int handle_;
  int previous_ = 0;
  bool saved_ = false;
};

// Reads until CR, kLongestAnswer bytes or silence. -1 when the port failed.
int ReadAnswer(int handle, std::string& answer) {
  char buffer[kLongestAnswer];
  while (answer.size() < static_cast<std::size_t>(kLongestAnswer) && answer.find('\r') == std::string::npos) {
    int count = otool_READ(handle, buffer, kLongestAnswer - static_cast<int>(answer.size()));
    if (count < 0) return -1;
    if (count == 0) break;
    answer.append(buffer, static_cast<std::size_t>(count));
  }
  return static_cast<int>(answer.size());
}

constexpr Symbology kSymbologies[] = {
    {kBarcodeCode128, "128", 90},      // Code 128, the printer picks the code sets
    {kBarcodeIndicodEan13, "E13", 13}, // EAN-13: 12 digits (check digit added) or 13
    {kBarcodeEan13, "E13", 13},
    {kBarcodeEan8, "E8", 8},           // EAN-8: 7 digits or 8
    {kBarcodeCode39, "39", 90},
    {kBarcodeItf, "I25", 90},          // interleaved 2 of 5: an even count of digits
    {kBarcodeCode128A, "128A", 90},    // Code 128 held in one code set
    {kBarcodeCode128B, "128B", 90},
    {kBarcodeCode128C, "128C", 90},
    {kBarcodeQr, "QR", 250},           // QR code, model 2, error correction M
};

}  // namespace

const Symbology* italora_FindSymbology(int barcodeType) {
  for (const Symbology& symbology : kSymbologies)
    if (symbology.barcodeType == barcodeType) return &symbology;
  return nullptr;
}

CommandLine::CommandLine(int number) {
  char head[8];
  std::snprintf(head, sizeof head, "?%02d", number);
  line_ = head;
}

CommandLine& CommandLine::Number(long value) {
  line_ += '&';
  line_ += std::to_string(value);
  return *this;
}

CommandLine& CommandLine::Millimetres(float value, float step) {
  float rounded = RoundToStep(value < 0.0f ? 0.0f : value, step);
  char number[32];
  std::snprintf(number, sizeof number, "&%.3f", static_cast<double>(rounded));
  line_ += number;
  return *this;
}

CommandLine& CommandLine::Text(std::string_view text) {
  line_ += '&';
  for (char c : text) line_ += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? ' ' : c;
  return *this;
}

PrinterResult italora_Send(const PortContext& ctx, const CommandLine& command) {
  return WriteBytes(ctx, command.Line());
}

PrinterResult italora_Reset(const PortContext& ctx) {
  // ?00: reset: an unfinished label is dropped, stored pictures are forgotten
  return italora_Send(ctx, CommandLine(kCmdReset));
}

PrinterResult italora_Setup(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  // ?01&darkness&speed&media: print settings until the next ?01 or power-off
  CommandLine command(kCmdSetup);
  command.Number(config.darkness).Number(config.speed).Text(std::string(1, config.media));
  return italora_Send(ctx, command);
}

PrinterResult italora_LabelStart(const PortContext& ctx) {
  const Config& config = ctx.ConfigAs<Config>();
  // ?02&width&length: a new, empty label of that size (an unfinished one is dropped)
  CommandLine command(kCmdLabelStart);
  command.Millimetres(config.labelWidth, config.step).Millimetres(config.labelLength, config.step);
  return italora_Send(ctx, command);
}

PrinterResult italora_LabelEnd(const PortContext& ctx) {
  // ?03&copies: print the label that many times and feed to the next one
  CommandLine command(kCmdLabelEnd);
  command.Number(ctx.ConfigAs<Config>().copies);
  return italora_Send(ctx, command);
}

PrinterResult italora_Text(const PortContext& ctx, const TextCommand& text, std::string_view characters) {
  const float step = ctx.ConfigAs<Config>().step;
  // ?10&x&y&rotation&font&height&width&style&text
  CommandLine command(kCmdText);
  command.Millimetres(text.x, step).Millimetres(text.y, step).Number(text.degrees).Number(text.font);
  command.Number(text.heightTimes).Number(text.widthTimes).Number(text.style).Text(characters);
  return italora_Send(ctx, command);
}

PrinterResult italora_Line(const PortContext& ctx, float x, float y, float length, float thickness) {
  const float step = ctx.ConfigAs<Config>().step;
  // ?20&x&y&length&thickness: a black bar from (x, y) to the right
  CommandLine command(kCmdLine);
  command.Millimetres(x, step).Millimetres(y, step).Millimetres(length, step).Millimetres(thickness, step);
  return italora_Send(ctx, command);
}

PrinterResult italora_Barcode(const PortContext& ctx, const BarcodeCommand& barcode, std::string_view data) {
  const float step = ctx.ConfigAs<Config>().step;
  // ?30&x&y&justify&rotation&symbology&module&height&text&data
  CommandLine command(kCmdBarcode);
  command.Millimetres(barcode.x, step).Millimetres(barcode.y, step).Text(std::string(1, barcode.justify));
  command.Number(barcode.degrees).Text(barcode.symbology).Millimetres(barcode.module, step);
  command.Millimetres(barcode.height, step).Number(barcode.textPosition).Text(data);
  return italora_Send(ctx, command);
}

PrinterResult italora_StoreLogo(const PortContext& ctx, std::string_view name, const std::vector<std::uint8_t>& bmp,
                                const BmpImage& image) {
  static const char kHexDigits[] = "0123456789ABCDEF";
  const int rowBytes = static_cast<int>(image.rowBytes);  // (width + 7) / 8
  const unsigned lastBits = image.width % 8 == 0 ? 0xFF : (0xFF00u >> (image.width % 8)) & 0xFF;
  // ?41&name&width&height&rows: width x height dots, rows top first, each row in whole
  // bytes written as two hexadecimal digits, the leftmost dot in the high bit, 1 black
  CommandLine command(kCmdStoreLogo);
  command.Text(name).Number(image.width).Number(image.height);
  std::string rows;
  rows.reserve(static_cast<std::size_t>(rowBytes) * 2 * static_cast<std::size_t>(image.height));
  for (int row = image.height - 1; row >= 0; --row) {  // the file stores the bottom row first
    const std::uint8_t* pixels = BmpRow(bmp, image, row);
    for (int i = 0; i < rowBytes; ++i) {
      unsigned dots = ~pixels[i] & 0xFF;  // a 0 bit in the file is black
      if (i == rowBytes - 1) dots &= lastBits;
      rows += kHexDigits[dots >> 4];
      rows += kHexDigits[dots & 0x0F];
    }
  }
  command.Text(rows);
  return italora_Send(ctx, command);
}

PrinterResult italora_RecallLogo(const PortContext& ctx, float x, float y, int degrees, std::string_view name) {
  const float step = ctx.ConfigAs<Config>().step;
  // ?40&x&y&rotation&name: a stored picture with its top-left corner at (x, y)
  CommandLine command(kCmdRecallLogo);
  command.Millimetres(x, step).Millimetres(y, step).Number(degrees).Text(name);
  return italora_Send(ctx, command);
}

bool italora_ParseStatus(std::string_view answer, StatusAnswer& status) {
  constexpr std::string_view kHead = "!90";
  if (answer.substr(0, kHead.size()) != kHead || answer.empty() || answer.back() != '\r') return false;
  int* fields[] = {&status.paperOut, &status.headOpen, &status.ribbonOut, &status.paused, &status.error};
  std::size_t at = kHead.size();
  for (int* field : fields) {
    if (at >= answer.size() || answer[at] != '&') return false;
    ++at;
    int digits = 0, value = 0;
    for (; at < answer.size() && answer[at] >= '0' && answer[at] <= '9'; ++at, ++digits) {
      if (digits == 3) return false;
      value = value * 10 + (answer[at] - '0');
    }
    if (digits == 0) return false;
    *field = value;
  }
  return at == answer.size() - 1;  // nothing between the last field and the CR
}

int italora_StatusNumber(const StatusAnswer& status) {
  if (status.headOpen) return kStatusHeadOpen;
  if (status.paperOut) return kStatusLabelsOut;
  if (status.ribbonOut) return kStatusRibbonOut;
  if (status.error == 1) return kStatusHeadTemperature;
  if (status.error != 0) return kStatusFault;
  if (status.paused) return kStatusPaused;
  return kStatusReady;
}

int italora_QueryStatus(PortContext& ctx) {
  ctx.statusFlags &= ~(kFlagPortError | kFlagNoAnswer | kFlagUnsolicited | kFlagRequestSent);
  AnswerTimeout timeout(ctx.handle);
  otool_IOCTL(ctx.handle, kPortPurge, 0);  // a late answer to an earlier question is no answer to this one
  // ?90: status question
  if (italora_Send(ctx, CommandLine(kCmdStatus)) != kSuccess) {
    ctx.statusFlags |= kFlagNoAnswer;
    return kStatusNoAnswer;
  }
  ctx.statusFlags |= kFlagRequestSent;
  std::string answer;
  int count = ReadAnswer(ctx.handle, answer);
  if (count <= 0) {
    ctx.statusFlags |= count < 0 ? kFlagPortError : kFlagNoAnswer;
    return kStatusNoAnswer;
  }
  StatusAnswer status;
  if (!italora_ParseStatus(answer, status)) {
    ctx.statusFlags |= kFlagUnsolicited;  // an answer of the wrong shape
    return kStatusNoAnswer;
  }
  return italora_StatusNumber(status);
}

}  // namespace ITALORA
