// The driver's configuration as the user gives it: a parameter file and --param pairs.
//
// Parameter file: one KEY=VALUE a line. '#' starts a comment that runs to the end of the
// line (wherever it stands); blank lines are skipped; blanks around the key and the
// value are dropped (so "param_CutType = val_Partial  # cut" works). The value is
// otherwise kept as written: no case change, and '=' after the first one belongs to it.
// --param KEY=VALUE: taken exactly as written, blanks included.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace posprint::host {

using ParameterPair = std::pair<std::string, std::string>;

// Reads a parameter file; false with "FILE: reason" or "FILE:LINE: reason".
bool ReadParameterFile(const std::string& path, std::vector<ParameterPair>& pairs, std::string* error);

// Splits one --param argument at its first '='; false with a reason for a missing '=' or
// an empty key.
bool ParseParameterArgument(const std::string& argument, ParameterPair& pair, std::string* error);

}  // namespace posprint::host
