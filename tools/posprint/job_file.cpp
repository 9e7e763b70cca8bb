#include "job_file.h"

#include <sys/stat.h>

namespace posprint::host {
namespace {

bool ListCommands(const Nx_XMLParser& parser, const std::string& source, std::vector<JobCommand>& commands,
                  std::string* error) {
  commands.clear();
  int position = 0;
  for (IXMLDOMNodePtr node = parser.GetFirstChild(parser.Root()); !node.IsNull(); node = parser.GetNextNode(node)) {
    ++position;
    const std::string element = parser.GetName(node).ToUtf8();
    const std::string where = source + ": element " + std::to_string(position) + " <" + element + ">: ";
    if (element != "Command") {
      if (error) *error = where + "every element of a job must be a <Command name=\"...\">";
      return false;
    }
    Nx_Stringa name;
    if (!parser.GetAttributeValue(node, L"name", name)) {
      if (error) *error = where + "the attribute name is missing";
      return false;
    }
    commands.push_back({name.ToUtf8(), parser.GetFirstChild(node)});
  }
  return true;
}

}  // namespace

bool LoadJob(Nx_XMLParser& parser, const std::string& path, std::vector<JobCommand>& commands, std::string* error) {
  struct stat info {};
  if (::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode)) {
    if (error) *error = path + ": is a directory, not a job file";
    return false;
  }
  if (!parser.LoadFile(path, error)) return false;
  return ListCommands(parser, path, commands, error);
}

}  // namespace posprint::host
