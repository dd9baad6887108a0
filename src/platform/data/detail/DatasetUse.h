#pragma once
// Internal: the register of held datasets, keyed by the workspace's identity on disk (so that
// two spellings of one folder meet) and the table's name in any case.

#include <string>

namespace tess::data {

//! Throws a Fault naming the dataset (display) and its holders when the table of the workspace at
//! workspacePath is held.
void CheckNotHeld(const std::string& workspacePath, const std::string& table, const std::string& display);

//! Whether any table of the workspace is held, for a refusal to delete the whole of it.
bool AnyHeld(const std::string& workspacePath);

} // namespace tess::data
