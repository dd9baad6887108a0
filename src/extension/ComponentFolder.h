#pragma once
// Where the extension library lies: the program's folder of the extension,
// which holds the manual and the custom spheroids file.

#include <string>

namespace tess {

//! The manual that the Manual and Help buttons open, in the extension's folder.
inline constexpr const char* kManualFileName = "Tessarine_Manual.pdf";

//! The full path of the loaded extension library.
std::string ComponentLibraryPath();
//! The folder of the extension library, without a trailing separator.
std::string ComponentFolder();
//! The manual's full path.
std::string ManualPath();

} // namespace tess
