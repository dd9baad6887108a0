#pragma once
// Whole-file text reads and atomic writes for the document and the registry.

#include <string>

namespace tess::detail {

//! The whole file. A missing file is a Fault (fault::NotFound), an unreadable one a
//! Fault (fault::DataFailed); both name the path.
std::string ReadTextFile(const std::string& path);

//! Writes text to a temporary file beside path, flushes it to disk and renames it over
//! path, so that a reader sees the old file or the new one and never a part. On failure
//! the old file is untouched, the temporary is removed, and a Fault (fault::DataFailed)
//! names the path and the reason.
void WriteTextFileAtomically(const std::string& path, const std::string& text);

} // namespace tess::detail
