#pragma once
// The host's Format for the patterns this extension uses: numbers with digit
// placeholders ("0.00", "#,##0", "00", "0.###") and dates by the named formats
// and the "ttttt"/"ddddd" tokens.

#include <string>
#include <string_view>

#include "platform/system/Variant.h" // DateValue

namespace tess {

//! A number by a pattern of the host's kind. The pattern is one section: optional literal text,
//! the whole part ('0' forces a digit, '#' shows one only when needed, ',' anywhere in it turns
//! on thousands grouping), optionally '.' and the decimal part ('0' forced, '#' optional), then
//! literal text. Text in double quotes or behind a backslash stays literal.
//!
//! As the host does, the value is first cut to 15 significant digits, so a pattern with more
//! decimals pads with zeros instead of showing binary noise; rounding is half away from zero.
//! A '.' in the pattern always shows, also when no decimal digit follows ("0.##" of 3 is "3.").
//! A value that rounds to zero shows without a sign. An empty pattern gives the general form.
std::string Format(double value, std::string_view pattern);

//! A date by a named format ("Long Date", "Long Time", "Short Date", "Short Time",
//! "General Date", any case) or by a pattern of tokens: "ttttt" the time (%X), "ddddd" the
//! short date (%x), "dddddd" the long date; every other character stands as it is.
//! Formats come from the C library's locale functions, so a host's locale applies.
std::string Format(DateValue date, std::string_view pattern);

} // namespace tess
