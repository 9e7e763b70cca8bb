// IParameterCollection: the host's named configuration values (key -> text).
#pragma once

#include <map>

#include "platform/nx_string.h"
#include "platform/smartp.h"

class IParameter : public Nx_UseSmartp {
 public:
  virtual Nx_Stringa GetName() const = 0;
  virtual Nx_Stringa GetValue() const = 0;
};

class IParameterCollection : public Nx_UseSmartp {
 public:
  // The parameter of that key (compared as written), or null when the host has none.
  virtual const IParameter* GetParameter(const Nx_Stringa& key) const = 0;
};

class IConfigurable : public Nx_UseSmartp {
 public:
  virtual void Configure(Nx_Smartp<IParameterCollection> parameters) = 0;
};

// The concrete collection the host fills; a repeated key keeps its last value.
class ParameterCollection : public IParameterCollection {
 public:
  void Set(const Nx_Stringa& key, const Nx_Stringa& value);
  const IParameter* GetParameter(const Nx_Stringa& key) const override;
  int Count() const { return static_cast<int>(items_.size()); }

 private:
  class Parameter : public IParameter {
   public:
    Parameter(Nx_Stringa name, Nx_Stringa value) : name_(std::move(name)), value_(std::move(value)) {}
    Nx_Stringa GetName() const override { return name_; }
    Nx_Stringa GetValue() const override { return value_; }

   private:
    Nx_Stringa name_, value_;
  };
  std::map<Nx_Stringa, Parameter> items_;
};

// The value of key as text, or an empty text when absent.
Nx_Stringa ParameterText(const IParameterCollection& parameters, const wchar_t* key);
