// What the fuzz harnesses share: the models whose factories are linked in, a driver
// session on a scripted port, and a clock that never waits (the drivers' pauses for
// presenters, cutters and settings pass at once, so every input runs at full speed).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/model_identity.h"
#include "platform/aprinter.h"
#include "platform/scripted_port.h"

namespace posprint::fuzz {

using Factory = APrinter* (*)();

struct LinkedModel {
  const ModelIdentity* identity;
  Factory factory;
};

// The models whose factory export is in this program, in the order of kModelIdentities.
const std::vector<LinkedModel>& LinkedModels();

// Installs the fake clock and a private logo directory; call from LLVMFuzzerInitialize.
void InitialiseHarness();
// The directory that stands for the terminal's logo folder during the run.
const std::string& HarnessLogoDirectory();

// Consumes the fuzz input from the front.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool Empty() const { return size_ == 0; }
  std::size_t Size() const { return size_; }
  std::uint8_t Byte() {  // 0 when the input is used up
    if (size_ == 0) return 0;
    --size_;
    return *data_++;
  }
  std::string Bytes(std::size_t count) {
    count = count < size_ ? count : size_;
    std::string bytes(reinterpret_cast<const char*>(data_), count);
    data_ += count;
    size_ -= count;
    return bytes;
  }
  std::string Rest() { return Bytes(size_); }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

// One driver on its own scripted port, configured with `parameters`.
class Session {
 public:
  Session(const LinkedModel& model, const std::vector<std::pair<std::wstring, std::wstring>>& parameters);
  ~Session();
  // A command with the element `element` (null node when empty or not parsed).
  bool Command(const char* name, const std::string& elementXml = "");
  // A command whose element is a node of a parsed document.
  bool Command(const char* name, Nx_XMLParser& parser, IXMLDOMNodePtr node);
  APrinter& Driver() { return *driver_; }
  ScriptedPort& Port() { return port_; }

 private:
  ScriptedPort port_;
  std::unique_ptr<APrinter> driver_;
};

}  // namespace posprint::fuzz
