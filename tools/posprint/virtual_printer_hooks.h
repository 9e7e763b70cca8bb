// posprint run on the virtual printer: the port name "sim:" (or "sim:STATE"), and no
// --port at all, select the built-in virtual printer of the model; --preview writes what
// it printed as a PNG.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "frame/model_identity.h"
#include "parameter_input.h"

namespace posprint::host {

// Whether this posprint has the virtual printers built in.
bool HaveVirtualPrinter();

// Before the job: settles the port (an empty one becomes "sim:") and, for a sim: port,
// switches on a fresh virtual printer of the model (a label printer at the resolution
// that param_Resolution asks for). False with *error set when that cannot be done.
bool PrepareVirtualPrinter(const ModelIdentity& model, const std::vector<ParameterPair>& pairs,
                           const std::string& preview, std::string* port, std::string* error);

// After the job: the virtual printer's notes on stderr (unknown commands ...), and the
// preview written when one was asked for. False when the preview could not be written.
bool FinishVirtualPrinter(const std::string& port, const std::string& preview, std::FILE* err);

// The dots a millimetre of the ZEBRA for a param_Resolution value, as its driver reads it.
int LabelDotsPerMm(const std::vector<ParameterPair>& pairs);

}  // namespace posprint::host
