// TextBuilder: composes one fixed-width text line from positioned items.
#pragma once

#include <string>

class TextBuilder {
 public:
  // A line of `width` characters, each `fill`.
  void Init(int width, char fill);
  // Places text in the columns [position, position + length), cut to length;
  // align 'L' left, 'R' right, 'C' centred within the columns.
  void AddItem(const char* text, int position, char align, int length);
  const char* GetLine() const { return line_.c_str(); }
  void Reset();

 private:
  std::string line_;
  int width_ = 0;
  char fill_ = ' ';
};
