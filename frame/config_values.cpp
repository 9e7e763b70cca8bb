#include "frame/config_values.h"

#include <string>

namespace {

// The text without blanks at either end.
std::wstring Trimmed(const Nx_Stringa& text) {
  const std::wstring& all = text.wstr();
  std::size_t first = all.find_first_not_of(L" \t");
  if (first == std::wstring::npos) return std::wstring();
  std::size_t last = all.find_last_not_of(L" \t");
  return all.substr(first, last - first + 1);
}

}  // namespace

bool WholeNumber(const Nx_Stringa& text, int& value) {
  std::wstring digits = Trimmed(text);
  bool negative = false;
  std::size_t i = 0;
  if (i < digits.size() && (digits[i] == L'+' || digits[i] == L'-')) negative = digits[i++] == L'-';
  if (i == digits.size() || digits.size() - i > 9) return false;
  int result = 0;
  for (; i < digits.size(); ++i) {
    if (digits[i] < L'0' || digits[i] > L'9') return false;
    result = result * 10 + (digits[i] - L'0');
  }
  value = negative ? -result : result;
  return true;
}

bool DecimalNumber(const Nx_Stringa& text, double& value) {
  std::wstring number = Trimmed(text);
  bool negative = false;
  std::size_t i = 0;
  if (i < number.size() && (number[i] == L'+' || number[i] == L'-')) negative = number[i++] == L'-';
  double result = 0.0, scale = 1.0;
  bool separator = false;
  int digits = 0;
  for (; i < number.size(); ++i) {
    wchar_t c = number[i];
    if (c == L'.' || c == L',') {
      if (separator) return false;
      separator = true;
    } else if (c >= L'0' && c <= L'9') {
      if (++digits > 12) return false;
      if (separator) {
        scale /= 10.0;
        result += (c - L'0') * scale;
      } else {
        result = result * 10.0 + (c - L'0');
      }
    } else {
      return false;
    }
  }
  if (digits == 0) return false;
  value = negative ? -result : result;
  return true;
}
