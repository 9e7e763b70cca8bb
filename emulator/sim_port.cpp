// The process's virtual printer and the "sim:" port kind that reaches it.
#include <algorithm>
#include <mutex>

#include "emulator/png_file.h"
#include "emulator/virtual_printer.h"
#include "platform/nx_string.h"
#include "platform/port_backend.h"

namespace posprint::emulator {
namespace {

struct Device {
  std::mutex mutex;
  std::string model = "TMT70";
  int dotsPerMm = 8;
  std::shared_ptr<VirtualPrinter> printer;
};

Device& TheDevice() {
  static Device device;
  return device;
}

// Under the device's lock.
VirtualPrinter& Printer(Device& device) {
  if (!device.printer) device.printer = VirtualPrinter::ForModel(device.model, device.dotsPerMm);
  return *device.printer;
}

// The line between a driver and the virtual printer. Each read hands over at most one
// answer burst, or what is left of it.
class SimBackend : public PortBackend {
 public:
  int Read(char* buffer, int count, int timeoutMs) override {
    (void)timeoutMs;  // the virtual printer answers at once or never
    if (closed_ || count <= 0) return closed_ ? -1 : 0;
    if (rest_.empty()) {
      Device& device = TheDevice();
      std::lock_guard<std::mutex> lock(device.mutex);
      if (!Printer(device).TakeAnswer(&rest_)) return 0;
    }
    const int taken = std::min(count, static_cast<int>(rest_.size()));
    std::copy(rest_.begin(), rest_.begin() + taken, buffer);
    rest_.erase(0, static_cast<std::size_t>(taken));
    return taken;
  }

  int Write(const char* buffer, int count, int timeoutMs) override {
    (void)timeoutMs;
    if (closed_) return -1;
    if (count <= 0) return 0;
    Device& device = TheDevice();
    std::lock_guard<std::mutex> lock(device.mutex);
    // A printer holding the line with XOFF takes nothing: the write times out at once.
    if (Printer(device).HoldsLine()) return 0;
    Printer(device).Receive(buffer, static_cast<std::size_t>(count));
    return count;
  }

  int Purge() override {
    if (closed_) return -1;
    Device& device = TheDevice();
    std::lock_guard<std::mutex> lock(device.mutex);
    const int dropped = static_cast<int>(rest_.size()) + Printer(device).DiscardAnswers();
    rest_.clear();
    return dropped;
  }

  bool Close() override {
    closed_ = true;
    return true;
  }

 private:
  std::string rest_;
  bool closed_ = false;
};

std::unique_ptr<PortBackend> OpenSimPort(const std::string& rest) {
  Device& device = TheDevice();
  std::lock_guard<std::mutex> lock(device.mutex);
  if (!rest.empty()) {
    PrinterState state;
    if (!ParseState(rest, &state)) return nullptr;
    Printer(device).SetState(state);
  }
  Printer(device);
  if (!device.printer) return nullptr;
  return std::make_unique<SimBackend>();
}

}  // namespace

bool SetModel(const std::wstring& model) {
  const std::string name = Nx_Stringa(model.c_str()).ToUtf8();
  const ModelProfile* profile = FindProfile(name);
  if (!profile) return false;
  Device& device = TheDevice();
  std::lock_guard<std::mutex> lock(device.mutex);
  device.model = profile->name;
  device.printer = std::make_shared<VirtualPrinter>(*profile, device.dotsPerMm);
  return true;
}

std::wstring CurrentModel() {
  Device& device = TheDevice();
  std::lock_guard<std::mutex> lock(device.mutex);
  return Nx_Stringa::FromUtf8(device.model).c_str();
}

bool HasVirtualPrinter(const std::wstring& model) {
  return FindProfile(Nx_Stringa(model.c_str()).ToUtf8()) != nullptr;
}

std::vector<std::string> VirtualModels() { return ProfileNames(); }

void SetState(PrinterState state) {
  Device& device = TheDevice();
  std::lock_guard<std::mutex> lock(device.mutex);
  Printer(device).SetState(state);
}

PrinterState CurrentState() {
  Device& device = TheDevice();
  std::lock_guard<std::mutex> lock(device.mutex);
  return Printer(device).State();
}

void SetLabelDotsPerMm(int dotsPerMm) {
  Device& device = TheDevice();
  std::lock_guard<std::mutex> lock(device.mutex);
  device.dotsPerMm = dotsPerMm;
}

void RegisterSimPort() { RegisterPortKind("sim:", OpenSimPort); }

bool WritePreview(const std::string& path, std::string* error) {
  Image preview;
  {
    Device& device = TheDevice();
    std::lock_guard<std::mutex> lock(device.mutex);
    preview = Printer(device).Preview();
  }
  return WritePng(preview, path, error);
}

int PrintedPages() {
  Device& device = TheDevice();
  std::lock_guard<std::mutex> lock(device.mutex);
  return Printer(device).FinishedPages();
}

std::vector<std::string> PrinterNotes() {
  Device& device = TheDevice();
  std::lock_guard<std::mutex> lock(device.mutex);
  const Notes& notes = Printer(device).PrinterNotes();
  std::vector<std::string> list = notes.List();
  if (notes.Dropped() > 0) list.push_back("... and " + std::to_string(notes.Dropped()) + " more");
  return list;
}

}  // namespace posprint::emulator
