#pragma once
// Internal: search, update and insert cursors, over a whole table or over the
// object IDs of a selection set.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/data/Cursor.h"
#include "platform/data/DatasetUse.h"
#include "platform/data/detail/OgrAccess.h"
#include "platform/data/detail/WorkspaceImpl.h"
#include "platform/geometry/GeometryTypes.h"

namespace tess {
class IQueryFilter;
class IGeometry;
}

namespace tess::data {

class TableImpl;
class RowImpl;
struct ClassSchema;

enum class CursorMode : std::uint8_t { Search, Update, Insert };

class CursorImpl final : public ICursor, public IFeatureCursor {
public:
    //! ids: when set, only rows with these object IDs (ascending) pass.
    CursorImpl(std::shared_ptr<TableImpl> table, CursorMode mode, const std::shared_ptr<IQueryFilter>& filter,
               bool recycling, std::shared_ptr<const std::vector<std::int32_t>> ids);
    ~CursorImpl() override;

    std::shared_ptr<IFields> Fields() const override;
    std::int32_t FindField(const std::string& name) const override;
    void Flush() override;

    std::shared_ptr<IRow> NextRow() override;
    void UpdateRow(const IRow& row) override;
    void DeleteRow() override;
    std::int32_t InsertRow(const IRowBuffer& buffer) override;

    std::shared_ptr<IFeature> NextFeature() override;
    void UpdateFeature(const IFeature& feature) override;
    void DeleteFeature() override { DeleteRow(); }
    std::int32_t InsertFeature(const IFeatureBuffer& buffer) override;

    //! Counts the rows left (the engine counts when it can answer the filter alone).
    std::int32_t CountRemaining();
    //! Moves to the next row without making a row object; false at the end.
    bool NextFid(std::int64_t& fid);

private:
    std::shared_ptr<RowImpl> NextImpl();
    bool Advance();
    bool PassesShapeTest();
    void Write(const RowImpl& row, bool insert, std::int64_t& fid);
    void Prepare(const std::shared_ptr<IQueryFilter>& filter);
    void ApplyFilters(OgrLayer& layer);
    [[noreturn]] void WrongMode(const char* what) const;

    std::shared_ptr<TableImpl> table_;
    std::shared_ptr<const ClassSchema> schema_;
    CursorMode mode_;
    bool recycling_;
    std::shared_ptr<const std::vector<std::int32_t>> ids_;
    bool fetchById_ = false;
    std::size_t idPos_ = 0;

    // filter
    std::string where_;
    std::vector<std::string> ignored_;
    bool ignoreShape_ = false;
    bool hasSpatial_ = false;
    bool spatialExact_ = false; //!< the engine answers the relation itself (intersects)
    esriSpatialRelEnum relation_ = esriSpatialRelIntersects;
    FlatGeometry filterShape_;
    std::shared_ptr<IGeometry> relationShape_;
    WKSEnvelope filterBox_{0.0, 0.0, 0.0, 0.0};

    DatasetHold hold_; //!< the table cannot be deleted under the cursor
    WriteTicket ticket_;
    std::shared_ptr<OgrLayer> writer_;
    LayerLease iter_;
    OgrRecord record_;
    OgrRecord writeRecord_;
    std::shared_ptr<RowImpl> recycled_;
    std::int64_t lastFid_ = -1;
    bool done_ = false;
};

} // namespace tess::data
