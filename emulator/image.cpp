#include "emulator/image.h"

#include <algorithm>

namespace posprint::emulator {

Image::Image(int width, int height, std::uint8_t ink)
    : width_(std::clamp(width, 0, kMaxImageWidth)), height_(std::clamp(height, 0, kMaxImageHeight)) {
  if (width_ == 0 || height_ == 0) width_ = height_ = 0;
  dots_.assign(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), ink);
}

std::uint8_t Image::At(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return kPaper;
  return dots_[static_cast<std::size_t>(y) * width_ + x];
}

void Image::Set(int x, int y, std::uint8_t ink) {
  if (x < 0 || y < 0 || x >= width_ || y >= height_) return;
  dots_[static_cast<std::size_t>(y) * width_ + x] = ink;
}

void Image::FillRect(int x, int y, int width, int height, std::uint8_t ink) {
  const int x0 = std::max(x, 0), y0 = std::max(y, 0);
  const int x1 = std::min<long long>(static_cast<long long>(x) + width, width_);
  const int y1 = std::min<long long>(static_cast<long long>(y) + height, height_);
  for (int row = y0; row < y1; ++row)
    for (int col = x0; col < x1; ++col) dots_[static_cast<std::size_t>(row) * width_ + col] = ink;
}

void Image::DrawOver(const Image& src, int x, int y) {
  for (int row = 0; row < src.height_; ++row) {
    const int ty = y + row;
    if (ty < 0 || ty >= height_) continue;
    for (int col = 0; col < src.width_; ++col) {
      const std::uint8_t ink = src.dots_[static_cast<std::size_t>(row) * src.width_ + col];
      if (ink != kPaper) Set(x + col, ty, ink);
    }
  }
}

void Image::ResizeHeight(int height, std::uint8_t ink) {
  height = std::clamp(height, 0, kMaxImageHeight);
  if (width_ == 0) return;
  dots_.resize(static_cast<std::size_t>(width_) * height, ink);
  height_ = height;
}

Image Image::Crop(int x, int y, int width, int height) const {
  Image out(width, height);
  for (int row = 0; row < out.height_; ++row)
    for (int col = 0; col < out.width_; ++col) out.dots_[static_cast<std::size_t>(row) * out.width_ + col] = At(x + col, y + row);
  return out;
}

Image Image::Rotated180() const {
  Image out = *this;
  std::reverse(out.dots_.begin(), out.dots_.end());
  return out;
}

Image Image::RotatedClockwise() const {
  Image out(height_, width_);
  // The left column becomes the top row.
  for (int row = 0; row < height_; ++row)
    for (int col = 0; col < width_; ++col) out.Set(height_ - 1 - row, col, At(col, row));
  return out;
}

Image Image::Scaled(int sx, int sy) const {
  sx = std::max(sx, 1);
  sy = std::max(sy, 1);
  Image out(width_ * sx, height_ * sy);
  for (int row = 0; row < out.height_; ++row)
    for (int col = 0; col < out.width_; ++col)
      out.dots_[static_cast<std::size_t>(row) * out.width_ + col] = At(col / sx, row / sy);
  return out;
}

Image Image::Inverted() const {
  Image out(width_, height_);
  for (std::size_t i = 0; i < dots_.size(); ++i) out.dots_[i] = dots_[i] == kBlack ? kPaper : kBlack;
  return out;
}

int Image::Count(std::uint8_t ink, int x, int y, int width, int height) const {
  int count = 0;
  const int x0 = std::max(x, 0), y0 = std::max(y, 0);
  const int x1 = std::min<long long>(static_cast<long long>(x) + width, width_);
  const int y1 = std::min<long long>(static_cast<long long>(y) + height, height_);
  for (int row = y0; row < y1; ++row)
    for (int col = x0; col < x1; ++col) count += dots_[static_cast<std::size_t>(row) * width_ + col] == ink;
  return count;
}

}  // namespace posprint::emulator
