#pragma once
// The conversion workers: each turns the features of one layer into a new
// feature class and answers the report of the run (RTF). All share one
// signature, the one the conversion commands call them by.

#include <memory>
#include <string>

namespace tess {

struct ConversionRequest;
class IApplication;
class IFeatureLayer;
class IVariantArray;
class clsExtension;

//! Every vertex of every polyline, polygon and multipoint feature as a point, in the shape's own
//! order: all parts one after the other, a ring's closing vertex as a point of its own. Each point
//! carries Uniq_ID (from 1 across the run), X_Coord and Y_Coord in the input's coordinates, and
//! the selected attributes of its feature.
std::string ConvertToVertices(const std::shared_ptr<IFeatureLayer>& layer,
                              const std::shared_ptr<IVariantArray>& selectedFields, bool doAllRecords,
                              const std::string& outputPath, const std::shared_ptr<IApplication>& application,
                              const std::shared_ptr<clsExtension>& extension, bool showProgress, bool reserved);
//! The same with every choice in one request (and a clock of the caller's).
std::string ConvertToVertices(const ConversionRequest& request);

} // namespace tess
