#pragma once
// Internal: finding a layer's data from where a document says it lives.

#include <memory>
#include <string>

#include "platform/carto/Layers.h"

namespace tess {
class IFeatureWorkspace;
class IDataset;
} // namespace tess

namespace tess::detail {

//! The workspace path with "/" separators; a relative one joined to baseFolder.
std::string ResolveWorkspacePath(const std::string& workspacePath, const std::string& baseFolder);
//! The workspace at an absolute path, or null when it cannot be opened (nothing is thrown).
std::shared_ptr<IFeatureWorkspace> TryOpenWorkspace(const std::string& path);
//! Where a stored dataset lives, and its type in the host's words.
DataSourceInfo DescribeDataset(const IDataset& dataset);

} // namespace tess::detail
