#pragma once
// The dialog in front of the eight conversions: the input layer, the fields to
// carry over, all or selected records, and the output feature class. It leaves
// the user's choices on the extension object, and is told which conversion it
// serves through ConversionOption.

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

//! The values of ConversionOption, one per conversion command.
namespace conversion_option {
inline constexpr std::int32_t Vertices = 1;
inline constexpr std::int32_t LabelPoints = 2;
inline constexpr std::int32_t Centroids = 4;
inline constexpr std::int32_t SphericalCentroids = 8;
inline constexpr std::int32_t PolylinesToPolygons = 16;
inline constexpr std::int32_t PolygonsToPolylines = 32;
inline constexpr std::int32_t SplitMultipart = 64;
inline constexpr std::int32_t Combine = 128;
} // namespace conversion_option

class frmLayerFields final : public Form {
public:
    frmLayerFields();
    ~frmLayerFields() override;

    //! Keeps the application and its document, takes the layer chosen in the table of contents as
    //! the preferred layer, finds the extension and sets its ShouldContinue false, so that any
    //! way of closing but OK cancels the run.
    void ArcApplication(const std::shared_ptr<IApplication>& application);
    //! Fills the whole form for one conversion (see conversion_option). Any other value leaves the
    //! lists empty and still proposes an output.
    void ConversionOption(std::int32_t option);
    std::int32_t ConversionOption() const { return option_; }
    //! The manual that the Manual button opens.
    void ManualPath(const std::string& path) { manualPath_ = path; }

    // The output as the form keeps it (browse and typing change it).
    const std::string& OutputDirectory() const { return directory_; }
    const std::string& OutputName() const { return name_; }
    //! output_kind: 1 shapefile, 2 file geodatabase, 4 personal geodatabase, 8 GeoPackage.
    std::int32_t OutputKind() const { return kind_; }
    bool IsFeatureDataset() const { return isFeatureDataset_; }
    const std::string& FeatDatasetName() const { return datasetName_; }

protected:
    void Form_Load() override;
    void Form_Unload() override;
    void Form_Resize() override;

private:
    void lbxLayers_Click();
    void cmdSelFields_Click();
    void optAll_Click();
    void optSel_Click();
    void txtOutput_Change();
    void cmdGetWorkspace_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdManual_Click();

    void FillLayers(std::int32_t layerMask);
    void SetDefaultOutput(std::string defaultName);
    void ShowOutputPath();
    void UpdateSelName();
    void UpdateOKState();
    std::shared_ptr<IFeatureLayer> CurrentLayer() const;
    void FindExtension();

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;
    std::shared_ptr<clsExtension> extension_;
    std::int32_t option_ = 0;
    std::shared_ptr<IVariantArray> layers_;    // candidates, in map order
    std::shared_ptr<IVariantArray> fieldList_; // fields of the current layer, parallel to lbxFields
    bool allSelected_ = false;
    std::string preferredLayer_;
    std::string directory_;
    std::string name_;
    std::int32_t kind_ = 0;
    bool isFeatureDataset_ = false;
    std::string datasetName_;
    std::string manualPath_;
    std::unique_ptr<AnchorObjectList> anchors_;
};

//! What a conversion command does with its dialog: creates it, gives it the application and the
//! conversion option, shows it modally and lets it go.
void ShowLayerFieldsDialog(const std::shared_ptr<IApplication>& application, std::int32_t conversionOption,
                           const std::string& manualPath);

} // namespace tess
