#pragma once

#include <string>
#include <string_view>

// JSON as text, so that one file alone needs the library that reads it. A text that is no JSON becomes "not JSON: " and
// itself, which equals nothing that a test expects.

/** The form that all texts that say the same have in common: without blanks, the keys sorted. */
std::string Json(std::string_view _svText);

/** The value at a place, "/data/0/line", in that form. Empty when nothing is there. */
std::string At(std::string_view _svText, const std::string& _rsPlace);

/** How many elements an array has; the largest number for what is none. */
std::size_t SizeOf(std::string_view _svText);

/** The text with another value at a place; null removes what is there. */
std::string With(std::string_view _svText, const std::string& _rsPlace, const char* _szValue);

/** A text as JSON quotes it, in ASCII. */
std::string Quoted(std::string_view _svText);
