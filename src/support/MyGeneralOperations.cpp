#include "support/MyGeneralOperations.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>

#include "frame/ErrorHandling.h"
#include "platform/carto/Layers.h"
#include "platform/carto/Map.h"
#include "platform/data/Dataset.h"
#include "platform/data/Field.h"
#include "platform/data/Fields.h"
#include "platform/data/Table.h"
#include "platform/data/Workspace.h"
#include "platform/data/WorkspaceFactories.h"
#include "platform/geometry/Geometry.h"
#include "platform/system/Arrays.h"
#include "platform/system/Fault.h"
#include "platform/system/PropertySet.h"
#include "platform/system/UID.h"
#include "platform/system/Variant.h"
#include "platform/ui/UIServices.h"
#include "support/aml_func_mod.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

constexpr const char* kSource = "MyGeneralOperations";

// Catalog categories, in the host's words.
constexpr const char* kShapefile = "Shapefile";
constexpr const char* kFolder = "Folder";
constexpr const char* kDbaseTable = "dBASE Table";
constexpr const char* kFileGdbFeatureClass = "File Geodatabase Feature Class";
constexpr const char* kPersonalGdbFeatureClass = "Personal Geodatabase Feature Class";
constexpr const char* kGeoPackageFeatureClass = "GeoPackage Feature Class";
constexpr const char* kFileGdbCategories[] = {"File Geodatabase Feature Class", "File Geodatabase Raster Catalog",
                                              "File Geodatabase", "File Geodatabase Feature Dataset"};
constexpr const char* kPersonalGdbCategories[] = {
    "Personal Geodatabase Feature Class", "Personal Geodatabase Raster Catalog", "Personal Geodatabase",
    "Personal Geodatabase Feature Dataset"};
constexpr const char* kGeoPackageCategories[] = {"GeoPackage", "GeoPackage Feature Class"};
// Category words of the browse dialog's location that name a feature dataset.

// DirectoryType texts.
constexpr const char* kTypeShapefile = "Shapefile";
constexpr const char* kTypeFileGdb = "File Geodatabase";
constexpr const char* kTypePersonalGdb = "Personal Geodatabase";
constexpr const char* kTypeGeoPackage = "GeoPackage";

// Fields that creation adds.
constexpr const char* kShapeFieldName = "Shape";
constexpr const char* kShapeFieldAlias = "geometry";
constexpr const char* kUniqueIdName = "Unique_ID";
constexpr const char* kObjectIdName = "Object_ID";
constexpr const char* kObjectIdAlias = "object identifier";
// Longest names the counters may grow the added fields to.
constexpr std::size_t kUniqueIdLimit = 10;
constexpr std::size_t kObjectIdLimit = 11;

// Spatial grid of new geodatabase classes (coordinate units), and the features per grid cell aimed at.
constexpr double kDefaultGridSize = 100.0;
constexpr double kDatasetGridSize = 10.0;
constexpr double kFeaturesPerTile = 200.0;
constexpr std::int32_t kGridLevels = 1;
constexpr std::int32_t kDatasetAvgNumPoints = 2;

// Class identifiers by feature type.
constexpr const char* kFeatureClsid = "esriGeoDatabase.Feature";
constexpr const char* kSimpleJunctionClsid = "esriGeoDatabase.SimpleJunctionFeature";
constexpr const char* kSimpleEdgeClsid = "esriGeoDatabase.SimpleEdgeFeature";
constexpr const char* kComplexJunctionClsid = "esriGeoDatabase.ComplexJunctionFeature";
constexpr const char* kComplexEdgeClsid = "esriGeoDatabase.ComplexEdgeFeature";

// Names.
constexpr const char* kNameCharacters = "abcdefghijklmnopqrstuvwxyz0123456789_";
constexpr const char* kDbaseCharacters = "abcdefghijklmnopqrstuvwxyz1234567890_";
constexpr std::size_t kDbaseNameLength = 10;
constexpr const char* kEmptyDbaseName = "zField";
constexpr const char* kLetterPrefix = "z";
constexpr int kFirstUniqueSuffix = 2;

// The layer kind that bit 256 selects; no layer of this platform is one.
constexpr const char* kSpecialLayerInterface = "{605BC37A-15E9-40A0-90FB-DE4CC376838C}";
constexpr std::int32_t kLayerTypeDigits = 9;
constexpr std::int32_t kCompressedDatafile = 1;

// Messages.
constexpr const char* kInvalidOutputTitle = "Invalid Output Type:";
constexpr const char* kExistsTitle = "Feature Class Already Exists:";
constexpr const char* kFailedTitle = "Failed to Create Feature Class:";
constexpr const char* kLineBreak = "\r\n";
constexpr const char* kBrowseButton = "Enter";
constexpr const char* kSaveFilter = "Feature classes and shapefiles";

bool IsSeparator(char c) { return c == '/' || c == '\\'; }

bool IsLetter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

bool InSet(char c, const char* set) {
    const char lower = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return std::string_view(set).find(lower) != std::string_view::npos;
}

template <std::size_t N> bool OneOf(const std::string& category, const char* const (&list)[N]) {
    return std::any_of(std::begin(list), std::end(list), [&](const char* c) { return category == c; });
}

//! The workspace factory that a category opens; null for a category of no known storage.
std::shared_ptr<IWorkspaceFactory> FactoryOfCategory(const std::string& category) {
    if (category == kShapefile || category == kFolder)
        return std::make_shared<ShapefileWorkspaceFactory>();
    if (OneOf(category, kFileGdbCategories))
        return std::make_shared<FileGDBWorkspaceFactory>();
    if (OneOf(category, kPersonalGdbCategories))
        return std::make_shared<AccessWorkspaceFactory>();
    if (OneOf(category, kGeoPackageCategories))
        return std::make_shared<GeoPackageWorkspaceFactory>();
    return nullptr;
}

//! Decimal digits of a positive counter.
std::size_t DigitsOf(int counter) { return std::to_string(counter).size(); }

//! base, or the left part of base followed by a counter from 2, so that no field of `fields`
//! bears exactly that name; the name stays within `limit` characters once the counter needs it.
std::string UniqueAddedName(const std::string& base, std::size_t limit, const std::shared_ptr<IVariantArray>& fields) {
    auto taken = [&](const std::string& candidate) {
        if (!fields)
            return false;
        for (std::int32_t i = 0; i < fields->Count(); ++i) {
            const Variant item = fields->Element(i);
            if (!item.IsObject())
                continue;
            if (auto field = item.As<IField>(); field && field->Name() == candidate)
                return true;
        }
        return false;
    };
    std::string candidate = base;
    for (int counter = 1; taken(candidate);) {
        ++counter;
        const std::size_t keep = limit > DigitsOf(counter) ? limit - DigitsOf(counter) : 0;
        candidate = base.substr(0, std::min(keep, base.size())) + std::to_string(counter);
    }
    return candidate;
}

std::shared_ptr<Field> MakeShapeField(const std::shared_ptr<IGeometryDef>& definition, bool withAlias) {
    auto shape = std::make_shared<Field>();
    shape->Name(kShapeFieldName);
    if (withAlias)
        shape->AliasName(kShapeFieldAlias);
    shape->Type(esriFieldTypeGeometry);
    shape->GeometryDef(definition);
    return shape;
}

std::shared_ptr<Field> MakeObjectIdField(const std::string& name) {
    auto oid = std::make_shared<Field>();
    oid->Name(name);
    oid->AliasName(kObjectIdAlias);
    oid->Type(esriFieldTypeOID);
    return oid;
}

void AppendCallerFields(Fields& list, const std::shared_ptr<IVariantArray>& fields) {
    if (!fields)
        return;
    for (std::int32_t i = 0; i < fields->Count(); ++i)
        list.AddField(fields->Element(i).As<IField>());
}

//! The name of the first geometry field of the finished list.
std::string ShapeFieldNameOf(const Fields& list) {
    std::string shapeName;
    for (const auto& field : list.Items())
        if (field && field->Type() == esriFieldTypeGeometry) {
            shapeName = field->Name();
            break;
        }
    return shapeName;
}

//! The class identifier for a feature type when the caller gave none, and the geometry type that
//! type demands. False for annotation, which is not created here.
bool ClassIdForFeatureType(esriFeatureType featureType, bool lineBecomesPolyline, std::shared_ptr<IUID>& clsid,
                           esriGeometryType& geometryType) {
    const char* value = nullptr;
    switch (featureType) {
    case esriFTSimple:
        value = kFeatureClsid;
        if (lineBecomesPolyline && geometryType == esriGeometryLine)
            geometryType = esriGeometryPolyline;
        break;
    case esriFTSimpleJunction:
        value = kSimpleJunctionClsid;
        geometryType = esriGeometryPoint;
        break;
    case esriFTSimpleEdge:
        value = kSimpleEdgeClsid;
        geometryType = esriGeometryPolyline;
        break;
    case esriFTComplexJunction:
        value = kComplexJunctionClsid;
        break;
    case esriFTComplexEdge:
        value = kComplexEdgeClsid;
        geometryType = esriGeometryPolyline;
        break;
    case esriFTAnnotation:
        return false;
    default:
        return true; // other types keep what was given
    }
    clsid = std::make_shared<UID>(value);
    return true;
}

//! Existence by two tries; each failure is an answer, not a fault.
template <class First, class Second>
bool EitherOpens(const std::shared_ptr<IFeatureWorkspace>& workspace, First first, Second second) {
    if (!workspace)
        return false;
    try {
        if (first(*workspace))
            return true;
    } catch (const std::exception&) {
    }
    try {
        return second(*workspace) != nullptr;
    } catch (const std::exception&) {
    }
    return false;
}

//! name, else name_2, name_3... until `exists` says no.
template <class Exists> std::string FirstFreeName(const std::string& name, Exists exists) {
    if (!exists(name))
        return name;
    for (int n = kFirstUniqueSuffix;; ++n) {
        std::string candidate = name + "_" + std::to_string(n);
        if (!exists(candidate))
            return candidate;
    }
}

//! Names of the existing fields in any of the forms ReturnDBASEFieldName takes.
std::vector<std::string> ExistingNames(const Variant& existingFields) {
    std::vector<std::string> names;
    if (!existingFields.IsObject() || existingFields.IsNothing())
        return names;
    if (auto fields = existingFields.As<IFields>()) {
        for (std::int32_t i = 0; i < fields->FieldCount(); ++i)
            names.push_back(fields->Field(i)->Name());
    } else if (auto array = existingFields.As<IVariantArray>()) {
        for (std::int32_t i = 0; i < array->Count(); ++i) {
            const Variant item = array->Element(i);
            if (item.IsObject()) {
                if (auto field = item.As<IField>())
                    names.push_back(field->Name());
            } else if (item.Type() == VarType::String) {
                names.push_back(item.ToString());
            }
        }
    } else if (auto strings = existingFields.As<IStringArray>()) {
        for (std::int32_t i = 0; i < strings->Count(); ++i)
            names.push_back(strings->Element(i));
    }
    return names;
}

//! The layer type bit that a feature class's shape type stands for; 0 for other shapes.
std::int32_t ShapeTypeBit(esriGeometryType type) {
    switch (type) {
    case esriGeometryPoint:
        return layer_type::Point;
    case esriGeometryPolyline:
        return layer_type::Polyline;
    case esriGeometryPolygon:
        return layer_type::Polygon;
    case esriGeometryMultipoint:
        return layer_type::Multipoint;
    default:
        return 0;
    }
}

} // namespace

std::int32_t OutputKindOfDirectoryType(const std::string& directoryType) {
    if (directoryType == kTypeShapefile)
        return output_kind::Shapefile;
    if (directoryType == kTypeFileGdb)
        return output_kind::FileGeodatabase;
    if (directoryType == kTypePersonalGdb)
        return output_kind::PersonalGeodatabase;
    if (directoryType == kTypeGeoPackage)
        return output_kind::GeoPackage;
    return output_kind::Unknown;
}

std::string DirectoryTypeOfOutputKind(std::int32_t kind) {
    switch (kind) {
    case output_kind::Shapefile:
        return kTypeShapefile;
    case output_kind::FileGeodatabase:
        return kTypeFileGdb;
    case output_kind::PersonalGeodatabase:
        return kTypePersonalGdb;
    case output_kind::GeoPackage:
        return kTypeGeoPackage;
    default:
        return {};
    }
}

std::int32_t OutputKindOfCategory(const std::string& category) {
    if (category == kShapefile || category == kFolder || category == kDbaseTable)
        return output_kind::Shapefile;
    if (OneOf(category, kFileGdbCategories) || category == "File Geodatabase Table")
        return output_kind::FileGeodatabase;
    if (OneOf(category, kPersonalGdbCategories) || category == "Personal Geodatabase Table")
        return output_kind::PersonalGeodatabase;
    if (OneOf(category, kGeoPackageCategories) || category == "GeoPackage Table")
        return output_kind::GeoPackage;
    return output_kind::Unknown;
}

std::shared_ptr<IFeatureClass> CreateGeneralFeatureClass(
    esriGeometryType& geometryType, const std::shared_ptr<ISpatialReference>& spatialReference,
    std::string& directory, std::string& name, std::int32_t outputKind, const std::shared_ptr<IVariantArray>& fields,
    const std::string& dialogTitle, bool& isFeatureDataset, std::string& featureDatasetName, bool addUniqueID,
    const std::shared_ptr<IEnvelope>& envelope, std::int32_t featureCount) {
    return Trapped("CreateGeneralFeatureClass ", std::shared_ptr<IFeatureClass>(), [&]() -> std::shared_ptr<IFeatureClass> {
        for (;;) {
            std::string category;
            if (directory.empty() || name.empty()) {
                BrowseRequest request;
                request.Save = true;
                request.Title = dialogTitle;
                request.ButtonCaption = kBrowseButton;
                request.StartingLocation = directory;
                request.Name = name;
                request.AllowMultiSelect = false;
                request.Filters = {kSaveFilter};
                const std::optional<BrowseResult> chosen = UI().Browse(request);
                if (!chosen)
                    return nullptr;
                // The place chosen decides whether the class goes into a feature dataset.
                const OutputPlace place = OutputPlaceOf(*chosen);
                directory = place.directory;
                name = place.name;
                category = chosen->Category;
                isFeatureDataset = place.isFeatureDataset;
                featureDatasetName = place.datasetName;
            } else {
                switch (outputKind) {
                case output_kind::Shapefile:
                    category = kShapefile;
                    name = SetExtension(name, "shp");
                    if (!IsSeparator(directory.back()))
                        directory += '/';
                    break;
                case output_kind::FileGeodatabase:
                    category = kFileGdbFeatureClass;
                    break;
                case output_kind::PersonalGeodatabase:
                    category = kPersonalGdbFeatureClass;
                    break;
                case output_kind::GeoPackage:
                    category = kGeoPackageFeatureClass;
                    break;
                default:
                    UI().MessageBox(std::string("PROBLEM:  This function can only create shapefiles, file geodatabase "
                                                "feature classes, or ") +
                                        kLineBreak + "personal geodatabase feature classes.  Bailing out...",
                                    MsgBoxButtons::OK, MsgBoxIcon::None, kInvalidOutputTitle);
                    return nullptr;
                }
            }

            const std::shared_ptr<IWorkspaceFactory> factory = FactoryOfCategory(category);
            if (!factory) {
                UI().MessageBox("Unexpected Feature Class Type (" + category + ")!  Need to write new code for this...",
                                MsgBoxButtons::OK, MsgBoxIcon::None, "");
                return nullptr;
            }
            const bool shapefile = category == kShapefile || category == kFolder;
            const bool inDataset = isFeatureDataset && !shapefile;
            const std::string messageName = inDataset ? featureDatasetName + ":" + name : name;

            directory = StripTrailingSeparator(directory);
            auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(factory->OpenFromFile(directory, 0));
            if (!workspace)
                throw Fault(fault::ObjectNotSet, kSource, "'" + directory + "' is not a feature workspace");
            std::shared_ptr<IFeatureDataset> dataset;
            if (inDataset)
                dataset = workspace->OpenFeatureDataset(featureDatasetName);

            bool chooseAgain = false;
            while (CheckIfFeatureClassExists(workspace, name)) {
                const MsgBoxResult answer =
                    UI().MessageBox("The Feature Class '" + messageName + "' already exists!  Do you wish to overwrite it?",
                                    MsgBoxButtons::YesNo, MsgBoxIcon::Question, kExistsTitle);
                if (answer != MsgBoxResult::Yes) {
                    name.clear();
                    chooseAgain = true;
                    break;
                }
                // A table of the name blocks the class too; both go the same way.
                auto existing = std::dynamic_pointer_cast<IDataset>(workspace->OpenTable(name));
                if (!existing)
                    throw Fault(fault::ObjectNotSet, kSource, "'" + messageName + "' cannot be deleted");
                existing->Delete();
            }
            if (chooseAgain)
                continue;

            if (inDataset)
                return CreateDatasetFeatureClass(dataset, name, esriFTSimple, geometryType, fields, nullptr, nullptr, "");
            if (!shapefile)
                return CreateGDBFeatureClass(workspace, name, esriFTSimple, spatialReference, geometryType, fields,
                                             nullptr, nullptr, "", outputKind, envelope, featureCount);
            return CreateShapefileFeatureClass(directory, name, spatialReference, geometryType, fields, addUniqueID);
        }
    });
}

std::shared_ptr<IFeatureClass> CreateShapefileFeatureClass(std::string& directory, std::string& name,
                                                           const std::shared_ptr<ISpatialReference>& spatialReference,
                                                           esriGeometryType geometryType,
                                                           const std::shared_ptr<IVariantArray>& fields,
                                                           bool addUniqueID) {
    return Trapped("CreateShapefileFeatureClass ", std::shared_ptr<IFeatureClass>(),
                   [&]() -> std::shared_ptr<IFeatureClass> {
        if (EndsWithNoCase(directory, ".shp"))
            directory = ReturnDir(directory);
        if (EndsWithNoCase(name, ".shp"))
            name.resize(name.size() - 4);
        if (!ExistFileDir(directory)) {
            UI().MessageBox(std::string("Unable to create Feature Class:") + kLineBreak + directory +
                                " is not a valid workspace...",
                            MsgBoxButtons::OK, MsgBoxIcon::None, kFailedTitle);
            return nullptr;
        }
        auto workspace = std::dynamic_pointer_cast<IFeatureWorkspace>(
            ShapefileWorkspaceFactory().OpenFromFile(StripTrailingSeparator(directory), 0));
        if (!workspace)
            throw Fault(fault::ObjectNotSet, kSource, "'" + directory + "' is not a shapefile workspace");

        auto definition = std::make_shared<GeometryDef>();
        definition->GeometryType(geometryType);
        definition->SpatialReference(spatialReference);
        auto list = std::make_shared<Fields>();
        list->AddField(MakeShapeField(definition, false));
        if (addUniqueID) {
            auto id = std::make_shared<Field>();
            id->Name(UniqueAddedName(kUniqueIdName, kUniqueIdLimit, fields));
            id->Type(esriFieldTypeInteger);
            list->AddField(id);
        }
        AppendCallerFields(*list, fields);
        return workspace->CreateFeatureClass(name, list, nullptr, nullptr, esriFTSimple, kShapeFieldName, "");
    });
}

double GeodatabaseGridSize(const std::shared_ptr<IEnvelope>& envelope, std::int32_t featureCount) {
    double grid = kDefaultGridSize;
    if (envelope && featureCount > 0 && !envelope->IsEmpty()) {
        const double tiles = featureCount / kFeaturesPerTile;
        grid = std::sqrt(envelope->Height() * envelope->Width() / tiles);
        if (grid > envelope->Width())
            grid = envelope->Width();
        if (grid > envelope->Height())
            grid = envelope->Height();
    }
    return grid;
}

std::shared_ptr<IFeatureClass> CreateGDBFeatureClass(const std::shared_ptr<IFeatureWorkspace>& featureWorkspace,
                                                     const std::string& name, esriFeatureType featureType,
                                                     const std::shared_ptr<ISpatialReference>& spatialReference,
                                                     esriGeometryType& geometryType,
                                                     const std::shared_ptr<IVariantArray>& fields,
                                                     std::shared_ptr<IUID> clsid, std::shared_ptr<IUID> extclsid,
                                                     const std::string& configKeyword, std::int32_t /*outputKind*/,
                                                     const std::shared_ptr<IEnvelope>& envelope,
                                                     std::int32_t featureCount) {
    return Trapped("CreateGDBFeatureClass ", std::shared_ptr<IFeatureClass>(), [&]() -> std::shared_ptr<IFeatureClass> {
        if (!featureWorkspace || name.empty())
            return nullptr;
        if (!clsid && !ClassIdForFeatureType(featureType, true, clsid, geometryType))
            return nullptr;

        auto definition = std::make_shared<GeometryDef>();
        definition->GeometryType(geometryType);
        definition->GridCount(kGridLevels);
        definition->GridSize(0, GeodatabaseGridSize(envelope, featureCount));
        definition->HasM(false);
        definition->HasZ(false);
        definition->SpatialReference(spatialReference);

        auto list = std::make_shared<Fields>();
        list->AddField(MakeShapeField(definition, true));
        list->AddField(MakeObjectIdField(UniqueAddedName(kObjectIdName, kObjectIdLimit, fields)));
        AppendCallerFields(*list, fields);
        return featureWorkspace->CreateFeatureClass(name, list, clsid, extclsid, featureType, ShapeFieldNameOf(*list),
                                                    configKeyword);
    });
}

std::shared_ptr<IFeatureClass> CreateDatasetFeatureClass(const std::shared_ptr<IFeatureDataset>& featureDataset,
                                                         const std::string& name, esriFeatureType featureType,
                                                         esriGeometryType& geometryType,
                                                         const std::shared_ptr<IVariantArray>& fields,
                                                         std::shared_ptr<IUID> clsid, std::shared_ptr<IUID> extclsid,
                                                         const std::string& configKeyword) {
    return Trapped("CreateDatasetFeatureClass ", std::shared_ptr<IFeatureClass>(),
                   [&]() -> std::shared_ptr<IFeatureClass> {
        if (!featureDataset || name.empty())
            return nullptr;
        if (!clsid && !ClassIdForFeatureType(featureType, false, clsid, geometryType))
            return nullptr;

        auto definition = std::make_shared<GeometryDef>();
        definition->GeometryType(geometryType);
        definition->GridCount(kGridLevels);
        definition->GridSize(0, kDatasetGridSize);
        definition->AvgNumPoints(kDatasetAvgNumPoints);
        definition->HasM(false);
        definition->HasZ(false);

        auto list = std::make_shared<Fields>();
        list->AddField(MakeShapeField(definition, true));
        list->AddField(MakeObjectIdField(kObjectIdName));
        AppendCallerFields(*list, fields);
        return featureDataset->CreateFeatureClass(name, list, clsid, extclsid, featureType, ShapeFieldNameOf(*list),
                                                  configKeyword);
    });
}

bool CheckIfFeatureClassExists(const std::shared_ptr<IFeatureWorkspace>& featureWorkspace, const std::string& name) {
    return EitherOpens(
        featureWorkspace, [&](IFeatureWorkspace& w) { return w.OpenFeatureClass(name) != nullptr; },
        [&](IFeatureWorkspace& w) { return w.OpenTable(name); });
}

bool CheckIfTableExists(const std::shared_ptr<IFeatureWorkspace>& featureWorkspace, const std::string& name) {
    return EitherOpens(
        featureWorkspace, [&](IFeatureWorkspace& w) { return w.OpenTable(name) != nullptr; },
        [&](IFeatureWorkspace& w) { return w.OpenFeatureClass(name); });
}

std::string MakeUniqueGDBFeatureClassName(const std::shared_ptr<IWorkspace>& workspace, const std::string& name) {
    return Trapped("MakeUniqueGDBFeatureClassName ", std::string(), [&] {
        auto featureWorkspace = std::dynamic_pointer_cast<IFeatureWorkspace>(workspace);
        return FirstFreeName(name, [&](const std::string& n) { return CheckIfFeatureClassExists(featureWorkspace, n); });
    });
}

std::string MakeUniqueGDBTableName(const std::shared_ptr<IWorkspace>& workspace, const std::string& name) {
    return Trapped("MakeUniqueGDBTableName ", std::string(), [&] {
        auto featureWorkspace = std::dynamic_pointer_cast<IFeatureWorkspace>(workspace);
        return FirstFreeName(name, [&](const std::string& n) { return CheckIfTableExists(featureWorkspace, n); });
    });
}

std::string MakeUniqueShapeFilename(const std::string& path) {
    return Trapped("MakeUniqueShapeFilename ", std::string(), [&] { return MakeUniqueFilename(path); });
}

std::string MakeUniquedBASEName(const std::string& path) {
    return Trapped("MakeUniquedBASEName ", std::string(), [&] { return MakeUniqueFilename(path); });
}

std::string ReplaceBadChars(const std::string& text, bool replaceDot, bool replaceBackslash, bool replaceBlank,
                            bool prefixFirstLetter) {
    return Trapped("ReplaceBadChars ", std::string(), [&] {
        if (text.empty())
            return std::string(kLetterPrefix);
        std::string allowed = kNameCharacters;
        if (!replaceDot)
            allowed += '.';
        if (!replaceBackslash)
            allowed += '\\';
        if (!replaceBlank)
            allowed += ' ';
        std::string result = text;
        for (char& c : result)
            if (!InSet(c, allowed.c_str()))
                c = '_';
        if (prefixFirstLetter && !IsLetter(result.front()))
            result.insert(0, kLetterPrefix);
        return result;
    });
}

std::string ReturnDBASEFieldName(const std::string& name, const Variant& existingFields) {
    return Trapped("ReturnDBASEFieldName ", std::string(), [&] {
        std::string clean = name.empty() ? std::string(kEmptyDbaseName) : name;
        clean = clean.substr(0, kDbaseNameLength);
        if (!IsLetter(clean.front()))
            clean = (kLetterPrefix + clean).substr(0, kDbaseNameLength);
        for (char& c : clean)
            if (!InSet(c, kDbaseCharacters))
                c = '_';

        const std::vector<std::string> existing = ExistingNames(existingFields);
        auto taken = [&](const std::string& candidate) {
            return std::any_of(existing.begin(), existing.end(),
                               [&](const std::string& e) { return Lower(e) == Lower(candidate); });
        };
        std::string candidate = clean;
        for (int counter = 1; taken(candidate);) {
            ++counter;
            candidate = clean.substr(0, kDbaseNameLength - DigitsOf(counter)) + std::to_string(counter);
        }
        return candidate;
    });
}

std::shared_ptr<IVariantArray> MakeFieldNameVarArray(const std::shared_ptr<IClass>& fromClass,
                                                     const std::shared_ptr<IClass>& toClass,
                                                     const std::shared_ptr<IVariantArray>& selectedFields,
                                                     bool useArrayElements) {
    return Trapped("MakeFieldNameVarArray ", std::shared_ptr<IVariantArray>(), [&] {
        if (!fromClass || !toClass || !selectedFields)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        auto rows = std::make_shared<VarArray>();
        for (std::int32_t i = 0; i < selectedFields->Count(); ++i) {
            const Variant entry = selectedFields->Element(i);
            std::string sourceName;
            std::string outputName;
            if (useArrayElements) {
                auto pair = entry.As<IStringArray>();
                if (!pair)
                    throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
                sourceName = pair->Element(0);
                outputName = pair->Element(1);
            } else {
                auto field = entry.As<IField>();
                if (!field)
                    throw Fault(fault::TypeMismatch, kSource, "Type mismatch");
                sourceName = outputName = field->Name();
            }
            auto row = std::make_shared<VarArray>();
            row->Add(sourceName);
            row->Add(fromClass->FindField(sourceName));
            row->Add(outputName);
            row->Add(toClass->FindField(outputName));
            rows->Add(std::shared_ptr<IVariantArray>(row));
        }
        return std::shared_ptr<IVariantArray>(rows);
    });
}

std::string ConvertLongBinary(std::int32_t value, std::int32_t width) {
    return Trapped("ConvertLongBinary ", std::string(), [&] {
        // The digits end when the halving reaches 1; from 0 or below it never would.
        if (value < 1)
            throw Fault(fault::InvalidCall, kSource, "Invalid procedure call or argument");
        std::string digits;
        for (std::int32_t rest = value; rest != 1; rest /= 2)
            digits.insert(digits.begin(), static_cast<char>('0' + rest % 2));
        digits.insert(digits.begin(), '1');
        while (static_cast<std::int32_t>(digits.size()) < width)
            digits.insert(digits.begin(), '0');
        return digits;
    });
}

std::shared_ptr<IVariantArray> ReturnLayersByType(const std::shared_ptr<IMap>& map, std::int32_t flags) {
    return Trapped("ReturnLayersByType ", std::shared_ptr<IVariantArray>(), [&] {
        if (!map)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        const std::string digits = ConvertLongBinary(flags, kLayerTypeDigits);
        // Digit k from the right is the bit of value 2^k.
        auto on = [&](std::int32_t bit) {
            std::size_t k = 0;
            while ((std::int32_t{1} << k) < bit)
                ++k;
            return k < digits.size() && digits[digits.size() - 1 - k] == '1';
        };

        auto result = std::make_shared<VarArray>();
        auto layers = map->Layers(nullptr, true);
        for (auto layer = layers->Next(); layer; layer = layers->Next()) {
            if (LayerImplements(*layer, kSpecialLayerInterface)) {
                if (layer->Valid() && on(layer_type::Special))
                    result->Add(layer);
            } else if (auto featureLayer = std::dynamic_pointer_cast<IFeatureLayer>(layer)) {
                if (!layer->Valid())
                    continue;
                if (on(layer_type::Feature)) {
                    result->Add(layer);
                } else if (auto featureClass = featureLayer->FeatureClass()) {
                    const std::int32_t bit = ShapeTypeBit(featureClass->ShapeType());
                    if (bit != 0 && on(bit))
                        result->Add(layer);
                }
            } else if (std::dynamic_pointer_cast<IRasterLayer>(layer)) {
                if (layer->Valid() && on(layer_type::Raster))
                    result->Add(layer);
            } else if (std::dynamic_pointer_cast<ITinLayer>(layer)) {
                if (layer->Valid() && on(layer_type::Tin))
                    result->Add(layer);
            }
        }
        if (on(layer_type::Table)) {
            if (auto tables = std::dynamic_pointer_cast<IStandaloneTableCollection>(map)) {
                for (std::int32_t i = 0; i < tables->StandaloneTableCount(); ++i) {
                    auto table = tables->StandaloneTable(i);
                    if (table && table->Valid())
                        result->Add(table);
                }
            }
        }
        return std::shared_ptr<IVariantArray>(result);
    });
}

bool CheckDatafileFormat(const std::shared_ptr<IDataset>& dataset) {
    return Trapped("CheckDatafileFormat ", false, [&] {
        if (!dataset || Lower(dataset->Category()).find("file geodatabase") == std::string::npos)
            return false;
        try {
            return dataset->PropertySet()->GetProperty("Datafile Format").ToLong() == kCompressedDatafile;
        } catch (const Fault&) {
            return false; // a class without the property is not compressed
        }
    });
}

} // namespace tess
