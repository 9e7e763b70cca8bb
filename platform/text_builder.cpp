// TextBuilder: one receipt line assembled column by column. Anything that would fall
// outside the line is cut off, so a long text or a bad position never writes past it.
#include "platform/text_builder.h"

#include <cstring>

void TextBuilder::Init(int width, char fill) {
  width_ = width < 0 ? 0 : width;
  fill_ = fill;
  Reset();
}

void TextBuilder::AddItem(const char* text, int position, char align, int length) {
  if (!text || length <= 0) return;
  const int textLength = static_cast<int>(strnlen(text, static_cast<std::size_t>(length)));
  const int spare = length - textLength;
  long start = position;  // wide enough for position + length without overflow
  if (align == 'R') {
    start += spare;
  } else if (align == 'C') {
    start += spare / 2;
  }
  for (int i = 0; i < textLength; ++i) {
    const long column = start + i;
    if (column >= 0 && column < width_) line_[static_cast<std::size_t>(column)] = text[i];
  }
}

void TextBuilder::Reset() { line_.assign(static_cast<std::size_t>(width_), fill_); }
