#pragma once
// Small text helpers of every layer: names compared without regard to case (ASCII letters; other
// bytes, UTF-8 included, compare as they are) and the trailing separator of a path.

#include <string>
#include <string_view>

namespace tess {

std::string Lower(std::string_view text);
bool EqualsNoCase(std::string_view a, std::string_view b);
bool EndsWithNoCase(std::string_view text, std::string_view tail);
//! '/' or '\': paths are read with either.
inline bool IsPathSeparator(char c) { return c == '/' || c == '\\'; }
//! The path without one trailing separator.
std::string StripTrailingSeparator(std::string path);

} // namespace tess
