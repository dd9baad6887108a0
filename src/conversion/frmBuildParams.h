#pragma once
// The dialog in front of polygon building: the polyline layer, all or selected
// polylines, the cluster tolerance, the label point layer with its fields and
// rules, and the output feature class. It leaves the user's choices on the
// extension object.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/ui/Form.h"

namespace tess {

class AnchorObjectList;
class IApplication;
class IFeatureLayer;
class IMxDocument;
class IVariantArray;
class clsExtension;

class frmBuildParams final : public Form {
public:
    frmBuildParams();
    ~frmBuildParams() override;

    //! Sets the whole form up from the application's map: the point and polyline layers, the
    //! default tolerance and output. Sets the extension's ShouldContinue false, so that any way of
    //! closing but OK cancels the run.
    void ArcApplication(const std::shared_ptr<IApplication>& application);
    //! The manual that the Manual button opens.
    void ManualPath(const std::string& path) { manualPath_ = path; }

    // The output as the form keeps it (browse and typing change it).
    const std::string& OutputDirectory() const { return directory_; }
    const std::string& OutputName() const { return name_; }
    std::int32_t OutputKind() const { return kind_; }

protected:
    void Form_Load() override;
    void Form_Unload() override;
    void Form_Resize() override;

private:
    void lbxLayers_Click();
    void cbxPointLayers_Click();
    void chkUseLabelPoints_Click();
    void txtCluster_KeyPress(EventArgs& args);
    void cmdSelFields_Click();
    void cmdGetWorkspace_Click();
    void txtOutput_Change();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdManual_Click();
    void Choose(const char* on, const char* off);

    void SetLabelPointParams();
    void CheckOK();
    void UpdateSelName();
    void SetDefaultOutput(std::string defaultName);
    void FindExtension();
    std::shared_ptr<IFeatureLayer> CurrentLayer() const;
    std::shared_ptr<IFeatureLayer> CurrentPointLayer() const;

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;
    std::shared_ptr<clsExtension> extension_;
    std::shared_ptr<IVariantArray> layers_;      // polyline layers, in map order
    std::shared_ptr<IVariantArray> pointLayers_; // point layers, parallel to cbxPointLayers
    std::shared_ptr<IVariantArray> fieldList_;   // fields of the point layer, parallel to lbxFields
    bool allSelected_ = false;
    bool pointSelectionUsable_ = false; // the point layer has a selection of at least one point
    std::string preferredLayer_;
    std::string directory_;
    std::string name_;
    std::int32_t kind_ = 0;
    bool isFeatureDataset_ = false;
    std::string datasetName_;
    std::string manualPath_;
    std::unique_ptr<AnchorObjectList> anchors_;
};

//! What the command does with its dialog: creates it, gives it the application, shows it modally
//! and lets it go.
void ShowBuildParamsDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath);

} // namespace tess
