// The identity of each of the twelve models: what its factory export builds.
#pragma once

#include <cstddef>

struct ModelIdentity {
  const char* factory;           // the exported factory function
  const wchar_t* modelName;
  const wchar_t* componentName;  // what GetComponentName hands out
  int timeout1;                  // read time-out (ms), handed to the port at open
  int timeout2;                  // write time-out (ms)
  const char* terminator;        // line terminator
  const wchar_t* ownCommand;     // registered with code 18, or null
};

extern const ModelIdentity kModelIdentities[];
extern const std::size_t kModelCount;

// The row of a factory export name ("create_KpTMT70"), or null.
const ModelIdentity* FindIdentity(const char* factory);
