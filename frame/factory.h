// The factory exports: one C function a model, taking nothing and returning a new driver
// (null when memory is short). The host owns the object and deletes it.
#pragma once

#include <new>

#include "platform/aprinter.h"

#define POSPRINT_EXPORT extern "C" __attribute__((visibility("default")))

// Defines the exported factory `name` that builds a DriverClass.
#define POSPRINT_FACTORY(name, DriverClass) \
  POSPRINT_EXPORT APrinter* name() { return new (std::nothrow) DriverClass(); }
