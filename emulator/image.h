// A picture made of printer dots: what the virtual printers draw on. Each dot holds an
// ink number (paper, black, the red cut mark ...), so a preview stays exact and small.
#pragma once

#include <cstdint>
#include <vector>

namespace posprint::emulator {

enum Ink : std::uint8_t {
  kPaper = 0,       // white paper
  kBlack = 1,       // a printed dot
  kCutMark = 2,     // where the cutter went through the paper (red in the preview)
  kBackground = 3,  // outside the paper: the gap between labels, the preview's margins
};

// The largest picture a virtual printer draws: a bound against garbled size fields.
constexpr int kMaxImageWidth = 8192;
constexpr int kMaxImageHeight = 60000;

class Image {
 public:
  Image() = default;
  // Sizes are clamped to 0..kMaxImage*.
  Image(int width, int height, std::uint8_t ink = kPaper);

  int Width() const { return width_; }
  int Height() const { return height_; }
  bool Empty() const { return width_ == 0 || height_ == 0; }

  // Dots outside the picture read as paper and are not written.
  std::uint8_t At(int x, int y) const;
  void Set(int x, int y, std::uint8_t ink);
  void FillRect(int x, int y, int width, int height, std::uint8_t ink);
  // Copies the dots of src that are not paper, its top-left corner at (x, y).
  void DrawOver(const Image& src, int x, int y);
  // Grows or shrinks the picture at the bottom; new rows get `ink`.
  void ResizeHeight(int height, std::uint8_t ink = kPaper);

  Image Crop(int x, int y, int width, int height) const;
  Image Rotated180() const;
  Image RotatedClockwise() const;
  // Every dot becomes sx by sy dots.
  Image Scaled(int sx, int sy) const;
  // White on black: printed dots become paper and every other dot is printed.
  Image Inverted() const;

  // The count of dots of that ink in the rectangle.
  int Count(std::uint8_t ink, int x, int y, int width, int height) const;
  int Count(std::uint8_t ink) const { return Count(ink, 0, 0, width_, height_); }

  const std::vector<std::uint8_t>& Dots() const { return dots_; }

 private:
  int width_ = 0;
  int height_ = 0;
  std::vector<std::uint8_t> dots_;
};

}  // namespace posprint::emulator
