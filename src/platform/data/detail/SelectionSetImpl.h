#pragma once
// Internal: a set of object IDs over one table.

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/data/SelectionSet.h"

namespace tess::data {

class TableImpl;

class SelectionSetImpl final : public ISelectionSet2, public std::enable_shared_from_this<SelectionSetImpl> {
public:
    SelectionSetImpl(std::shared_ptr<TableImpl> table, std::vector<std::int32_t> ids);

    std::int32_t Count() const override { return static_cast<std::int32_t>(ids_->size()); }
    std::shared_ptr<ITable> Target() const override;
    std::shared_ptr<IEnumIDs> IDs() const override;
    void Add(std::int32_t oid) override;
    void AddList(const std::vector<std::int32_t>& oids) override;
    void RemoveList(const std::vector<std::int32_t>& oids) override;
    std::shared_ptr<ICursor> Search(const std::shared_ptr<IQueryFilter>& filter, bool recycling) override;
    std::shared_ptr<ISelectionSet> Select(const std::shared_ptr<IQueryFilter>& filter, esriSelectionType type,
                                          esriSelectionOption option,
                                          const std::shared_ptr<IWorkspace>& selectionContainer) override;
    void Combine(const std::shared_ptr<ISelectionSet>& other, esriSetOperation operation,
                 std::shared_ptr<ISelectionSet>& result) const override;
    std::shared_ptr<ICursor> Update(const std::shared_ptr<IQueryFilter>& filter, bool recycling) override;

    const std::vector<std::int32_t>& Ids() const { return *ids_; }

private:
    //! The list to change: copied first when a cursor still walks the current one.
    std::vector<std::int32_t>& Mutable();
    std::shared_ptr<TableImpl> table_;
    std::shared_ptr<std::vector<std::int32_t>> ids_; //!< ascending, no repeats
};

} // namespace tess::data
