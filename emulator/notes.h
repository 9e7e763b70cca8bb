// What a virtual printer has to say about the bytes it got: commands it does not know,
// commands cut short, data it could not print. Kept in order, bounded in number.
#pragma once

#include <string>
#include <vector>

namespace posprint::emulator {

class Notes {
 public:
  static constexpr std::size_t kMaxNotes = 200;

  void Add(const std::string& note);
  const std::vector<std::string>& List() const { return list_; }
  // Notes not kept because the list was full.
  std::size_t Dropped() const { return dropped_; }
  void Clear() {
    list_.clear();
    dropped_ = 0;
  }

 private:
  std::vector<std::string> list_;
  std::size_t dropped_ = 0;
};

// "1B 40" style text of a few bytes, for notes.
std::string HexBytes(const unsigned char* bytes, std::size_t count);
// The byte that the two hexadecimal digits (either case) at text[at] and text[at + 1]
// write; -1 when either is not one. The caller sees that both are there.
int HexByteAt(const std::string& text, std::size_t at);

}  // namespace posprint::emulator
