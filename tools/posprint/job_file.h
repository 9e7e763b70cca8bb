// A print job file: any root element holding one Command element a printer command.
//
//   <Job>
//     <Command name="INIT_PRINTER"/>
//     <Command name="NEWPRINT"><LINE Char="="/></Command>
//   </Job>
//
// The name goes to the driver exactly as written. A command's job node is its first
// child element (none: an empty node). Text, comments and processing instructions
// between the commands are ignored; any other element is a mistake in the file.
#pragma once

#include <string>
#include <vector>

#include "platform/nx_xml.h"

namespace posprint::host {

struct JobCommand {
  std::string name;     // UTF-8, as written
  IXMLDOMNodePtr node;  // valid while the parser that loaded it lives
};

// Loads `path` into `parser` and lists its commands in document order; false with a
// message naming the file and the problem.
bool LoadJob(Nx_XMLParser& parser, const std::string& path, std::vector<JobCommand>& commands, std::string* error);

}  // namespace posprint::host
