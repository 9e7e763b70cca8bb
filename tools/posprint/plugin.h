// The driver plug-in, loaded at run time like the terminal loads it: the host knows the
// drivers only by their factory exports.
//
// Where the plug-in is looked for, first found wins:
//   1. the environment variable POSPRINT_PLUGIN, a path to the .so (no fallback when set);
//   2. beside an installed posprint: PREFIX/lib/posprint/ for PREFIX/bin/posprint;
//   3. the build tree the host was built in (POSPRINT_PLUGIN_DIR);
//   4. the install prefix chosen at build time (POSPRINT_INSTALL_PLUGIN_DIR).
#pragma once

#include <memory>
#include <string>

class APrinter;

namespace posprint::host {

constexpr const char* kPluginFileName = "libposprint_drivers.so";
constexpr const char* kPluginEnvironment = "POSPRINT_PLUGIN";

// The path to load, by the order above. When nothing is found it names the last place
// tried, so the load error tells the user where the plug-in was expected.
std::string FindPluginPath();

class DriverPlugin {
 public:
  DriverPlugin() = default;
  ~DriverPlugin();
  DriverPlugin(const DriverPlugin&) = delete;
  DriverPlugin& operator=(const DriverPlugin&) = delete;

  // False with a message naming the file and the loader's reason.
  bool Load(const std::string& path, std::string* error);

  // A new driver made by the factory export `factory`; null with a message when the
  // plug-in has no such export or the factory returned nothing. The driver must be
  // destroyed before the plug-in is unloaded.
  std::unique_ptr<APrinter> Create(const char* factory, std::string* error) const;

 private:
  void* handle_ = nullptr;
  std::string path_;
};

}  // namespace posprint::host
