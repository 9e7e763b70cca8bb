#include "emulator/glyphs.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <tuple>

#include "platform/codepage.h"

namespace posprint::emulator {
namespace {

constexpr const char* kFaceFiles[4] = {
    POSPRINT_FONT_DIR "/DejaVuSansMono.ttf",
    POSPRINT_FONT_DIR "/DejaVuSansMono-Bold.ttf",
    POSPRINT_FONT_DIR "/DejaVuSansMono-Oblique.ttf",
    POSPRINT_FONT_DIR "/DejaVuSansMono-BoldOblique.ttf",
};
// A cell wider than this is drawn from a glyph of this size, scaled up: the sizes a
// printer uses are small, and a cache of huge bitmaps helps nobody.
constexpr int kMaxRenderedCell = 512;
// Gray levels at or above this become a printed dot.
constexpr int kInkThreshold = 110;

class Faces {
 public:
  Faces() {
    if (FT_Init_FreeType(&library_) != 0) {
      problem_ = "FreeType could not be initialised";
      library_ = nullptr;
      return;
    }
    for (int i = 0; i < 4; ++i) {
      if (FT_New_Face(library_, kFaceFiles[i], 0, &faces_[i]) != 0) {
        faces_[i] = nullptr;
        if (i == 0) problem_ = std::string("cannot load the font ") + kFaceFiles[i];
      }
    }
  }
  ~Faces() {
    for (FT_Face face : faces_)
      if (face) FT_Done_Face(face);
    if (library_) FT_Done_FreeType(library_);
  }

  Image Draw(char32_t ch, int width, int height, GlyphStyle style) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto key = std::make_tuple(ch, width, height, style.bold, style.italic);
    auto found = cache_.find(key);
    if (found != cache_.end()) return found->second;
    Image cell = Render(ch, width, height, style);
    if (cache_.size() > 20000) cache_.clear();
    cache_.emplace(key, cell);
    return cell;
  }

  std::string Problem() const { return problem_; }

 private:
  FT_Face Pick(GlyphStyle style) const {
    const int index = (style.bold ? 1 : 0) + (style.italic ? 2 : 0);
    if (faces_[index]) return faces_[index];
    return faces_[0];
  }

  Image Render(char32_t ch, int width, int height, GlyphStyle style) {
    Image cell(width, height);
    FT_Face face = Pick(style);
    if (!face || cell.Empty() || ch == U' ') return cell;
    // The face's advance and its ascender-to-descender span define the cell it fills.
    const double units = face->units_per_EM;
    const double advance = face->max_advance_width / units;
    const double span = (face->ascender - face->descender) / units;
    const double emX = width / advance;
    const double emY = height / span;
    if (FT_Set_Char_Size(face, static_cast<FT_F26Dot6>(std::lround(emX * 64)),
                         static_cast<FT_F26Dot6>(std::lround(emY * 64)), 72, 72) != 0)
      return cell;
    if (FT_Load_Char(face, ch, FT_LOAD_RENDER | FT_LOAD_TARGET_NORMAL) != 0) return cell;
    const FT_Bitmap& bitmap = face->glyph->bitmap;
    if (bitmap.pixel_mode != FT_PIXEL_MODE_GRAY) return cell;
    const int baseline = static_cast<int>(std::lround(face->ascender / units * emY));
    const int left = face->glyph->bitmap_left;
    const int top = baseline - face->glyph->bitmap_top;
    for (unsigned row = 0; row < bitmap.rows; ++row) {
      const unsigned char* line = bitmap.buffer + static_cast<long>(row) * bitmap.pitch;
      for (unsigned col = 0; col < bitmap.width; ++col)
        if (line[col] >= kInkThreshold) cell.Set(left + static_cast<int>(col), top + static_cast<int>(row), kBlack);
    }
    return cell;
  }

  FT_Library library_ = nullptr;
  FT_Face faces_[4] = {nullptr, nullptr, nullptr, nullptr};
  std::string problem_;
  std::mutex mutex_;
  std::map<std::tuple<char32_t, int, int, bool, bool>, Image> cache_;
};

Faces& TheFaces() {
  static Faces faces;
  return faces;
}

}  // namespace

Image DrawGlyph(char32_t ch, int width, int height, GlyphStyle style) {
  if (width <= 0 || height <= 0) return Image();
  if (width > kMaxRenderedCell || height > kMaxRenderedCell) {
    const int sx = (width + kMaxRenderedCell - 1) / kMaxRenderedCell;
    const int sy = (height + kMaxRenderedCell - 1) / kMaxRenderedCell;
    return TheFaces().Draw(ch, width / sx, height / sy, style).Scaled(sx, sy).Crop(0, 0, width, height);
  }
  return TheFaces().Draw(ch, width, height, style);
}

Image DrawTextLine(const std::string& text, int cellWidth, int cellHeight, int advance, GlyphStyle style) {
  const long width = static_cast<long>(text.size()) * std::max(advance, 0);
  Image line(static_cast<int>(std::min<long>(width, kMaxImageWidth)), cellHeight);
  for (std::size_t i = 0; i < text.size() && static_cast<long>(i) * advance < kMaxImageWidth; ++i) {
    const auto byte = static_cast<std::uint8_t>(text[i]);
    const char32_t ch = static_cast<char32_t>(CodepageTranslator::Decode(CodepageTranslator::kAnsi, byte));
    line.DrawOver(DrawGlyph(ch, cellWidth, cellHeight, style), static_cast<int>(i) * advance, 0);
  }
  return line;
}

std::string FontProblem() { return TheFaces().Problem(); }

}  // namespace posprint::emulator
