// Text layout on the label. The printer does not flow text: each piece of a line is a
// field placed at the cursor, and the layout moves the cursor in whole character cells
// (character width + gap) and whole lines (character height + line gap).
#include <algorithm>
#include <cstdio>
#include <string>

#include "drivers/label/ZEBRA/zpl.h"
#include "drivers/label/ZEBRA/zpl_io.h"
#include "frame/command_format.h"

namespace ZEBRA {

using detail::CellAdvance;
using detail::LineAdvance;
using detail::LineChars;
using detail::Send;
using detail::SendFormatted;
using detail::State;

namespace {

// "^FD" and "^FS" around the text, and the terminating NUL of the buffer.
constexpr std::size_t kFieldDataOverhead = 7;

// The text as the printer's %s would take it: up to its first NUL.
std::string_view CText(std::string_view text) { return text.substr(0, text.find('\0')); }

std::string Cut(std::string_view text, std::uint32_t length) {
  return std::string(text.substr(0, length));
}

// The left part of a two-part line. When both parts do not fit, the left one is cut so
// that the right one ends at the end of the line, with a blank as the left part's last
// character to keep the two apart.
std::string CutLeftForRight(std::string_view left, std::string_view right, std::uint32_t n) {
  std::string copy(left);
  if (left.size() + right.size() < n) return copy;
  const long blankAt = static_cast<long>(n) - static_cast<long>(right.size()) - 1;
  if (!left.empty() && !right.empty() && blankAt >= 0 && blankAt < static_cast<long>(copy.size())) {
    copy[static_cast<std::size_t>(blankAt)] = ' ';
  }
  const long keep = static_cast<long>(n) - static_cast<long>(right.size());
  copy.resize(keep <= 0 ? 0 : std::min(copy.size(), static_cast<std::size_t>(keep)));
  return copy;
}

// Cells left between the parts of a line (none when the parts fill it).
std::uint32_t CellsLeft(std::uint32_t n, std::size_t used) {
  return used >= n ? 0 : n - static_cast<std::uint32_t>(used);
}

void NextLine(ZplState& state) {
  state.cursorY += LineAdvance(state);
  state.cursorX = 0;
}

}  // namespace

int zpl_FieldOrigin(char* buffer, std::size_t size, std::uint32_t x, std::uint32_t y, std::uint8_t mode) {
  // ^FT x,y: field typeset (baseline origin); ^FO x,y: field origin (top-left corner)
  const int length = FormatCommand(buffer, size, mode == 1 ? "^FT%u,%u" : "^FO%u,%u", x, y);
  return length < 0 || static_cast<std::size_t>(length) >= size ? 0 : length;
}

PrinterResult zpl_Text(PortContext& ctx, std::string_view text) {
  ZplState& state = State(ctx);
  text = CText(text);
  // Refused whole rather than sent as an origin without its data.
  if (text.size() + kFieldDataOverhead > sizeof state.commandBuffer) return kFailure;
  char origin[32];
  const int length = zpl_FieldOrigin(origin, sizeof origin, state.cursorX, state.cursorY, 0);
  if (Send(ctx, origin, static_cast<std::size_t>(length)) != kSuccess) return kFailure;
  // ^FD data ^FS: field data, field separator
  return SendFormatted(ctx, "^FD%.*s^FS", static_cast<int>(text.size()), text.data());
}

PrinterResult zpl_TwoColumns(PortContext& ctx, std::string_view left, std::string_view right) {
  ZplState& state = State(ctx);
  const std::uint32_t n = LineChars(state);
  const std::uint32_t cell = CellAdvance(state);
  right = CText(right).substr(0, kZplMaxLineChars);
  const std::string copy = CutLeftForRight(CText(left), right, n);
  state.cursorX = 0;
  zpl_Text(ctx, copy);  // a lost left part does not stop the right one
  state.cursorX += static_cast<std::uint32_t>(copy.size()) * cell;
  PrinterResult result = kSuccess;
  if (!right.empty()) {
    state.cursorX += CellsLeft(n, copy.size() + right.size()) * cell;
    result = zpl_Text(ctx, right);
    if (result != kSuccess) return kFailure;
  }
  NextLine(state);
  return result;
}

PrinterResult zpl_Centred(PortContext& ctx, std::string_view text) {
  ZplState& state = State(ctx);
  const std::uint32_t n = LineChars(state);
  const std::string copy = Cut(CText(text), n);
  state.cursorX = ((n - static_cast<std::uint32_t>(copy.size())) / 2) * CellAdvance(state);
  PrinterResult result = kSuccess;
  if (!copy.empty()) {
    result = zpl_Text(ctx, copy);
    if (result != kSuccess) return kFailure;
  }
  NextLine(state);
  return result;
}

PrinterResult zpl_FillLine(PortContext& ctx, std::string_view pattern) {
  ZplState& state = State(ctx);
  pattern = CText(pattern);
  if (pattern.empty()) return kFailure;
  const std::uint32_t n = LineChars(state);
  // One character is repeated across the line; a longer pattern is printed as written,
  // cut at the line width.
  const std::string line = pattern.size() < 2 ? std::string(n, pattern[0]) : Cut(pattern, n);
  state.cursorX = 0;
  if (zpl_Text(ctx, line) != kSuccess) return kFailure;
  NextLine(state);
  return kSuccess;
}

PrinterResult zpl_ThreePart(PortContext& ctx, std::string_view left, std::string_view right, char fill) {
  ZplState& state = State(ctx);
  const std::uint32_t n = LineChars(state);
  const std::uint32_t cell = CellAdvance(state);
  right = CText(right).substr(0, kZplMaxLineChars);
  const std::string copy = CutLeftForRight(CText(left), right, n);
  state.cursorX = 0;
  if (zpl_Text(ctx, copy) != kSuccess) return kFailure;
  state.cursorX += static_cast<std::uint32_t>(copy.size()) * cell;
  const std::uint32_t k = CellsLeft(n, copy.size() + right.size());
  if (zpl_Text(ctx, std::string(k, fill == '\0' ? ' ' : fill)) != kSuccess) return kFailure;
  state.cursorX += k * cell;
  if (!right.empty() && zpl_Text(ctx, right) != kSuccess) return kFailure;
  NextLine(state);
  return kSuccess;
}

PrinterResult zpl_TextLine(PortContext& ctx, std::string_view text, std::uint8_t centred, std::uint8_t doubleHeight) {
  ZplState& state = State(ctx);
  if (zpl_FontNormal(ctx) != kSuccess) return kFailure;
  if (doubleHeight && zpl_FontDoubleHeight(ctx) != kSuccess) return kFailure;
  const std::uint32_t n = LineChars(state);
  const std::string copy = Cut(CText(text), n);
  state.cursorX = centred == 1 ? ((n - static_cast<std::uint32_t>(copy.size())) / 2) * CellAdvance(state) : 0;
  if (!copy.empty() && zpl_Text(ctx, copy) != kSuccess) return kFailure;
  if (doubleHeight && zpl_FontNormal(ctx) != kSuccess) return kFailure;
  // Taken after the normal font is back: a double-height line advances by one normal line.
  NextLine(state);
  return kSuccess;
}

PrinterResult zpl_LineFeed(PortContext& ctx, std::uint32_t count) {
  ZplState& state = State(ctx);
  const PrinterResult result = zpl_FontNormal(ctx);
  if (result != kSuccess) return result;
  state.cursorY += count * LineAdvance(state);
  return result;
}

}  // namespace ZEBRA
