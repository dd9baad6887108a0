#pragma once
// The dialog of the geometry calculator: the layer, the measures that its shape
// kind and coordinate kind offer (from the catalogue), a field name for each,
// all or selected records and, for geographic data, another spheroid. It checks
// the names against the rules of the layer's storage, asks before existing
// numeric fields are overwritten, and leaves its choices in the extension's
// GeometryOptions. It calculates nothing.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "calculator/MeasureCatalogue.h"
#include "platform/ui/Form.h"

namespace tess {

class IApplication;
class IFeatureLayer;
class IMxDocument;
class IVariantArray;
class clsExtension;

class frmGeometry final : public Form {
public:
    frmGeometry();
    ~frmGeometry() override;

    //! Keeps the application, finds the extension (ShouldContinue false), fills the layer list
    //! with the map's point, polyline, polygon and multipoint layers and picks the layer chosen
    //! in the map, else the first.
    void ArcApplication(const std::shared_ptr<IApplication>& application);
    //! The form's own background colour (blue-green-red), set when it loads.
    std::uint32_t BackColor = 0;

    //! The manual that the Manual button opens.
    void ManualPath(const std::string& path) { manualPath_ = path; }

    // The spheroid as the dialog holds it (the layer's own, or the one chosen by Advanced).
    const std::string& SpheroidName() const { return spheroidName_; }
    double SemiMajor() const { return semiMajor_; }
    double SemiMinor() const { return semiMinor_; }
    bool Geocentric() const { return geocentric_; }
    //! The flags of the combo boxes in use for the current layer.
    const ComboFlags& ComboUseFlags() const { return flags_; }

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    void SetGeometryControls();
    void FillComboBox(Control& combo, const std::string& defaultName);
    void CheckComboBoxEntry(Control& combo);
    void CheckOK();
    bool FieldExists(const std::string& name) const;
    void ShowSpheroidLine(std::int32_t spatialKind);
    void chk_Click(std::int32_t id);
    void cmdAdvanced_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    //! Asks with the long Yes/No box; true for Yes.
    bool Confirm(const std::string& text, const std::string& title);
    std::shared_ptr<IFeatureLayer> CurrentLayer() const;

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;
    std::shared_ptr<clsExtension> extension_;
    std::string selectedLayerName_;
    std::shared_ptr<IVariantArray> layers_;
    std::vector<std::string> numericFieldNames_;
    ComboFlags flags_{};
    std::string spheroidName_;
    double semiMajor_ = 0;
    double semiMinor_ = 0;
    bool geocentric_ = false;
    std::string manualPath_;
};

//! What the command does with its dialog: creates it, gives it the application, shows it
//! modally and lets it go.
void ShowGeometryDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath);

} // namespace tess
