#include "platform/data/detail/SelectionSetImpl.h"

#include <algorithm>
#include <iterator>

#include "platform/data/detail/CursorImpl.h"
#include "platform/data/detail/TableImpl.h"
#include "platform/system/Fault.h"

namespace tess {
namespace data {
namespace {

constexpr const char* kSource = "tess.data";

class EnumIds final : public IEnumIDs {
public:
    explicit EnumIds(std::shared_ptr<const std::vector<std::int32_t>> ids) : ids_(std::move(ids)) {}
    void Reset() override { pos_ = 0; }
    std::int32_t Next() override { return pos_ < ids_->size() ? (*ids_)[pos_++] : -1; }

private:
    std::shared_ptr<const std::vector<std::int32_t>> ids_;
    std::size_t pos_ = 0;
};

std::vector<std::int32_t> Normalized(std::vector<std::int32_t> ids) {
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
}

} // namespace

SelectionSetImpl::SelectionSetImpl(std::shared_ptr<TableImpl> table, std::vector<std::int32_t> ids)
    : table_(std::move(table)), ids_(std::make_shared<std::vector<std::int32_t>>(Normalized(std::move(ids)))) {}

std::vector<std::int32_t>& SelectionSetImpl::Mutable() {
    if (ids_.use_count() > 1)
        ids_ = std::make_shared<std::vector<std::int32_t>>(*ids_);
    return *ids_;
}

std::shared_ptr<ITable> SelectionSetImpl::Target() const { return table_; }

std::shared_ptr<IEnumIDs> SelectionSetImpl::IDs() const { return std::make_shared<EnumIds>(ids_); }

void SelectionSetImpl::Add(std::int32_t oid) {
    auto& ids = Mutable();
    const auto it = std::lower_bound(ids.begin(), ids.end(), oid);
    if (it == ids.end() || *it != oid)
        ids.insert(it, oid);
}

void SelectionSetImpl::AddList(const std::vector<std::int32_t>& oids) {
    auto& ids = Mutable();
    std::vector<std::int32_t> merged;
    const std::vector<std::int32_t> add = Normalized(oids);
    std::set_union(ids.begin(), ids.end(), add.begin(), add.end(), std::back_inserter(merged));
    ids = std::move(merged);
}

void SelectionSetImpl::RemoveList(const std::vector<std::int32_t>& oids) {
    auto& ids = Mutable();
    std::vector<std::int32_t> kept;
    const std::vector<std::int32_t> remove = Normalized(oids);
    std::set_difference(ids.begin(), ids.end(), remove.begin(), remove.end(), std::back_inserter(kept));
    ids = std::move(kept);
}

std::shared_ptr<ICursor> SelectionSetImpl::Search(const std::shared_ptr<IQueryFilter>& filter, bool recycling) {
    return table_->OpenCursor(filter, recycling, CursorMode::Search, ids_);
}

std::shared_ptr<ICursor> SelectionSetImpl::Update(const std::shared_ptr<IQueryFilter>& filter, bool recycling) {
    return table_->OpenCursor(filter, recycling, CursorMode::Update, ids_);
}

std::shared_ptr<ISelectionSet> SelectionSetImpl::Select(const std::shared_ptr<IQueryFilter>& filter,
                                                        esriSelectionType, esriSelectionOption option,
                                                        const std::shared_ptr<IWorkspace>&) {
    std::vector<std::int32_t> ids;
    if (option != esriSelectionOptionEmpty) {
        CursorImpl cursor(table_, CursorMode::Search, filter, true, ids_);
        std::int64_t fid = -1;
        while (cursor.NextFid(fid)) {
            ids.push_back(static_cast<std::int32_t>(fid));
            if (option == esriSelectionOptionOnlyOne)
                break;
        }
    }
    return std::make_shared<SelectionSetImpl>(table_, std::move(ids));
}

void SelectionSetImpl::Combine(const std::shared_ptr<ISelectionSet>& other, esriSetOperation operation,
                               std::shared_ptr<ISelectionSet>& result) const {
    const auto* o = dynamic_cast<const SelectionSetImpl*>(other.get());
    if (!o || o->table_ != table_)
        throw DataFault(fault::InvalidCall, kSource,
                    "Only selection sets of the same table ('" + table_->Name() + "') can be combined");
    const std::vector<std::int32_t>& a = *ids_;
    const std::vector<std::int32_t>& b = *o->ids_;
    std::vector<std::int32_t> out;
    switch (operation) {
    case esriSetUnion:
        std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(out));
        break;
    case esriSetIntersection:
        std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(out));
        break;
    case esriSetDifference:
        std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(out));
        break;
    case esriSetSymDifference:
        std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(out));
        break;
    }
    result = std::make_shared<SelectionSetImpl>(table_, std::move(out));
}

} // namespace data

std::shared_ptr<ISelectionSet2> MakeSelectionSet(const std::shared_ptr<ITable>& table) {
    auto impl = std::dynamic_pointer_cast<data::TableImpl>(table);
    if (!impl)
        throw DataFault(fault::InvalidCall, "tess.data", "A selection set needs a table opened through a workspace");
    return std::make_shared<data::SelectionSetImpl>(impl, std::vector<std::int32_t>{});
}

} // namespace tess
