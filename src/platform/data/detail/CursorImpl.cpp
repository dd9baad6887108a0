#include "platform/data/detail/CursorImpl.h"

#include <algorithm>
#include <cctype>

#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/QueryFilter.h"
#include "platform/data/detail/RowImpl.h"
#include "platform/data/detail/TableImpl.h"
#include "platform/geometry/Geometry.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Clone.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"

namespace tess::data {
namespace {

constexpr const char* kSource = "tess.data";

std::vector<std::string> SplitNames(const std::string& list) {
    std::vector<std::string> names;
    std::string current;
    auto flush = [&] {
        while (!current.empty() && std::isspace(static_cast<unsigned char>(current.back())))
            current.pop_back();
        std::size_t start = 0;
        while (start < current.size() && std::isspace(static_cast<unsigned char>(current[start])))
            ++start;
        if (start < current.size())
            names.push_back(current.substr(start));
        current.clear();
    };
    for (char c : list) {
        if (c == ',')
            flush();
        else
            current += c;
    }
    flush();
    return names;
}

bool IsUnknown(const std::shared_ptr<ISpatialReference>& sr) {
    return !sr || std::dynamic_pointer_cast<IUnknownCoordinateSystem>(sr) != nullptr;
}

} // namespace

CursorImpl::CursorImpl(std::shared_ptr<TableImpl> table, CursorMode mode, const std::shared_ptr<IQueryFilter>& filter,
                       bool recycling, std::shared_ptr<const std::vector<std::int32_t>> ids)
    : table_(std::move(table)), mode_(mode), recycling_(recycling), ids_(std::move(ids)) {
    hold_ = HoldDataset(*table_, [] { return std::string("an open cursor"); });
    const auto& ws = table_->Owner();
    if (mode_ != CursorMode::Search) {
        ticket_ = ws->Acquire();
        writer_ = ws->Writer(table_->Name());
    }
    schema_ = table_->Schema();
    Prepare(filter);
    if (mode_ == CursorMode::Search)
        iter_ = ws->BorrowReader(table_->Name());
    else if (mode_ == CursorMode::Update)
        iter_ = ws->BorrowIterator(table_->Name());
    if (iter_)
        ApplyFilters(*iter_);
    fetchById_ = ids_ && where_.empty() && !hasSpatial_;
}

CursorImpl::~CursorImpl() {
    iter_.Release();
    writer_.reset();
    recycled_.reset();
    ticket_.Release();
    hold_.Release();
}

void CursorImpl::Prepare(const std::shared_ptr<IQueryFilter>& filter) {
    if (!filter)
        return;
    where_ = filter->WhereClause();
    // Update cursors write whole rows back, so they always read every field.
    if (mode_ == CursorMode::Search) {
        const std::vector<std::string> wanted = SplitNames(filter->SubFields());
        const bool all = wanted.empty() || std::find(wanted.begin(), wanted.end(), "*") != wanted.end();
        if (!all) {
            auto has = [&](const std::string& name) {
                return std::any_of(wanted.begin(), wanted.end(), [&](const std::string& w) { return NamesEqual(w, name); });
            };
            for (std::size_t i = 0; i < schema_->slots.size(); ++i) {
                const std::string name = schema_->fields->Field(static_cast<std::int32_t>(i))->Name();
                if (schema_->slots[i].kind == FieldSlot::Attribute && !has(name))
                    ignored_.push_back(name);
                if (schema_->slots[i].kind == FieldSlot::Shape && !has(name))
                    ignoreShape_ = true;
            }
        }
    }
    auto* spatial = dynamic_cast<ISpatialFilter*>(filter.get());
    if (!spatial || !spatial->Geometry() || !table_->IsFeatureClass())
        return;
    std::shared_ptr<IGeometry> shape = spatial->Geometry();
    if (!IsUnknown(shape->SpatialReference()) && !IsUnknown(schema_->reference) &&
        shape->SpatialReference() != schema_->reference && !shape->SpatialReference()->IsEqual(*schema_->reference)) {
        // The filter meets the data in the data's reference.
        shape = CloneAs<IGeometry>(*shape);
        shape->Project(schema_->reference);
    }
    hasSpatial_ = true;
    relation_ = spatial->SpatialRel();
    spatialExact_ = relation_ == esriSpatialRelIntersects || relation_ == esriSpatialRelUndefined ||
                    relation_ == esriSpatialRelRelation;
    Flatten(shape.get(), filterShape_);
    if (!shape->IsEmpty()) {
        auto box = shape->Envelope();
        filterBox_ = {box->XMin(), box->YMin(), box->XMax(), box->YMax()};
    }
    relationShape_ = shape;
    if (!spatialExact_ && relation_ != esriSpatialRelEnvelopeIntersects && relation_ != esriSpatialRelIndexIntersects &&
        !dynamic_cast<IRelationalOperator*>(shape.get()))
        throw DataFault(fault::InvalidCall, kSource,
                    "The filter shape of a search of '" + table_->Name() + "' cannot be tested for this relation");
}

void CursorImpl::ApplyFilters(OgrLayer& layer) {
    layer.SetAttributeFilter(where_);
    if (hasSpatial_) {
        if (spatialExact_ || filterShape_.Empty())
            layer.SetSpatialFilter(&filterShape_);
        else
            layer.SetSpatialFilterRect(filterBox_);
    }
    if (!ignored_.empty() || ignoreShape_)
        layer.SetIgnoredFields(ignored_, ignoreShape_);
    layer.ResetReading();
}

bool CursorImpl::PassesShapeTest() {
    if (!hasSpatial_ || spatialExact_ || relation_ == esriSpatialRelEnvelopeIntersects ||
        relation_ == esriSpatialRelIndexIntersects)
        return true;
    auto target = Unflatten(record_.geometry, schema_->shapeType, schema_->reference, nullptr);
    if (!target || target->IsEmpty())
        return false;
    auto* query = dynamic_cast<IRelationalOperator*>(relationShape_.get());
    switch (relation_) {
    case esriSpatialRelTouches:
        return query->Touches(*target);
    case esriSpatialRelOverlaps:
        return query->Overlaps(*target);
    case esriSpatialRelCrosses:
        return query->Crosses(*target);
    case esriSpatialRelWithin:
        return query->Within(*target);
    case esriSpatialRelContains:
        return query->Contains(*target);
    default:
        return query->Intersects(*target);
    }
}

bool CursorImpl::Advance() {
    if (done_ || !iter_)
        return false;
    const bool postTest = hasSpatial_ && !spatialExact_ && relation_ != esriSpatialRelEnvelopeIntersects &&
                          relation_ != esriSpatialRelIndexIntersects;
    const bool wantShape = table_->IsFeatureClass() && (!ignoreShape_ || postTest);
    for (;;) {
        if (fetchById_) {
            if (idPos_ >= ids_->size())
                return false;
            const std::int32_t fid = (*ids_)[idPos_++];
            if (!iter_->Get(fid, record_, wantShape))
                continue; // deleted since it was selected
        } else {
            if (!iter_->Next(record_, wantShape))
                return false;
            if (ids_ && !std::binary_search(ids_->begin(), ids_->end(), static_cast<std::int32_t>(record_.fid)))
                continue;
        }
        if (postTest && !PassesShapeTest())
            continue;
        return true;
    }
}

bool CursorImpl::NextFid(std::int64_t& fid) {
    if (!Advance()) {
        done_ = true;
        return false;
    }
    fid = record_.fid;
    lastFid_ = fid;
    return true;
}

std::int32_t CursorImpl::CountRemaining() {
    const bool engineCounts =
        !ids_ && (!hasSpatial_ || spatialExact_ || relation_ == esriSpatialRelEnvelopeIntersects ||
                  relation_ == esriSpatialRelIndexIntersects);
    if (engineCounts && iter_ && idPos_ == 0 && lastFid_ < 0)
        return static_cast<std::int32_t>(iter_->FeatureCount());
    std::int32_t n = 0;
    std::int64_t fid = 0;
    while (NextFid(fid))
        ++n;
    return n;
}

std::shared_ptr<IRow> CursorImpl::NextRow() { return NextImpl(); }

std::shared_ptr<RowImpl> CursorImpl::NextImpl() {
    if (mode_ == CursorMode::Insert)
        WrongMode("read rows");
    if (!Advance()) {
        done_ = true;
        if (mode_ == CursorMode::Search)
            iter_.Release(); // the handle goes back to the pool at once
        return nullptr;
    }
    std::shared_ptr<RowImpl> row;
    if (recycling_ && recycled_) {
        row = recycled_;
        if (row->SchemaOf() != schema_)
            row->Rebind(schema_);
    } else {
        row = table_->NewRow();
        row->Rebind(schema_);
        if (recycling_)
            recycled_ = row;
    }
    table_->Fill(*row, record_);
    lastFid_ = record_.fid;
    return row;
}

std::shared_ptr<IFeature> CursorImpl::NextFeature() {
    auto row = NextImpl();
    if (!row || !table_->IsFeatureClass())
        return nullptr;
    // Rows of a feature class are FeatureImpl objects: no search of the class graph needed.
    return std::static_pointer_cast<FeatureImpl>(row);
}

void CursorImpl::Write(const RowImpl& row, bool insert, std::int64_t& fid) {
    table_->ToRecord(row, writeRecord_);
    if (insert)
        fid = writer_->Create(writeRecord_);
    else
        writer_->Set(writeRecord_);
}

void CursorImpl::UpdateRow(const IRow& row) {
    if (mode_ != CursorMode::Update)
        WrongMode("update rows");
    const auto* impl = dynamic_cast<const RowImpl*>(&row);
    if (!impl || impl->Fid() < 0)
        throw DataFault(fault::InvalidCall, kSource, "The row given is not a stored row of '" + table_->Name() + "'");
    std::int64_t fid = impl->Fid();
    Write(*impl, false, fid);
}

void CursorImpl::UpdateFeature(const IFeature& feature) { UpdateRow(feature); }

void CursorImpl::DeleteRow() {
    if (mode_ != CursorMode::Update)
        WrongMode("delete rows");
    if (lastFid_ < 0)
        throw DataFault(fault::InvalidCall, kSource, "No row of '" + table_->Name() + "' has been fetched to delete");
    if (!writer_->Delete(lastFid_))
        throw DataFault(fault::NotFound, kSource,
                    "There is no row " + std::to_string(lastFid_) + " in '" + table_->Name() + "'");
}

std::int32_t CursorImpl::InsertRow(const IRowBuffer& buffer) {
    if (mode_ != CursorMode::Insert)
        WrongMode("insert rows");
    const auto* impl = dynamic_cast<const RowImpl*>(&buffer);
    if (!impl)
        throw DataFault(fault::InvalidCall, kSource, "The buffer given was not made by a table of this platform");
    std::int64_t fid = -1;
    Write(*impl, true, fid);
    return static_cast<std::int32_t>(fid);
}

std::int32_t CursorImpl::InsertFeature(const IFeatureBuffer& buffer) { return InsertRow(buffer); }

void CursorImpl::Flush() {
    if (writer_)
        writer_->Sync();
}

std::shared_ptr<IFields> CursorImpl::Fields() const { return schema_->fields; }

std::int32_t CursorImpl::FindField(const std::string& name) const { return schema_->fields->FindField(name); }

void CursorImpl::WrongMode(const char* what) const {
    const char* kind = mode_ == CursorMode::Search ? "search" : mode_ == CursorMode::Update ? "update" : "insert";
    throw DataFault(fault::InvalidCall, kSource,
                std::string("A ") + kind + " cursor of '" + table_->Name() + "' cannot " + what);
}

} // namespace tess::data
