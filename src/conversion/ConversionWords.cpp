#include "conversion/ConversionWords.h"

namespace tess {
namespace {

constexpr std::string_view kConvertAll = "Convert All Records (n = ";
constexpr std::string_view kConvertSelected = "Convert Selected Records (n = ";

} // namespace

const ConversionWords kVerticesWords{
    "Generating Vertices from ",
    "Extracting Vertices...",
    "Extracting Vertices...",
    R"(\b Empty Geometries Found:\b0  These features were skipped in the analysis...\par)",
    "Specify New Vertex Feature Class Name:",
    "Shapes to Vertices",
    kConvertAll,
    kConvertSelected,
    " vertex points",
};

// The loop of the label points repeats the centroids' words, and that of the centroids the
// spherical centroids' words; users know the windows so.
const ConversionWords kLabelPointsWords{
    "Generating Label Points from ",
    "Calculating Label Points...",
    "Calculating Centroids...",
    R"(\b Empty Polygons Found:\b0  These features were skipped in the analysis...\par)",
    "Specify New Label Point Feature Class Name:",
    "Polygons to Label Points",
    kConvertAll,
    kConvertSelected,
    " label points",
};

const ConversionWords kCentroidsWords{
    "Generating Centroids from ",
    "Calculating Centroids...",
    "Calculating Spherical Centroids...",
    R"(\b Empty Geometries Found:\b0  These features were skipped in the analysis...\par)",
    "Specify New Centroid Feature Class Name:",
    "Shapes to Centroids",
    kConvertAll,
    kConvertSelected,
    " centroids",
};

const ConversionWords kSphericalCentroidsWords{
    "Generating Spherical Centroids from ",
    "Calculating Spherical Centroids...",
    "Calculating Spherical Centroids...",
    R"(\b Empty Features Found:\b0  These features were skipped in the analysis...\par)",
    "Specify New Spherical Centroid Feature Class Name:",
    "Features to Spherical Centroids",
    kConvertAll,
    kConvertSelected,
    " spherical centroids",
};

const ConversionWords kPolylinesToPolygonsWords{
    "Generating Polygons from ",
    "Converting Polylines to Polygons...",
    "Converting Polylines to Polygons...",
    R"(\b Empty Polylines Found:\b0  These features were skipped in the analysis...\par)",
    "Specify New Polygon Feature Class Name:",
    "Polylines to Polygons",
    kConvertAll,
    kConvertSelected,
    " polygons",
};

const ConversionWords kPolygonsToPolylinesWords{
    "Generating Polylines from ",
    "Converting Polygons to Polylines...",
    "Converting Polygons to Polylines...",
    R"(\b Empty Polygons Found:\b0  These features were skipped in the analysis...\par)",
    "Specify New Polyline Class Name:",
    "Polygons to Polylines",
    kConvertAll,
    kConvertSelected,
    " polylines",
};

const ConversionWords kSplitMultipartWords{
    "Splitting Multipart Features from ",
    "Splitting Multipart Features...",
    "Splitting Multipart Features...",
    R"(\b Empty Features Found:\b0  These features were skipped in the analysis...\par)",
    "Specify New Feature Class Name:",
    "Split Multipart Shapes",
    "Split All Records (n = ",
    "Split Selected Records (n = ",
    " features",
};

// Combining never shows a progress window, so it has no action words.
const ConversionWords kJoinFeaturesWords{
    "Joining Features from ",
    "",
    "",
    R"(\b Empty Features Found:\b0  These features were skipped in the analysis...\par)",
    "Specify New Merged Feature Class Name:",
    "Join Features",
    "Joined All Records (n = ",
    "Joined Selected Records (n = ",
    " feature",
};

} // namespace tess
