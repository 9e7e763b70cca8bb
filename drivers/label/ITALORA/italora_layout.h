// How the ITALORA driver lays a receipt-style job out on a label: fixed-cell printer
// fonts, a cursor that moves down the label line by line, and the sizes of what the
// printer draws. Everything is in millimetres; the command layer rounds to the step.
#pragma once

#include <string_view>

#include "drivers/label/ITALORA/italora_commands.h"
#include "frame/driver_base.h"

namespace ITALORA {

// A printer font: every character takes one cell of this size at magnification 1.
struct FontCell {
  int number;
  float width;
  float height;
};
// Font 1 for NORMAL (FONTA) and the fonts the printer does not have (FONTD to FONTL),
// font 2 for SMALL (FONTB) and COMPRESS, font 3 for LARGE (FONTC).
const FontCell& FontFor(int fontCode, int style);

// The text command's font, size, style and turn for a field's attributes.
TextCommand TextStyleOf(const TextAttributes& attributes);
// The turn in degrees of a rotation code (11 to 14).
int DegreesOf(int rotation);

constexpr float kRuleThickness = 0.25f;  // a LINE element's bar
constexpr float kBarcodeGap = 1.0f;       // after a barcode or picture
constexpr float kReadableLine = 2.5f;     // a barcode's human-readable line, with its gap

class LabelLayout {
 public:
  // The cursor to the top-left corner inside the margins, normal text.
  void Reset(const Config& config);

  float Left() const { return left_; }
  float Right() const { return left_ + width_; }
  float Centre() const { return left_ + width_ / 2; }
  float Width() const { return width_; }
  // Where the last character cell of a text line ends (the cells do not always fill the
  // width exactly): right-aligned text ends here, as the right column of a double field.
  float LineEnd() const { return left_ + CharactersPerLine() * CellWidth(); }
  float Y() const { return y_; }
  void Down(float millimetres) { y_ += millimetres; }

  // The text style of the following lines.
  void SetText(const TextCommand& style) { text_ = style; }
  const TextCommand& Text() const { return text_; }
  float CellWidth() const;
  float LineHeight() const;
  float NormalLineHeight() const;
  int CharactersPerLine() const;

 private:
  float left_ = 0, width_ = 0, y_ = 0;
  TextCommand text_;
};

}  // namespace ITALORA
