#include "parameter_input.h"

#include <sys/stat.h>

#include <fstream>

namespace posprint::host {
namespace {

// Spaces, tabs and the CR of a file written on Windows.
std::string Trim(const std::string& text) {
  const char* blanks = " \t\r\f\v";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string::npos) return "";
  const std::size_t last = text.find_last_not_of(blanks);
  return text.substr(first, last - first + 1);
}

}  // namespace

bool ReadParameterFile(const std::string& path, std::vector<ParameterPair>& pairs, std::string* error) {
  struct stat info {};
  if (::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) {
    if (error) *error = path + ": is a directory, not a parameter file";
    return false;
  }
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    if (error) *error = path + ": cannot open the parameter file";
    return false;
  }
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    const std::size_t comment = line.find('#');
    if (comment != std::string::npos) line.erase(comment);
    line = Trim(line);
    if (line.empty()) continue;
    const std::size_t equals = line.find('=');
    const std::string where = path + ":" + std::to_string(number) + ": ";
    if (equals == std::string::npos) {
      if (error) *error = where + "expected KEY=VALUE, found \"" + line + "\"";
      return false;
    }
    std::string key = Trim(line.substr(0, equals));
    if (key.empty()) {
      if (error) *error = where + "the key before '=' is empty";
      return false;
    }
    pairs.emplace_back(std::move(key), Trim(line.substr(equals + 1)));
  }
  if (file.bad()) {
    if (error) *error = path + ": cannot read the parameter file";
    return false;
  }
  return true;
}

bool ParseParameterArgument(const std::string& argument, ParameterPair& pair, std::string* error) {
  const std::size_t equals = argument.find('=');
  if (equals == std::string::npos) {
    if (error) *error = "--param " + argument + ": expected KEY=VALUE";
    return false;
  }
  if (equals == 0) {
    if (error) *error = "--param " + argument + ": the key before '=' is empty";
    return false;
  }
  pair = {argument.substr(0, equals), argument.substr(equals + 1)};
  return true;
}

}  // namespace posprint::host
