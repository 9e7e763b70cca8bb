// printf-style formatting of printer commands, fast for the few conversions that command
// layers use: %c, %d and %u (with a width and the 0 flag, as in "%03d" and "%04u"), %s
// (with a precision, as in "%.*s"), and %%. Any other conversion is handed to vsnprintf,
// so the result is always the one vsnprintf gives: the length the whole text needs, the
// text cut to size - 1 characters and NUL-terminated.
//
// A label of ten fields formats some thirty commands; the C library's printf machinery
// (locale, wide streams, every conversion) costs more than all the rest of the label.
#pragma once

#include <cstdarg>
#include <cstddef>

int FormatCommand(char* buffer, std::size_t size, const char* format, ...) __attribute__((format(printf, 3, 4)));
int FormatCommandV(char* buffer, std::size_t size, const char* format, va_list args);
