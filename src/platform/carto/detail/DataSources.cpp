#include "platform/carto/detail/DataSources.h"

#include <algorithm>

#include "platform/data/Dataset.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/system/Fault.h"

namespace tess::detail {

std::string ResolveWorkspacePath(const std::string& workspacePath, const std::string& baseFolder) {
    std::string path = workspacePath;
    std::replace(path.begin(), path.end(), '\\', '/');
    const bool absolute = !path.empty() && (path.front() == '/' || (path.size() > 1 && path[1] == ':'));
    if (absolute || baseFolder.empty())
        return path;
    std::string base = baseFolder;
    std::replace(base.begin(), base.end(), '\\', '/');
    while (base.size() > 1 && base.back() == '/')
        base.pop_back();
    if (path.empty() || path == ".")
        return base;
    if (path.rfind("./", 0) == 0)
        path.erase(0, 2);
    return base + "/" + path;
}

std::shared_ptr<IFeatureWorkspace> TryOpenWorkspace(const std::string& path) {
    try {
        auto factory = WorkspaceFactoryForPath(path);
        if (!factory || !factory->IsWorkspace(path))
            return nullptr;
        return std::dynamic_pointer_cast<IFeatureWorkspace>(factory->OpenFromFile(path, 0));
    } catch (const Fault&) {
        return nullptr;
    }
}

DataSourceInfo DescribeDataset(const IDataset& dataset) {
    DataSourceInfo info;
    info.datasetName = dataset.Name();
    info.sourceType = dataset.Category();
    if (auto workspace = dataset.Workspace())
        info.workspacePath = workspace->PathName();
    return info;
}

} // namespace tess::detail
