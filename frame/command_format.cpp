#include "frame/command_format.h"

#include <climits>
#include <cstdio>
#include <cstring>

namespace {

// Appends to the buffer what fits, and counts everything.
class Output {
 public:
  Output(char* buffer, std::size_t size) : buffer_(buffer), size_(size) {}

  void Put(char c) {
    if (buffer_ && length_ + 1 < size_) buffer_[length_] = c;
    ++length_;
  }
  void Put(const char* text, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) Put(text[i]);
  }
  void Repeat(char c, int count) {
    for (int i = 0; i < count; ++i) Put(c);
  }
  int Finish() {
    if (buffer_ && size_ > 0) buffer_[length_ < size_ ? length_ : size_ - 1] = '\0';
    return length_ > static_cast<std::size_t>(INT_MAX) ? -1 : static_cast<int>(length_);
  }

 private:
  char* buffer_;
  std::size_t size_;
  std::size_t length_ = 0;
};

// A number in decimal, right-aligned in `width` with blanks, or zeros after the sign.
void PutNumber(Output& out, unsigned long long magnitude, bool negative, int width, bool zeros) {
  char digits[24];
  int count = 0;
  do {
    digits[count++] = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  const int length = count + (negative ? 1 : 0);
  if (!zeros) out.Repeat(' ', width - length);
  if (negative) out.Put('-');
  if (zeros) out.Repeat('0', width - length);
  while (count > 0) out.Put(digits[--count]);
}

}  // namespace

int FormatCommand(char* buffer, std::size_t size, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = FormatCommandV(buffer, size, format, args);
  va_end(args);
  return length;
}

int FormatCommandV(char* buffer, std::size_t size, const char* format, va_list args) {
  va_list original;
  va_copy(original, args);
  Output out(buffer, size);
  for (const char* p = format; *p; ++p) {
    if (*p != '%') {
      out.Put(*p);
      continue;
    }
    ++p;
    bool zeros = false;
    if (*p == '0') {
      zeros = true;
      ++p;
    }
    int width = 0;
    while (*p >= '0' && *p <= '9') width = width * 10 + (*p++ - '0');
    int precision = -1;
    if (*p == '.') {
      ++p;
      if (*p == '*') {
        precision = va_arg(args, int);
        ++p;
      } else {
        precision = 0;
        while (*p >= '0' && *p <= '9') precision = precision * 10 + (*p++ - '0');
      }
    }
    const bool plain = !zeros && width == 0 && precision < 0;
    switch (*p) {
      case '%':
        if (!plain) break;
        out.Put('%');
        continue;
      case 'c':
        if (!plain) break;
        out.Put(static_cast<char>(va_arg(args, int)));
        continue;
      case 'u':
        if (precision >= 0) break;
        PutNumber(out, va_arg(args, unsigned), false, width, zeros);
        continue;
      case 'd': {
        if (precision >= 0) break;
        const long long value = va_arg(args, int);
        PutNumber(out, static_cast<unsigned long long>(value < 0 ? -value : value), value < 0, width, zeros);
        continue;
      }
      case 's': {
        if (zeros || width != 0) break;
        const char* text = va_arg(args, const char*);
        if (!text) break;  // what the C library prints for null is its own affair
        const std::size_t length = precision < 0 ? std::strlen(text)
                                                 : strnlen(text, static_cast<std::size_t>(precision));
        out.Put(text, length);
        continue;
      }
      default:
        break;
    }
    // A conversion this formatter does not do: the C library does the whole text.
    const int length = std::vsnprintf(buffer, size, format, original);
    va_end(original);
    return length;
  }
  va_end(original);
  return out.Finish();
}
