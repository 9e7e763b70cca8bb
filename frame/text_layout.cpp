// The text field layouts over ctx.lineWidth characters: two columns, a centred line and
// a line of a repeated pattern. Each line is composed in a fixed buffer and goes out in
// one write; a line that does not fit the buffer is refused with 0 and nothing is sent.
// Widths are worked out in 64 bits so that no margin, however large or negative, can
// overflow them; negative counts of spaces send none.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "frame/output.h"
#include "frame/output_limits.h"

namespace {

class LineBuffer {
 public:
  // Each returns false when the line would grow past the buffer.
  bool Fill(std::int64_t count, char c) {
    if (count <= 0) return true;
    if (count > kOutputBufferChars - length_) return false;
    std::memset(data_ + length_, c, static_cast<std::size_t>(count));
    length_ += static_cast<int>(count);
    return true;
  }
  bool Spaces(std::int64_t count) { return Fill(count, ' '); }
  bool Text(std::string_view text) {
    if (text.size() > static_cast<std::size_t>(kOutputBufferChars - length_)) return false;
    std::memcpy(data_ + length_, text.data(), text.size());
    length_ += static_cast<int>(text.size());
    return true;
  }
  // The terminator goes on top of the text: the buffer keeps room for it.
  PrinterResult SendWithTerminator(const PortContext& ctx) {
    const int terminatorLength = std::min(ctx.TerminatorLength(), static_cast<int>(sizeof ctx.terminator));
    std::memcpy(data_ + length_, ctx.terminator, static_cast<std::size_t>(terminatorLength));
    return WriteBytes(ctx, data_, static_cast<std::size_t>(length_ + terminatorLength));
  }

 private:
  char data_[kOutputBufferChars + sizeof(PortContext::terminator)];
  int length_ = 0;
};

std::int64_t Length(std::string_view text) { return static_cast<std::int64_t>(text.size()); }

// The first `count` characters (none for a negative count).
std::string_view Cut(std::string_view text, std::int64_t count) {
  return text.substr(0, static_cast<std::size_t>(std::clamp<std::int64_t>(count, 0, Length(text))));
}

}  // namespace

PrinterResult PrintDoubleField(const PortContext& ctx, int leftMargin, int rightMargin, std::string_view leftText,
                               std::string_view rightText, char fillChar) {
  const std::int64_t width = std::int64_t{ctx.lineWidth} - leftMargin - rightMargin;
  LineBuffer line;
  bool fits = false;
  if (Length(rightText) < width) {
    // Keep at least one fill character between the columns: the left text gives way.
    if (Length(leftText) + Length(rightText) >= width) leftText = Cut(leftText, width - Length(rightText) - 1);
    const std::int64_t gap = width - Length(leftText) - Length(rightText);
    fits = line.Spaces(leftMargin) && line.Text(leftText) && line.Fill(gap, fillChar == 0 ? ' ' : fillChar) &&
           line.Text(rightText) && line.Spaces(rightMargin);
  } else {
    // The right text fills the line on its own: it is printed, the left text dropped.
    fits = line.Spaces(leftMargin) && line.Text(Cut(rightText, width));
  }
  if (!fits) return kFailure;
  return line.SendWithTerminator(ctx);
}

PrinterResult PrintCentredField(const PortContext& ctx, int sideMargin, int leftOffset, std::string_view text) {
  const std::int64_t width = std::int64_t{ctx.lineWidth} - 2 * std::int64_t{sideMargin};
  if (Length(text) >= width - 1) text = Cut(text, width - 2);
  const std::int64_t pad = (width - Length(text)) / 2;
  if (pad <= 0) return kFailure;
  LineBuffer line;
  if (!line.Spaces(leftOffset + pad) || !line.Text(text)) return kFailure;
  return line.SendWithTerminator(ctx);
}

PrinterResult PrintPatternLine(const PortContext& ctx, int sideMargin, int leftMargin, std::string_view pattern) {
  const std::int64_t width = std::int64_t{ctx.lineWidth} - 2 * std::int64_t{sideMargin};
  if (Length(pattern) > width) pattern = Cut(pattern, width - 1);
  if (pattern.empty()) return kFailure;
  LineBuffer line;
  if (!line.Spaces(leftMargin)) return kFailure;
  // The pattern repeated, the last copy cut at the width.
  for (std::int64_t done = 0; done < width;) {
    const std::string_view piece = Cut(pattern, width - done);
    if (!line.Text(piece)) return kFailure;
    done += Length(piece);
  }
  if (!line.Spaces(sideMargin)) return kFailure;
  return line.SendWithTerminator(ctx);
}
