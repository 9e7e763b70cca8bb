#include "plugin.h"

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

#include "platform/aprinter.h"

namespace posprint::host {
namespace {

bool IsFile(const std::string& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// The directory of the running executable, or "" when the system will not say.
std::string ExecutableDirectory() {
  std::vector<char> buffer(4096);
  const ssize_t length = ::readlink("/proc/self/exe", buffer.data(), buffer.size() - 1);
  if (length <= 0) return "";
  std::string path(buffer.data(), static_cast<std::size_t>(length));
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

}  // namespace

std::string FindPluginPath() {
  if (const char* named = std::getenv(kPluginEnvironment); named && *named) return named;
  std::vector<std::string> candidates;
  const std::string here = ExecutableDirectory();
#ifdef POSPRINT_RELATIVE_PLUGIN_DIR
  if (!here.empty()) candidates.push_back(here + "/" + POSPRINT_RELATIVE_PLUGIN_DIR + "/" + kPluginFileName);
#endif
#ifdef POSPRINT_PLUGIN_DIR
  candidates.push_back(std::string(POSPRINT_PLUGIN_DIR) + "/" + kPluginFileName);
#endif
#ifdef POSPRINT_INSTALL_PLUGIN_DIR
  candidates.push_back(std::string(POSPRINT_INSTALL_PLUGIN_DIR) + "/" + kPluginFileName);
#endif
  for (const std::string& candidate : candidates) {
    if (IsFile(candidate)) return candidate;
  }
  return candidates.empty() ? kPluginFileName : candidates.back();
}

DriverPlugin::~DriverPlugin() {
  if (handle_) ::dlclose(handle_);
}

bool DriverPlugin::Load(const std::string& path, std::string* error) {
  path_ = path;
  handle_ = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_) return true;
  const char* reason = ::dlerror();
  if (error) {
    *error = "cannot load the driver plug-in " + path + ": " + (reason ? reason : "unknown reason") +
             " (set " + kPluginEnvironment + " to the path of " + kPluginFileName + ")";
  }
  return false;
}

std::unique_ptr<APrinter> DriverPlugin::Create(const char* factory, std::string* error) const {
  using Factory = APrinter* (*)();
  void* symbol = handle_ ? ::dlsym(handle_, factory) : nullptr;
  if (!symbol) {
    if (error) *error = "the driver plug-in " + path_ + " has no factory " + factory;
    return nullptr;
  }
  std::unique_ptr<APrinter> driver(reinterpret_cast<Factory>(symbol)());
  if (!driver && error) *error = std::string(factory) + " made no driver (out of memory)";
  return driver;
}

}  // namespace posprint::host
