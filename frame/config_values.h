// Reading numbers from configuration values. A value counts only when its whole text is
// the number: "12" is twelve, "12 mm" and "" are not numbers, so such a key keeps its
// default (unlike job attributes, which are read by their leading digits).
#pragma once

#include "platform/nx_string.h"

// An optional sign and one to nine digits, blanks around them allowed.
bool WholeNumber(const Nx_Stringa& text, int& value);
// An optional sign, digits, and at most one decimal separator ('.' or ','), blanks around
// them allowed: "57.5", "57,5", ".5" and "3" are numbers.
bool DecimalNumber(const Nx_Stringa& text, double& value);
