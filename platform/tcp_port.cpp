#include "platform/port_kinds.h"
namespace posprint {
std::unique_ptr<PortBackend> OpenTcpPort(const std::string&) { return nullptr; }
}  // namespace posprint
