#include "platform/carto/StandaloneTable.h"

#include "platform/carto/detail/DataSources.h"
#include "platform/data/Dataset.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/system/Fault.h"

namespace tess {

void StandaloneTable::Table(const std::shared_ptr<ITable>& table) {
    table_ = table;
    hold_.Release();
    if (!table)
        return;
    if (auto* dataset = dynamic_cast<const IDataset*>(table.get())) {
        source_ = detail::DescribeDataset(*dataset);
        hold_ = HoldDataset(*dataset, [this] { return "the table '" + name_ + "' of the map"; });
    }
    if (name_.empty())
        name_ = table->AliasName();
}

void StandaloneTable::DataSource(const DataSourceInfo& source) {
    source_ = source;
    table_.reset();
    hold_.Release();
}

bool StandaloneTable::Connect(const std::string& resolveFrom) {
    auto workspace = detail::TryOpenWorkspace(detail::ResolveWorkspacePath(source_.workspacePath, resolveFrom));
    if (!workspace || source_.datasetName.empty())
        return false;
    try {
        table_ = workspace->OpenTable(source_.datasetName);
    } catch (const Fault&) {
        return false;
    }
    if (auto* dataset = dynamic_cast<const IDataset*>(table_.get())) {
        source_.sourceType = dataset->Category();
        hold_ = HoldDataset(*dataset, [this] { return "the table '" + name_ + "' of the map"; });
    }
    return table_ != nullptr;
}

} // namespace tess
