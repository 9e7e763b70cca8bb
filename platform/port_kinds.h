// The kinds of port that the platform itself provides, and the lookup that turns a port
// name into an open back-end. Internal to the port functions (otool.cpp).
#pragma once

#include <memory>
#include <string>

#include "platform/port_backend.h"

namespace posprint {

// Opens the back-end whose registered prefix is the longest one that begins `name`;
// null when no kind matches or the port cannot be opened.
std::unique_ptr<PortBackend> OpenPortBackend(const std::string& name);

// Built-in kinds, registered on first use of the registry.
std::unique_ptr<PortBackend> OpenTerminalPort(const std::string& nameWithBaud);  // ""
std::unique_ptr<PortBackend> OpenFilePort(const std::string& path);              // "file:"
std::unique_ptr<PortBackend> OpenTcpPort(const std::string& hostAndPort);        // "tcp:"
std::unique_ptr<PortBackend> OpenScriptedPort(const std::string& number);        // "script:"

}  // namespace posprint
