// Characters drawn with a real monospaced face (DejaVu Sans Mono through FreeType) into
// a printer's character cell: the glyph is scaled to fill the cell's width and height
// independently, so double width and double height come out as the printer makes them.
#pragma once

#include <string>

#include "emulator/image.h"

namespace posprint::emulator {

struct GlyphStyle {
  bool bold = false;    // emphasis and double strike
  bool italic = false;
};

// The character in a cell of width x height dots, black on paper; thresholded to whole
// dots as a thermal head prints them. A face that cannot be loaded gives a blank cell
// (see FontProblem).
Image DrawGlyph(char32_t ch, int width, int height, GlyphStyle style);

// A line of characters, one byte each in Windows-1252 (plain ASCII as itself), every
// character in a cell of cellWidth x cellHeight dots, `advance` dots after the one before.
// Characters past the widest picture a printer draws are left out.
Image DrawTextLine(const std::string& text, int cellWidth, int cellHeight, int advance, GlyphStyle style = {});

// Empty when the faces loaded; else what went wrong (for the printer's notes).
std::string FontProblem();

}  // namespace posprint::emulator
