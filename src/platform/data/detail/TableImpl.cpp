#include "platform/data/detail/TableImpl.h"

#include <algorithm>
#include <filesystem>

#include "platform/data/Field.h"
#include "platform/data/detail/CursorImpl.h"
#include "platform/data/detail/FieldRules.h"
#include "platform/data/detail/RowImpl.h"
#include "platform/data/detail/SelectionSetImpl.h"
#include "platform/data/detail/WorkspaceImpl.h"
#include "platform/geometry/Envelope.h"
#include "platform/geometry/Geometry.h"
#include "platform/srs/PrjFile.h"
#include "platform/srs/SpatialReference.h"
#include "platform/srs/SpatialReferenceEnvironment.h"
#include "platform/srs/Transform.h"
#include "platform/system/Clone.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"

namespace tess::data {
namespace {

constexpr const char* kSource = "tess.data";
// Datafile Format of uncompressed file geodatabase tables, the only ones this platform reads.
constexpr std::int32_t kUncompressedDatafile = 0;

bool IsUnknown(const std::shared_ptr<ISpatialReference>& sr) {
    return !sr || std::dynamic_pointer_cast<IUnknownCoordinateSystem>(sr) != nullptr;
}

// Fields the storage keeps up to date itself.
bool MaintainedByStorage(const std::string& name, OgrDriver driver) {
    return driver == OgrDriver::FileGDB && (NamesEqual(name, "Shape_Length") || NamesEqual(name, "Shape_Area"));
}

const char* KindName(FlatKind kind) {
    switch (kind) {
    case FlatKind::Point:
        return "point";
    case FlatKind::Multipoint:
        return "multipoint";
    case FlatKind::Polyline:
        return "polyline";
    case FlatKind::Polygon:
        return "polygon";
    case FlatKind::Null:
        break;
    }
    return "other";
}

} // namespace

TableImpl::TableImpl(std::shared_ptr<WorkspaceImpl> ws, std::string name, bool featureClass)
    : ws_(std::move(ws)), name_(std::move(name)), featureClass_(featureClass) {
    featureDataset_ = ws_->FeatureDatasetOf(name_);
}

TableImpl::~TableImpl() = default;

std::shared_ptr<const ClassSchema> TableImpl::Schema() const {
    if (!schema_ || schema_->generation != ws_->Generation()) {
        LayerLease lease = ws_->BorrowReader(name_);
        schema_ = LoadSchema(*lease);
    }
    return schema_;
}

std::shared_ptr<const ClassSchema> TableImpl::LoadSchema(OgrLayer& layer) const {
    auto s = std::make_shared<ClassSchema>();
    auto fields = std::make_shared<tess::Fields>();
    const OgrDriver driver = ws_->Driver();

    s->oidName = driver == OgrDriver::Shapefile ? (featureClass_ ? "FID" : "OID") : layer.FidColumn();
    if (s->oidName.empty())
        s->oidName = driver == OgrDriver::GeoPackage ? "fid" : "OBJECTID";
    auto oid = std::make_shared<Field>();
    oid->Name(s->oidName);
    oid->Type(esriFieldTypeOID);
    oid->Length(HostLengthOf(esriFieldTypeOID));
    oid->Editable(false);
    oid->IsNullable(false);
    oid->Required(true);
    fields->AddField(oid);
    s->slots.push_back({FieldSlot::Oid, -1, esriFieldTypeOID, false});
    s->oidIndex = 0;

    if (featureClass_) {
        s->shapeName = driver == OgrDriver::Shapefile ? "Shape" : layer.GeometryColumn();
        if (s->shapeName.empty())
            s->shapeName = "Shape";
        s->shapeType = GeometryTypeOf(layer.GeometryKind());
        if (driver == OgrDriver::Shapefile) {
            const std::string file = ws_->ShapefilePath(name_);
            s->reference = ReadPrjFile(std::filesystem::path(file).replace_extension(".prj").string());
        } else {
            const std::string wkt = layer.SpatialReferenceWkt();
            s->reference = wkt.empty() ? nullptr : FromWkt(wkt);
            if (!s->reference)
                s->reference = SpatialReferenceEnvironment().CreateUnknown();
        }
        auto def = std::make_shared<GeometryDef>();
        def->GeometryType(s->shapeType);
        def->SpatialReference(s->reference);
        auto shape = std::make_shared<Field>();
        shape->Name(s->shapeName);
        shape->Type(esriFieldTypeGeometry);
        shape->GeometryDef(def);
        shape->Required(true);
        fields->AddField(shape);
        s->slots.push_back({FieldSlot::Shape, -1, esriFieldTypeGeometry, true});
        s->shapeIndex = 1;
    }

    const std::vector<OgrFieldSpec> specs = layer.Fields();
    for (std::size_t i = 0; i < specs.size(); ++i) {
        const OgrFieldSpec& spec = specs[i];
        const HostField host = HostFieldOf(spec, driver);
        auto f = std::make_shared<Field>();
        f->Name(spec.name);
        if (!spec.alias.empty())
            f->AliasName(spec.alias);
        f->Type(host.type);
        f->Length(host.length);
        f->Precision(host.precision);
        f->Scale(host.scale);
        f->IsNullable(spec.nullable);
        const bool editable = !MaintainedByStorage(spec.name, driver);
        f->Editable(editable);
        fields->AddField(f);
        s->slots.push_back({FieldSlot::Attribute, static_cast<std::int32_t>(i), host.type, editable});
    }
    s->storageFieldCount = static_cast<std::int32_t>(specs.size());
    s->fields = fields;
    s->generation = ws_->Generation();
    return s;
}

void TableImpl::SchemaChanged(OgrLayer& layer) { schema_ = LoadSchema(layer); }

void TableImpl::FieldFault(const std::string& field, const std::string& what) const {
    throw DataFault(fault::InvalidCall, kSource,
                "The field '" + field + "' of '" + name_ + "' in '" + ws_->PathName() + "' " + what);
}

// ---------------------------------------------------------------- IClass

std::shared_ptr<IFields> TableImpl::Fields() const { return Schema()->fields; }

std::int32_t TableImpl::FindField(const std::string& name) const { return Schema()->fields->FindField(name); }

std::string TableImpl::OIDFieldName() const { return Schema()->oidName; }

void TableImpl::AddField(const std::shared_ptr<IField>& field) {
    if (!field)
        throw DataFault(fault::ObjectNotSet, kSource, "No field was given to add to '" + name_ + "'");
    if (field->Type() == esriFieldTypeOID || field->Type() == esriFieldTypeGeometry)
        FieldFault(field->Name(), "cannot be added: a table keeps one object ID and one shape field");
    if (field->Name().empty())
        FieldFault(field->Name(), "needs a name");
    auto schema = Schema();
    if (schema->fields->FindField(field->Name()) >= 0)
        FieldFault(field->Name(), "already exists");
    OgrFieldSpec spec = StorageSpec(*field, ws_->Driver());
    if (ws_->Driver() == OgrDriver::Shapefile) {
        std::vector<std::string> taken;
        for (std::int32_t i = 0; i < schema->fields->FieldCount(); ++i)
            if (schema->slots[static_cast<std::size_t>(i)].kind == FieldSlot::Attribute)
                taken.push_back(schema->fields->Field(i)->Name());
        spec.name = DbaseFieldName(field->Name(), taken);
    }
    WriteTicket ticket = ws_->Acquire();
    auto writer = ws_->Writer(name_);
    writer->CreateField(spec);
    SchemaChanged(*writer);
    ticket.Release();
}

void TableImpl::DeleteField(const std::shared_ptr<IField>& field) {
    if (!field)
        throw DataFault(fault::ObjectNotSet, kSource, "No field was given to delete from '" + name_ + "'");
    auto schema = Schema();
    const std::int32_t index = schema->fields->FindField(field->Name());
    if (index < 0)
        throw DataFault(fault::NotFound, kSource,
                    "The field '" + field->Name() + "' was not found in '" + name_ + "' of '" + ws_->PathName() + "'");
    const FieldSlot slot = schema->slots[static_cast<std::size_t>(index)];
    if (slot.kind != FieldSlot::Attribute || !slot.editable)
        FieldFault(field->Name(), "is kept by the storage and cannot be deleted");
    WriteTicket ticket = ws_->Acquire();
    auto writer = ws_->Writer(name_);
    writer->DeleteField(slot.storageIndex);
    SchemaChanged(*writer);
    ticket.Release();
}

// ---------------------------------------------------------------- ITable

std::int32_t TableImpl::RowCount(const std::shared_ptr<IQueryFilter>& filter) const {
    auto self = std::const_pointer_cast<TableImpl>(shared_from_this());
    CursorImpl cursor(self, CursorMode::Search, filter, true, nullptr);
    return cursor.CountRemaining();
}

std::shared_ptr<CursorImpl> TableImpl::OpenCursor(const std::shared_ptr<IQueryFilter>& filter, bool recycling,
                                                  CursorMode mode,
                                                  std::shared_ptr<const std::vector<std::int32_t>> ids) {
    return std::make_shared<CursorImpl>(shared_from_this(), mode, filter, recycling, std::move(ids));
}

std::shared_ptr<ICursor> TableImpl::Search(const std::shared_ptr<IQueryFilter>& filter, bool recycling) {
    return OpenCursor(filter, recycling, CursorMode::Search, nullptr);
}

std::shared_ptr<ICursor> TableImpl::Update(const std::shared_ptr<IQueryFilter>& filter, bool recycling) {
    return OpenCursor(filter, recycling, CursorMode::Update, nullptr);
}

std::shared_ptr<ICursor> TableImpl::Insert(bool) { return OpenCursor(nullptr, false, CursorMode::Insert, nullptr); }

std::shared_ptr<RowImpl> TableImpl::NewRow() const {
    auto self = std::const_pointer_cast<TableImpl>(shared_from_this());
    auto schema = Schema();
    if (!featureClass_)
        return std::make_shared<RowImpl>(self, schema);
    auto feature = std::make_shared<FeatureImpl>(self, schema);
    auto empty = MakeEmptyShape(schema->shapeType);
    if (empty)
        empty->SpatialReference(schema->reference);
    feature->ShapeRef(std::move(empty));
    return feature;
}

std::shared_ptr<IRow> TableImpl::CreateRow() { return NewRow(); }

std::shared_ptr<IRowBuffer> TableImpl::CreateRowBuffer() { return NewRow(); }

std::shared_ptr<IRow> TableImpl::GetRow(std::int32_t oid) {
    OgrRecord record;
    bool found = false;
    if (auto writer = ws_->SessionWriter(name_)) {
        found = writer->Get(oid, record, featureClass_);
    } else {
        LayerLease lease = ws_->BorrowReader(name_);
        found = lease->Get(oid, record, featureClass_);
    }
    if (!found)
        throw DataFault(fault::NotFound, kSource,
                    "There is no row " + std::to_string(oid) + " in '" + name_ + "' of '" + ws_->PathName() + "'");
    auto row = NewRow();
    Fill(*row, record);
    return row;
}

std::vector<std::int32_t> TableImpl::SelectIds(const std::shared_ptr<IQueryFilter>& filter, bool onlyOne) {
    CursorImpl cursor(shared_from_this(), CursorMode::Search, filter, true, nullptr);
    std::vector<std::int32_t> ids;
    std::int64_t fid = -1;
    while (cursor.NextFid(fid)) {
        ids.push_back(static_cast<std::int32_t>(fid));
        if (onlyOne)
            break;
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

std::shared_ptr<ISelectionSet> TableImpl::Select(const std::shared_ptr<IQueryFilter>& filter, esriSelectionType,
                                                 esriSelectionOption option, const std::shared_ptr<IWorkspace>&) {
    std::vector<std::int32_t> ids;
    if (option != esriSelectionOptionEmpty)
        ids = SelectIds(filter, option == esriSelectionOptionOnlyOne);
    return std::make_shared<SelectionSetImpl>(shared_from_this(), std::move(ids));
}

// ---------------------------------------------------------------- rows in and out

void TableImpl::Fill(RowImpl& row, OgrRecord& record) const {
    const ClassSchema& schema = *row.SchemaOf();
    std::vector<Variant>& values = row.Values();
    values.resize(schema.slots.size());
    for (std::size_t i = 0; i < schema.slots.size(); ++i) {
        const FieldSlot& slot = schema.slots[i];
        if (slot.kind != FieldSlot::Attribute)
            continue;
        const auto k = static_cast<std::size_t>(slot.storageIndex);
        values[i] = k < record.values.size() ? ToFieldType(std::move(record.values[k]), slot.type) : Variant::Null();
    }
    row.Fid(record.fid);
    if (featureClass_) {
        std::shared_ptr<IGeometry> old = row.ShapeRef();
        row.ShapeRef(nullptr);
        row.ShapeRef(Unflatten(record.geometry, schema.shapeType, schema.reference, std::move(old)));
    }
}

void TableImpl::ToRecord(const RowImpl& row, OgrRecord& record) const {
    auto schema = Schema();
    const ClassSchema& from = *row.SchemaOf();
    record.values.resize(static_cast<std::size_t>(schema->storageFieldCount));
    for (Variant& v : record.values)
        v = Variant::Null();
    const std::vector<Variant>& values = row.Values();
    const bool same = &from == schema.get();
    for (std::size_t i = 0; i < from.slots.size() && i < values.size(); ++i) {
        if (from.slots[i].kind != FieldSlot::Attribute)
            continue;
        std::int32_t k = from.slots[i].storageIndex;
        if (!same) {
            // A row of another table or of an older schema: fields meet by name.
            const std::int32_t target = schema->fields->FindField(from.fields->Field(static_cast<std::int32_t>(i))->Name());
            k = target >= 0 && schema->slots[static_cast<std::size_t>(target)].kind == FieldSlot::Attribute
                    ? schema->slots[static_cast<std::size_t>(target)].storageIndex
                    : -1;
            if (k >= 0 && !values[i].IsNull() && !values[i].IsEmpty())
                record.values[static_cast<std::size_t>(k)] =
                    ToFieldType(values[i], schema->slots[static_cast<std::size_t>(target)].type);
            continue;
        }
        if (k >= 0 && static_cast<std::size_t>(k) < record.values.size())
            record.values[static_cast<std::size_t>(k)] = values[i];
    }
    record.fid = row.Fid();
    if (!featureClass_) {
        record.geometry.Clear(FlatKind::Null);
        return;
    }
    const std::shared_ptr<IGeometry>& shape = row.ShapeRef();
    // Shapes read from the class carry its reference object: the pointer test spares the rest.
    if (shape && shape->SpatialReference() != schema->reference && !shape->IsEmpty() &&
        !IsUnknown(shape->SpatialReference()) && !IsUnknown(schema->reference) &&
        !shape->SpatialReference()->IsEqual(*schema->reference)) {
        // Shapes in another reference are stored projected, as the host stores them.
        auto copy = CloneAs<IGeometry>(*shape);
        copy->Project(schema->reference);
        Flatten(copy.get(), record.geometry);
    } else {
        Flatten(shape.get(), record.geometry);
    }
    const FlatKind want = FlatKindOf(schema->shapeType);
    if (record.geometry.kind != FlatKind::Null && !record.geometry.Empty() && record.geometry.kind != want)
        throw DataFault(fault::TypeMismatch, kSource,
                    std::string("A ") + KindName(record.geometry.kind) + " shape cannot be stored in '" + name_ +
                        "' of '" + ws_->PathName() + "', a " + KindName(want) + " feature class");
}

void TableImpl::StoreRow(RowImpl& row) {
    WriteTicket ticket = ws_->Acquire();
    auto writer = ws_->Writer(name_);
    OgrRecord record;
    ToRecord(row, record);
    if (row.Fid() < 0)
        row.Fid(writer->Create(record));
    else
        writer->Set(record);
    ticket.Release();
}

void TableImpl::DeleteStoredRow(std::int64_t fid) {
    WriteTicket ticket = ws_->Acquire();
    auto writer = ws_->Writer(name_);
    if (!writer->Delete(fid))
        throw DataFault(fault::NotFound, kSource,
                    "There is no row " + std::to_string(fid) + " in '" + name_ + "' of '" + ws_->PathName() + "'");
    ticket.Release();
}

// ---------------------------------------------------------------- IDataset

std::string TableImpl::FullName() const { return ws_->ClassFullName(name_, featureClass_, featureDataset_); }

std::string TableImpl::Category() const { return ws_->ClassCategory(featureClass_); }

std::shared_ptr<IWorkspace> TableImpl::Workspace() const { return ws_; }

std::shared_ptr<IPropertySet> TableImpl::PropertySet() const {
    auto set = std::make_shared<tess::PropertySet>();
    set->SetProperty("DATABASE", ws_->PathName());
    if (ws_->Driver() == OgrDriver::FileGDB)
        set->SetProperty("Datafile Format", kUncompressedDatafile);
    return set;
}

bool TableImpl::CanDelete() const { return !ws_->ReadOnly() && ws_->Driver() != OgrDriver::PersonalGDB; }

void TableImpl::Delete() { ws_->DeleteClass(name_); }

// ---------------------------------------------------------------- feature classes

esriGeometryType FeatureClassImpl::ShapeType() const { return Schema()->shapeType; }

std::string FeatureClassImpl::ShapeFieldName() const { return Schema()->shapeName; }

std::shared_ptr<IFeature> FeatureClassImpl::CreateFeature() { return std::dynamic_pointer_cast<IFeature>(NewRow()); }

std::shared_ptr<IFeatureBuffer> FeatureClassImpl::CreateFeatureBuffer() {
    return std::dynamic_pointer_cast<IFeatureBuffer>(NewRow());
}

std::shared_ptr<IFeature> FeatureClassImpl::GetFeature(std::int32_t oid) {
    return std::dynamic_pointer_cast<IFeature>(GetRow(oid));
}

std::shared_ptr<IFeatureDataset> FeatureClassImpl::FeatureDataset() const {
    return featureDataset_.empty() ? nullptr : ws_->OpenFeatureDataset(featureDataset_);
}

std::shared_ptr<ISpatialReference> FeatureClassImpl::SpatialReference() const { return Schema()->reference; }

std::shared_ptr<IEnvelope> FeatureClassImpl::Extent() const {
    auto box = std::make_shared<tess::Envelope>();
    WKSEnvelope e{};
    LayerLease lease = ws_->BorrowReader(name_);
    if (lease->FeatureCount() > 0 && lease->Extent(e))
        box->PutCoords(e.XMin, e.YMin, e.XMax, e.YMax);
    box->SpatialReference(Schema()->reference);
    return box;
}

std::shared_ptr<IFeatureCursor> FeatureClassImpl::SearchFeatures(const std::shared_ptr<IQueryFilter>& filter,
                                                                 bool recycling) {
    return OpenCursor(filter, recycling, CursorMode::Search, nullptr);
}

std::shared_ptr<IFeatureCursor> FeatureClassImpl::UpdateFeatures(const std::shared_ptr<IQueryFilter>& filter,
                                                                 bool recycling) {
    return OpenCursor(filter, recycling, CursorMode::Update, nullptr);
}

std::shared_ptr<IFeatureCursor> FeatureClassImpl::InsertFeatures(bool) {
    return OpenCursor(nullptr, false, CursorMode::Insert, nullptr);
}

} // namespace tess::data
