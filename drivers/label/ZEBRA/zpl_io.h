// What the ZPL command layer's files share: the state behind the context, whole-command
// writes, and the cursor arithmetic of one character cell and one line.
#pragma once

#include <cstdint>
#include <string_view>

#include "drivers/label/ZEBRA/zpl.h"

namespace ZEBRA::detail {

inline ZplState& State(const PortContext& ctx) { return ctx.ConfigAs<ZplState>(); }

// Writes the bytes in one write: 1 when the port took all of them. Nothing to write
// counts as complete and is not handed to the port.
PrinterResult Send(const PortContext& ctx, const char* bytes, std::size_t count);
inline PrinterResult Send(const PortContext& ctx, std::string_view bytes) {
  return Send(ctx, bytes.data(), bytes.size());
}
// printf into the state's command buffer, then one write. A command longer than the
// buffer is not sent: 0.
PrinterResult SendFormatted(const PortContext& ctx, const char* format, ...) __attribute__((format(printf, 2, 3)));

// The cursor advance of one character cell and of one text line, in dots.
inline std::uint32_t CellAdvance(const ZplState& state) { return state.charWidth + state.charGap; }
inline std::uint32_t LineAdvance(const ZplState& state) { return state.charHeight + state.lineGap; }
// The characters of one line as the layout uses them: never 0, never beyond what one
// text field can carry.
inline std::uint32_t LineChars(const ZplState& state) {
  std::uint32_t n = state.charsPerLine == 0 ? 1 : state.charsPerLine;
  return n > kZplMaxLineChars ? kZplMaxLineChars : n;
}

}  // namespace ZEBRA::detail
