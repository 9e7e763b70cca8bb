#include "model_names.h"

namespace posprint::host {
namespace {

char LowerAscii(wchar_t c) {
  if (c >= L'A' && c <= L'Z') c = c - L'A' + L'a';
  return static_cast<char>(c);
}

bool SameIgnoringCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (LowerAscii(static_cast<unsigned char>(a[i])) != LowerAscii(static_cast<unsigned char>(b[i]))) return false;
  }
  return true;
}

}  // namespace

std::string Narrow(const wchar_t* name) {
  std::string out;
  for (; name && *name; ++name) out += static_cast<char>(*name);
  return out;
}

const ModelIdentity* FindModel(const std::string& name) {
  for (std::size_t i = 0; i < kModelCount; ++i) {
    const ModelIdentity& identity = kModelIdentities[i];
    if (SameIgnoringCase(name, identity.factory) || SameIgnoringCase(name, Narrow(identity.modelName)) ||
        SameIgnoringCase(name, Narrow(identity.componentName)))
      return &identity;
  }
  return nullptr;
}

std::string DescribeModels() {
  std::string text;
  for (std::size_t i = 0; i < kModelCount; ++i) {
    const ModelIdentity& identity = kModelIdentities[i];
    if (i) text += "\n";
    text += "  " + Narrow(identity.modelName) + " (" + Narrow(identity.componentName) + ", " + identity.factory + ")";
  }
  return text;
}

}  // namespace posprint::host
