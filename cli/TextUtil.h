#pragma once
// Small text helpers of the headless host.

#include <string>
#include <string_view>
#include <vector>

#include "platform/system/Text.h"

namespace tess::cli {

using tess::EqualsNoCase;
using tess::Lower;
//! The text without the given characters at either end.
std::string Trim(std::string_view text, std::string_view characters = " \t\r\n");
//! The text in double quotes, for messages that name a thing.
std::string Quoted(std::string_view text);
//! A caption as a menu shows it: "&&" is an "&", any other "&" only marks the access key.
std::string CaptionText(std::string_view caption);
//! Splits on any of the separators; empty pieces are dropped.
std::vector<std::string> SplitAny(std::string_view text, std::string_view separators);
//! The items in a sentence: "a", "a or b", "a, b or c" (with `last` as the final joining word).
std::string JoinWords(const std::vector<std::string>& items, std::string_view last = "or");

//! Edits (insertions, deletions, substitutions, swaps of neighbours) from a to b, ignoring case.
std::size_t EditDistance(std::string_view a, std::string_view b);
//! The candidate nearest to a mistyped word, if one is near enough to be what was meant: within
//! a third of the word's length in edits (at least one edit), or the only one it begins.
std::string NearestWord(std::string_view typed, const std::vector<std::string>& candidates);

} // namespace tess::cli
