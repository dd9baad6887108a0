#pragma once
// The eight conversion commands. They share the layer-and-fields dialog, told
// apart by the conversion option, and each has its own worker and the record
// count above which the worker opens its progress dialog.

#include <cstdint>
#include <optional>

#include "extension/CommandBase.h"
#include "extension/ToolRuns.h"

namespace tess {

namespace detail {
class ConversionCommand : public CommandBase {
public:
    //! The dialog, then (after OK) the worker, the report, and a dirty document.
    void OnClick() override;

    std::int32_t ConversionOption() const { return option_; }
    //! Record count above which the progress dialog is wanted; nothing: always wanted.
    std::optional<std::int32_t> ProgressThreshold() const { return threshold_; }

protected:
    ConversionCommand(std::string_view className, std::int32_t option, ConversionWorker ToolRuns::*worker,
                      std::optional<std::int32_t> progressThreshold)
        : CommandBase(className), option_(option), worker_(worker), threshold_(progressThreshold) {}

private:
    std::int32_t option_;
    ConversionWorker ToolRuns::*worker_;
    std::optional<std::int32_t> threshold_;
};
} // namespace detail

// Record counts above which a conversion opens its progress dialog: the planar runs are quick,
// the spherical centroid costs far more per feature.
inline constexpr std::int32_t kQuickRunThreshold = 500;    //!< features
inline constexpr std::int32_t kLightRunThreshold = 2000;   //!< features
inline constexpr std::int32_t kSphericalRunThreshold = 20; //!< features

class clsShapesToVertices final : public detail::ConversionCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsShapesToVertices";
    clsShapesToVertices()
        : ConversionCommand("clsShapesToVertices", 1, &ToolRuns::ConvertToVertices, kQuickRunThreshold) {}
};

class clsConvertLabelpoint final : public detail::ConversionCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsConvertLabelpoint";
    clsConvertLabelpoint()
        : ConversionCommand("clsConvertLabelpoint", 2, &ToolRuns::ConvertToLabelPoints, kLightRunThreshold) {}
};

class clsConvertCentroid final : public detail::ConversionCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsConvertCentroid";
    clsConvertCentroid()
        : ConversionCommand("clsConvertCentroid", 4, &ToolRuns::ConvertToCentroids, kLightRunThreshold) {}
};

class clsConvertSphCentroid final : public detail::ConversionCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsConvertSphCentroid";
    clsConvertSphCentroid()
        : ConversionCommand("clsConvertSphCentroid", 8, &ToolRuns::ConvertToSphericalCentroid,
                            kSphericalRunThreshold) {}
};

class clsConvertToPolygon final : public detail::ConversionCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsConvertToPolygon";
    clsConvertToPolygon()
        : ConversionCommand("clsConvertToPolygon", 16, &ToolRuns::PolylinesToPolygons, kQuickRunThreshold) {}
};

class clsConvertToPolyline final : public detail::ConversionCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsConvertToPolyline";
    clsConvertToPolyline()
        : ConversionCommand("clsConvertToPolyline", 32, &ToolRuns::PolygonsToPolylines, kQuickRunThreshold) {}
};

class clsConvertSplit final : public detail::ConversionCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsConvertSplit";
    clsConvertSplit() : ConversionCommand("clsConvertSplit", 64, &ToolRuns::SplitMultipart, kLightRunThreshold) {}
};

//! Combining features never shows a progress dialog; its worker is told true and ignores it.
class clsConvertJoin final : public detail::ConversionCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsConvertJoin";
    clsConvertJoin() : ConversionCommand("clsConvertJoin", 128, &ToolRuns::JoinFeatures, std::nullopt) {}
};

} // namespace tess
