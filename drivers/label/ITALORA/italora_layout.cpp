#include "drivers/label/ITALORA/italora_layout.h"

namespace ITALORA {
namespace {

constexpr FontCell kFonts[] = {
    {1, 1.5f, 3.0f},  // 12 x 24 dots at 8 dots/mm
    {2, 1.0f, 2.0f},  // 8 x 16
    {3, 2.0f, 4.0f},  // 16 x 32
};

}  // namespace

const FontCell& FontFor(int fontCode, int style) {
  if (fontCode == kFontSmall || style == kStyleCompress) return kFonts[1];
  if (fontCode == kFontLarge) return kFonts[2];
  return kFonts[0];
}

int DegreesOf(int rotation) {
  switch (rotation) {
    case kRotation90: return 90;
    case kRotation180: return 180;
    case kRotation270: return 270;
    default: return 0;
  }
}

TextCommand TextStyleOf(const TextAttributes& attributes) {
  TextCommand text;
  text.font = FontFor(attributes.font, attributes.style).number;
  text.heightTimes = attributes.height - kHeight1 + 1;
  text.widthTimes = attributes.width - kWidth1 + 1;
  text.degrees = DegreesOf(attributes.rotation);
  switch (attributes.style) {
    case kStyleDoubleBeat: text.style = 1; break;
    case kStyleUnderline: text.style = 2; break;
    case kStyleCursive: text.style = 4; break;
    case kStyleReverse: text.style = 8; break;
    case kStyleDoubleBeatUnderline: text.style = 1 | 2; break;
    case kStyleDoubleBeatCursive: text.style = 1 | 4; break;
    case kStyleCursiveUnderline: text.style = 2 | 4; break;
    default: text.style = 0; break;
  }
  return text;
}

void LabelLayout::Reset(const Config& config) {
  left_ = config.originX;
  width_ = config.labelWidth - 2 * config.originX;
  y_ = config.originY;
  text_ = TextCommand();
}

float LabelLayout::CellWidth() const { return kFonts[text_.font - 1].width * text_.widthTimes; }
float LabelLayout::LineHeight() const { return kFonts[text_.font - 1].height * text_.heightTimes; }
float LabelLayout::NormalLineHeight() const { return kFonts[0].height; }

int LabelLayout::CharactersPerLine() const {
  // A hair added: 98 mm of 1.5 mm cells is 65 cells, not 64.99.
  int count = static_cast<int>((width_ + 0.001f) / CellWidth());
  return count < 1 ? 1 : count;
}

}  // namespace ITALORA
