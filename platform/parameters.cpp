#include "platform/parameters.h"

void ParameterCollection::Set(const Nx_Stringa& key, const Nx_Stringa& value) {
  items_.insert_or_assign(key, Parameter(key, value));
}

const IParameter* ParameterCollection::GetParameter(const Nx_Stringa& key) const {
  auto it = items_.find(key);
  return it == items_.end() ? nullptr : &it->second;
}

Nx_Stringa ParameterText(const IParameterCollection& parameters, const wchar_t* key) {
  if (!key) return Nx_Stringa();
  const IParameter* parameter = parameters.GetParameter(Nx_Stringa(key));
  return parameter ? parameter->GetValue() : Nx_Stringa();
}
