// Which driver a --model names. A person may write the factory export
// (create_KpTMT70), the model name (TMT70) or the component name (KpTMT70), in any case.
#pragma once

#include <string>

#include "frame/model_identity.h"

namespace posprint::host {

// The identity whose factory, model or component name equals `name` ignoring ASCII case;
// null when none does.
const ModelIdentity* FindModel(const std::string& name);

// The models one a line as a person reads them: "  TMT70 (KpTMT70, create_KpTMT70)",
// no newline after the last.
std::string DescribeModels();

// An identity's wide name as UTF-8 (the names are plain ASCII).
std::string Narrow(const wchar_t* name);

}  // namespace posprint::host
