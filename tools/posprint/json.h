// The little JSON the host writes, by hand.
#pragma once

#include <string>

namespace posprint::host {

// `utf8` as a JSON string literal, quotes included: '"' and '\\' escaped, control
// characters as \n, \t ... or \u00XX. The text is expected to be valid UTF-8.
std::string JsonString(const std::string& utf8);

}  // namespace posprint::host
