// The table of port kinds, keyed by the prefix of the port name.
#include <map>
#include <mutex>
#include <utility>

#include "platform/port_kinds.h"

namespace posprint {
namespace {

struct Registry {
  std::mutex mutex;
  std::map<std::string, PortFactory> kinds;

  Registry() {
    kinds[""] = OpenTerminalPort;
    kinds["file:"] = OpenFilePort;
    kinds["tcp:"] = OpenTcpPort;
    kinds["script:"] = OpenScriptedPort;
  }
};

// Built on first use, so a kind registered from another library's static initialiser
// (the virtual printer's "sim:") never runs before the built-in kinds exist.
Registry& TheRegistry() {
  static Registry registry;
  return registry;
}

}  // namespace

void RegisterPortKind(const std::string& prefix, PortFactory factory) {
  Registry& registry = TheRegistry();
  std::lock_guard<std::mutex> lock(registry.mutex);
  if (factory) {
    registry.kinds[prefix] = std::move(factory);
  } else {
    registry.kinds.erase(prefix);
  }
}

std::unique_ptr<PortBackend> OpenPortBackend(const std::string& name) {
  PortFactory factory;
  std::string rest;
  {
    Registry& registry = TheRegistry();
    std::lock_guard<std::mutex> lock(registry.mutex);
    std::size_t best = 0;
    bool found = false;
    for (const auto& [prefix, kind] : registry.kinds) {
      if (name.compare(0, prefix.size(), prefix) == 0 && (!found || prefix.size() > best)) {
        best = prefix.size();
        factory = kind;
        found = true;
      }
    }
    if (!found) return nullptr;
    rest = name.substr(best);
  }
  // The factory runs outside the lock: opening a device or connecting may take a while.
  return factory(rest);
}

}  // namespace posprint
