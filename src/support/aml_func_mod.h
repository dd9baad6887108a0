#pragma once
// Text and path helpers, one word-like routine per job. Paths are parsed with
// either "/" or "\" between their parts and joined with "/".
//
// Every routine traps its faults, reports them through HandleError and then
// gives back an empty result.

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tess {

class Variant;
class IField;
class IApplication;

//! Splits text at the delimiter. Text between a pair of double quotes does not split, and the
//! quotes are dropped; every part is trimmed of blanks. Text that holds only delimiters and
//! blanks leaves `parts` untouched; otherwise `parts` is replaced (one part when the delimiter
//! is absent).
void ParseString(const std::string& text, std::vector<std::string>& parts, const std::string& delimiter);

//! Without a replacement: every `find` cut out, searching again from the start after each cut.
//! With one: every `find` overwritten in place by the replacement, character for character,
//! so the text keeps its length (a longer replacement stops at the end of the text, a shorter
//! one leaves the tail of `find`). An empty `find` leaves the text as it is.
std::string Subst(const std::string& text, const std::string& find,
                  const std::optional<std::string>& replacement = std::nullopt);

//! The part of text ahead of the first marker; empty when the marker is absent.
std::string Before(const std::string& text, const std::string& marker);
//! The part of text behind the first marker; empty when the marker is absent.
std::string After(const std::string& text, const std::string& marker);

//! Cuts characters of `rightSet` off the end, then characters of `leftSet` off the start.
std::string BasicTrimAvenue(const std::string& text, const std::string& leftSet, const std::string& rightSet);

//! The value as text with "," between groups of three digits of its whole part: 1234567.89
//! gives "1,234,567.89", 123 gives "123".
std::string InsertCommas(const Variant& value);

//! True for small integer, integer, single and double fields; false for any other and for none.
bool FieldIsNumeric(const std::shared_ptr<IField>& field);

//! The path without its last "." part; a path without "." comes back whole.
std::string ClipExtension(const std::string& path);
//! ClipExtension(path), ".", extension.
std::string SetExtension(const std::string& path, const std::string& extension);
//! The folder of a path with a trailing "/": "C:\data\x.shp" gives "C:/data/".
std::string ReturnDir(const std::string& path);
//! The text behind the last separator, or the whole text when there is none.
std::string ReturnFilename(const std::string& path);

//! The path in its full, resolved form; a path that cannot be resolved comes back as given.
std::string GetFullFileString(const std::string& path);
//! True when a file (not a folder) of this name exists.
bool FileExists(const std::string& path);
//! True when a file or a folder of this name exists.
bool ExistFileDir(const std::string& path);
//! A path that is not taken: the path itself when free, else base + "_2" + extension, "_3"
//! and on. An extension is split off only when a "." lies in the last five characters.
std::string MakeUniqueFilename(const std::string& path);

//! The path of the open map document: the last of the application's templates. An unsaved
//! document gives the default template's path instead, which callers must allow for.
std::string GetMxDocPath(const std::shared_ptr<IApplication>& application);

//! The logged-on user's name.
std::string GetTheUserName();

} // namespace tess
