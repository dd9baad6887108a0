#pragma once
// What the wrap dialog and the planetary dialog share: the list of the map's
// feature layers in geographic coordinates, the longitudinal shift box, and the
// output feature class (typed or browsed) with the field list and field map
// that the run's output description carries.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/ui/Form.h"

namespace tess {

class IApplication;
class IFeatureLayer;
class IMxDocument;
class IVariantArray;
class clsExtension;

// Captions of the two standard ranges, in both dialogs.
inline constexpr const char* kWrap180Caption = "Wrap Longitude around -180° to 180° Range";
inline constexpr const char* kWrap360Caption = "Wrap Longitude around 0° to 360° Range";

class frmPlanetaryDialog : public Form {
public:
    ~frmPlanetaryDialog() override;

    //! The manual that the Manual button opens.
    void ManualPath(const std::string& path) { manualPath_ = path; }

    // The output as the form keeps it (browse and typing change it).
    const std::string& OutputDirectory() const { return directory_; }
    const std::string& OutputName() const { return name_; }
    //! output_kind: 1 shapefile, 2 file geodatabase, 4 personal geodatabase, 8 GeoPackage.
    std::int32_t OutputKind() const { return kind_; }
    //! The shift as the form holds it: the last valid text of txtLongShift (degrees).
    double LongShift() const { return shift_; }

protected:
    explicit frmPlanetaryDialog(const std::string& name);
    //! Connects the shared controls' events; the derived form calls it once its controls exist.
    void WireSharedControls();

    //! Keeps the application and its document, finds the extension and sets its ShouldContinue
    //! false, so that any way of closing but OK cancels the run.
    void Attach(const std::shared_ptr<IApplication>& application, std::shared_ptr<clsExtension> extension);
    //! Fills lbxLayers with the valid feature layers whose reference is geographic, in map order,
    //! and clicks the layer chosen in the map (else the first).
    void FillLayers();
    //! Proposes a unique "Output.shp" (or "Output" in a geodatabase) in the remembered place, or
    //! beside the map document when that place is gone.
    void SetDefaultOutput(std::string directory, const std::string& directoryType);
    void ShowShift(double shift);
    std::shared_ptr<IFeatureLayer> CurrentLayer() const;
    //! False, after the message, when the output's workspace does not exist.
    bool CheckWorkspace();
    //! The output description of the run (see output_description) for the layer, and the output
    //! place written to the extension.
    std::shared_ptr<IVariantArray> OutputDescription(const IFeatureLayer& layer);
    //! Clicks on lbxLayers after the list was filled or changed.
    virtual void lbxLayers_Click() {}
    void cmdCancel_Click();

    void Form_Load() override;
    void Form_Unload() override;

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;
    std::shared_ptr<clsExtension> extension_;
    std::shared_ptr<IVariantArray> layers_; // the listed layers, parallel to lbxLayers
    double shift_ = 0.0;
    std::string manualPath_;

private:
    void txtOutput_Change();
    void cmdGetWorkspace_Click();
    void txtLongShift_Change();

    std::string directory_;
    std::string name_;
    std::int32_t kind_ = 0;
    bool isFeatureDataset_ = false;
    std::string datasetName_;
};

} // namespace tess
