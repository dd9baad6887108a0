#pragma once
// The commands of the calculator, polygon building, the wrap to a boundary and
// the two planetary latitude conversions: each a dialog, a worker and a report.

#include <cstdint>
#include <string>

#include "extension/CommandBase.h"
#include "extension/ToolRuns.h"

namespace tess {

class clsConvertGeometry final : public CommandBase {
public:
    static constexpr const char* ProgID = "Tessarine.clsConvertGeometry";
    clsConvertGeometry() : CommandBase("clsConvertGeometry") {}
    void OnClick() override;
};

//! Polygon building needs the host's feature construction (9.2 or later); on an older host the
//! command stays in the menu, greyed, and says why.
class clsBuildPolygon final : public CommandBase {
public:
    static constexpr const char* ProgID = "Tessarine.clsBuildPolygon";
    clsBuildPolygon() : CommandBase("clsBuildPolygon") {}

    bool Enabled() override { return !preVersion92_; }
    std::string Caption() override;
    std::string Tooltip() override;
    std::string Message() override;
    //! The common steps, then the version flag from the extension.
    void OnCreate(const std::shared_ptr<IApplication>& hook) override;
    void OnClick() override;

private:
    std::shared_ptr<clsExtension> extension_;
    bool preVersion92_ = false;
};

class clsWrapBoundary final : public CommandBase {
public:
    static constexpr const char* ProgID = "Tessarine.clsWrapBoundary";
    clsWrapBoundary() : CommandBase("clsWrapBoundary") {}
    void OnClick() override;
};

namespace detail {
//! One of the two latitude conversions; they differ in the dialog's caption and the run.
class GeoCentricCommand : public CommandBase {
public:
    void OnClick() override;

protected:
    GeoCentricCommand(std::string_view className, std::string dialogCaption, PlanetaryWorker ToolRuns::*worker)
        : CommandBase(className), dialogCaption_(std::move(dialogCaption)), worker_(worker) {}

private:
    std::string dialogCaption_;
    PlanetaryWorker ToolRuns::*worker_;
};
} // namespace detail

class OCentricToOGraphic final : public detail::GeoCentricCommand {
public:
    static constexpr const char* ProgID = "Tessarine.OCentricToOGraphic";
    OCentricToOGraphic()
        : GeoCentricCommand("OCentricToOGraphic", " Planetocentric to Planetographic:",
                            &ToolRuns::CalcPlanetoCentricToPlanetoGraphic) {}
};

class OGraphicToOCentric final : public detail::GeoCentricCommand {
public:
    static constexpr const char* ProgID = "Tessarine.OGraphicToOCentric";
    OGraphicToOCentric()
        : GeoCentricCommand("OGraphicToOCentric", " Planetographic to Planetocentric:",
                            &ToolRuns::CalcPlanetoGraphicToPlanetoCentric) {}
};

//! The instruction text of the planetary dialog.
std::string GeoCentricInstructions();

//! Whether a wrap or planetary run over this layer's whole class is large enough for the progress
//! dialog (more than 500 features). The layer is element 0 of the run's argument list.
bool IsLargePlanetaryRun(const IVariantArray& arguments);

} // namespace tess
