#pragma once
// The dialog of the two latitude conversions: a layer in geographic
// coordinates, the spheroid (the layer's own, typed, or loaded from the spheroid
// dialog), a longitudinal shift, a wrap to a standard range and the output. On
// OK it leaves the run's argument list in the extension's frmGeoCentricReturn.

#include <memory>
#include <string>

#include "planetary/frmPlanetaryDialog.h"

namespace tess {

class frmGeoCentric final : public frmPlanetaryDialog {
public:
    frmGeoCentric();
    ~frmGeoCentric() override;

    //! Opens on the list: application, extension, output folder, output type (DirectoryType
    //! text), caption, instruction text.
    void ArcApplication(const std::shared_ptr<IVariantArray>& setup);

    const std::string& SpheroidName() const { return spheroidName_; }
    double SemiMajor() const { return semiMajor_; }
    double SemiMinor() const { return semiMinor_; }

private:
    void lbxLayers_Click() override;
    void ShowSpheroid();
    void AxisChange(const char* box, double& axis);
    void SetOption(const char* option);
    void cmdGetSpheroid_Click();
    void cmdOK_Click();

    std::string spheroidName_;
    double semiMajor_ = 0;
    double semiMinor_ = 0;
};

//! What the two commands do with the dialog: create it, open it on the list, show it modally.
void ShowGeoCentricDialog(const std::shared_ptr<IVariantArray>& setup, const std::string& manualPath);

} // namespace tess
