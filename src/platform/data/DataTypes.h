#pragma once
// Enumerations of the data library, with the host's values so that numbers
// kept in documents and compared in logic keep their meaning.

#include <cstdint>

namespace tess {

enum esriFieldType : std::int32_t {
    esriFieldTypeSmallInteger = 0,
    esriFieldTypeInteger = 1,
    esriFieldTypeSingle = 2,
    esriFieldTypeDouble = 3,
    esriFieldTypeString = 4,
    esriFieldTypeDate = 5,
    esriFieldTypeOID = 6,
    esriFieldTypeGeometry = 7,
    esriFieldTypeBlob = 8,
    esriFieldTypeRaster = 9,
    esriFieldTypeGUID = 10,
    esriFieldTypeGlobalID = 11,
    esriFieldTypeXML = 12,
};

enum esriFeatureType : std::int32_t {
    esriFTSimple = 1,
    esriFTSimpleJunction = 7,
    esriFTSimpleEdge = 8,
    esriFTComplexJunction = 9,
    esriFTComplexEdge = 10,
    esriFTAnnotation = 11,
    esriFTCoverageAnnotation = 12,
    esriFTDimension = 13,
    esriFTRasterCatalogItem = 14,
};

enum esriDatasetType : std::int32_t {
    esriDTAny = 1,
    esriDTContainer = 2,
    esriDTGeo = 3,
    esriDTFeatureDataset = 4,
    esriDTFeatureClass = 5,
    esriDTTable = 10,
};

enum esriWorkspaceType : std::int32_t {
    esriFileSystemWorkspace = 0,
    esriLocalDatabaseWorkspace = 1,
    esriRemoteDatabaseWorkspace = 2,
};

//! How a selection set keeps its rows; every kind keeps object IDs here.
enum esriSelectionType : std::int32_t {
    esriSelectionTypeIDSet = 1,
    esriSelectionTypeSnapshot = 2,
    esriSelectionTypeHybrid = 3,
};

enum esriSelectionOption : std::int32_t {
    esriSelectionOptionNormal = 1,
    esriSelectionOptionOnlyOne = 2,
    esriSelectionOptionEmpty = 3,
};

enum esriSetOperation : std::int32_t {
    esriSetUnion = 1,
    esriSetIntersection = 2,
    esriSetDifference = 3,
    esriSetSymDifference = 4,
};

} // namespace tess
