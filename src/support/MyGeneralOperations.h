#pragma once
// Output datasets: the one routine every tool creates its new feature class
// with, and the small routines around it that make names legal and unique for
// each kind of storage, plus the listing of a map's layers by type that the
// dialogs fill their lists from.
//
// Every routine traps its faults, reports them through HandleError and gives
// back nothing (or an empty string); the existence tests answer false instead.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/data/DataTypes.h"
#include "platform/geometry/GeometryTypes.h"

namespace tess {

class IClass;
class IDataset;
class IEnvelope;
class IFeatureClass;
class IFeatureDataset;
class IFeatureWorkspace;
class IMap;
class ISpatialReference;
class IUID;
class IVariantArray;
class IWorkspace;
class Variant;

//! Kinds of output location, as callers pass them and dialogs keep them. The values are bits.
namespace output_kind {
inline constexpr std::int32_t Unknown = 0;
inline constexpr std::int32_t Shapefile = 1;
inline constexpr std::int32_t FileGeodatabase = 2;
inline constexpr std::int32_t PersonalGeodatabase = 4;
//! A feature class in a GeoPackage; this platform's own addition.
inline constexpr std::int32_t GeoPackage = 8;
} // namespace output_kind

//! The kind that a DirectoryType text names: "Shapefile" 1, "File Geodatabase" 2,
//! "Personal Geodatabase" 4, "GeoPackage" 8; anything else 0.
std::int32_t OutputKindOfDirectoryType(const std::string& directoryType);
//! The DirectoryType text of a kind; empty for any other value.
std::string DirectoryTypeOfOutputKind(std::int32_t kind);
//! The output kind that a catalog category names ("Folder", "Shapefile", "dBASE Table" 1, the file
//! geodatabase categories 2, the personal geodatabase ones 4, the GeoPackage ones 8); 0 otherwise.
std::int32_t OutputKindOfCategory(const std::string& category);

//! Where a new feature class goes, as the catalog's save dialog chose it.
struct OutputPlace {
    std::string directory;         //!< the folder or geodatabase, without a trailing separator
    std::string name;              //!< as the user typed it
    bool isFeatureDataset = false; //!< the place chosen is a feature dataset of directory
    std::string datasetName;
    std::int32_t kind = 0;         //!< as OutputKindOfCategory; 0 for a place of no kind written here
};
//! The place of a choice of the save dialog: a feature dataset chosen as the location gives its
//! geodatabase as the directory.
struct BrowseResult;
OutputPlace OutputPlaceOf(const BrowseResult& chosen);
//! Asks the catalog's save dialog (title, starting folder, proposed name) for the place of a new
//! feature class until the user chooses one of a kind this system writes, or gives up (nothing).
//! Another kind gets the "Invalid Feature Class Type:" box: OK chooses again, Cancel gives up.
//! breakLines puts the box's sentences on lines of their own, as some dialogs show them.
std::optional<OutputPlace> BrowseForOutputPlace(const std::string& title, const std::string& startingLocation,
                                                const std::string& name, bool breakLines);
//! The text of an output box for a place: directory/name, or directory/dataset/name.
std::string OutputPathText(const std::string& directory, bool isFeatureDataset, const std::string& datasetName,
                           const std::string& name);

//! Creates an empty feature class for a tool's output and answers it; nothing when the user gave
//! up or the request could not be met (the user has then been told why).
//!
//! With `directory` or `name` empty the user picks the place in the browse dialog (`dialogTitle`).
//! Otherwise `outputKind` tells the storage (1 shapefile, 2 file geodatabase, 4 personal
//! geodatabase, 8 GeoPackage), and for 2 `isFeatureDataset`/`featureDatasetName` may put the class
//! into a feature dataset. A name that is taken is offered for overwriting; No brings the browse
//! dialog back. `directory`, `name`, the dataset flag and name are written back as finally used.
//!
//! Fields added ahead of the caller's `fields` (an IVariantArray of IField, or null): "Shape" and,
//! for a shapefile with `addUniqueID`, "Unique_ID"; for a geodatabase class "Object_ID". The grid
//! of a geodatabase class is sized from `envelope` and `featureCount` (see GeodatabaseGridSize).
//! `geometryType` may be changed: a line becomes a polyline in a geodatabase.
std::shared_ptr<IFeatureClass> CreateGeneralFeatureClass(
    esriGeometryType& geometryType, const std::shared_ptr<ISpatialReference>& spatialReference,
    std::string& directory, std::string& name, std::int32_t outputKind, const std::shared_ptr<IVariantArray>& fields,
    const std::string& dialogTitle, bool& isFeatureDataset, std::string& featureDatasetName,
    bool addUniqueID = false, const std::shared_ptr<IEnvelope>& envelope = nullptr, std::int32_t featureCount = 0);

//! A shapefile `name` in the folder `directory`; a directory or name given with ".shp" is reduced to
//! the folder and the bare name. A folder that does not exist gets the "Failed to Create Feature
//! Class:" message.
std::shared_ptr<IFeatureClass> CreateShapefileFeatureClass(std::string& directory, std::string& name,
                                                           const std::shared_ptr<ISpatialReference>& spatialReference,
                                                           esriGeometryType geometryType,
                                                           const std::shared_ptr<IVariantArray>& fields,
                                                           bool addUniqueID);

//! A stand-alone class of a geodatabase or GeoPackage. Without a clsid the feature type picks the
//! class identifier and may force the geometry type (written back); annotation gives nothing.
//! `outputKind` is kept for callers and changes nothing.
std::shared_ptr<IFeatureClass> CreateGDBFeatureClass(const std::shared_ptr<IFeatureWorkspace>& featureWorkspace,
                                                     const std::string& name, esriFeatureType featureType,
                                                     const std::shared_ptr<ISpatialReference>& spatialReference,
                                                     esriGeometryType& geometryType,
                                                     const std::shared_ptr<IVariantArray>& fields,
                                                     std::shared_ptr<IUID> clsid, std::shared_ptr<IUID> extclsid,
                                                     const std::string& configKeyword, std::int32_t outputKind,
                                                     const std::shared_ptr<IEnvelope>& envelope,
                                                     std::int32_t featureCount);

//! A class inside a feature dataset, which gives it its spatial reference.
std::shared_ptr<IFeatureClass> CreateDatasetFeatureClass(const std::shared_ptr<IFeatureDataset>& featureDataset,
                                                         const std::string& name, esriFeatureType featureType,
                                                         esriGeometryType& geometryType,
                                                         const std::shared_ptr<IVariantArray>& fields,
                                                         std::shared_ptr<IUID> clsid, std::shared_ptr<IUID> extclsid,
                                                         const std::string& configKeyword);

//! Cell size of the spatial grid of a new geodatabase class, in coordinate units: 100 by default;
//! with a non-empty envelope and a count above 0, the side of a square holding 200 features'
//! share of the envelope, limited to its width, then to its height.
double GeodatabaseGridSize(const std::shared_ptr<IEnvelope>& envelope, std::int32_t featureCount);

//! Whether a feature class, or a table, of that name is there (the two share one name space).
bool CheckIfFeatureClassExists(const std::shared_ptr<IFeatureWorkspace>& featureWorkspace, const std::string& name);
//! Whether a table, or a feature class, of that name is there.
bool CheckIfTableExists(const std::shared_ptr<IFeatureWorkspace>& featureWorkspace, const std::string& name);

//! The name if free in the workspace, else name + "_2", "_3"... the first one free.
std::string MakeUniqueGDBFeatureClassName(const std::shared_ptr<IWorkspace>& workspace, const std::string& name);
std::string MakeUniqueGDBTableName(const std::shared_ptr<IWorkspace>& workspace, const std::string& name);
//! A full path that is free: the path itself, else base + "_2" + extension and on.
std::string MakeUniqueShapeFilename(const std::string& path);
std::string MakeUniquedBASEName(const std::string& path);

//! The text with every character outside letters, digits and "_" (and ".", "\" and the blank
//! when told to keep them) replaced by "_"; "z" in front of a first character that is no letter
//! when `prefixFirstLetter`. An empty text gives "z".
std::string ReplaceBadChars(const std::string& text, bool replaceDot, bool replaceBackslash, bool replaceBlank,
                            bool prefixFirstLetter);

//! A legal dBASE field name (at most 10 characters, starting with a letter, of letters, digits
//! and "_") that differs, ignoring case, from every name of `existingFields`: an IFields, an
//! IVariantArray of IField objects or strings, or an IStringArray (anything else: no names).
//! "2009 area (km)" gives "z2009_area"; a clash with "Area" gives "Area2".
std::string ReturnDBASEFieldName(const std::string& name, const Variant& existingFields);

//! For each entry of `selectedFields` (an IField, or with `useArrayElements` an IStringArray of
//! source name and output name) a row of four: source name, its index in fromClass, output name,
//! its index in toClass.
std::shared_ptr<IVariantArray> MakeFieldNameVarArray(const std::shared_ptr<IClass>& fromClass,
                                                     const std::shared_ptr<IClass>& toClass,
                                                     const std::shared_ptr<IVariantArray>& selectedFields,
                                                     bool useArrayElements);

//! The binary digits of value (at least 1), padded with "0" in front to `width` characters.
//! A value below 1 has no such digits: an InvalidCall Fault, reported.
std::string ConvertLongBinary(std::int32_t value, std::int32_t width);

//! Layer type bits of ReturnLayersByType.
namespace layer_type {
inline constexpr std::int32_t Feature = 1;
inline constexpr std::int32_t Raster = 2;
inline constexpr std::int32_t Table = 4;
inline constexpr std::int32_t Point = 8;
inline constexpr std::int32_t Polyline = 16;
inline constexpr std::int32_t Polygon = 32;
inline constexpr std::int32_t Multipoint = 64;
inline constexpr std::int32_t Tin = 128;
inline constexpr std::int32_t Special = 256;
} // namespace layer_type

//! The valid layers of the map whose kind has its bit in `flags` (group members included, in map
//! order), then the stand-alone tables when bit 4 is on. Items are ILayer or IStandaloneTable.
std::shared_ptr<IVariantArray> ReturnLayersByType(const std::shared_ptr<IMap>& map, std::int32_t flags);

//! True for a file geodatabase dataset stored compressed ("Datafile Format" 1).
bool CheckDatafileFormat(const std::shared_ptr<IDataset>& dataset);

} // namespace tess
