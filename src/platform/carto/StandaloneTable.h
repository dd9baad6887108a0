#pragma once
// A table shown beside the layers of a map.

#include <memory>
#include <string>

#include "platform/carto/Layers.h"
#include "platform/data/DatasetUse.h"

namespace tess {

//! A new table has no data (not Valid) and an empty name.
class StandaloneTable final : public IStandaloneTable, public IDataLayer {
public:
    std::string Name() const override { return name_; }
    void Name(const std::string& name) override { name_ = name; }
    bool Valid() const override { return table_ != nullptr; }
    std::shared_ptr<ITable> Table() const override { return table_; }
    //! Also sets DataSource from the table, and names an unnamed table after it.
    void Table(const std::shared_ptr<ITable>& table) override;

    DataSourceInfo DataSource() const override { return source_; }
    void DataSource(const DataSourceInfo& source) override;
    bool Connect(const std::string& resolveFrom) override;

private:
    std::string name_;
    std::shared_ptr<ITable> table_;
    DatasetHold hold_; //!< what the table shows cannot be deleted under it
    DataSourceInfo source_;
};

} // namespace tess
