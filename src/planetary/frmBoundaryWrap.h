#pragma once
// The dialog of the wrap to a boundary: a layer in geographic coordinates, the
// box (-180..180, 0..360 or a custom one), a longitudinal shift and the output.
// On OK it leaves the run's argument list in the extension's
// frmBoundaryWrapReturn and remembers the box, shift and option there.

#include <memory>
#include <string>

#include "planetary/frmPlanetaryDialog.h"

namespace tess {

class frmBoundaryWrap final : public frmPlanetaryDialog {
public:
    frmBoundaryWrap();
    ~frmBoundaryWrap() override;

    //! Finds the extension (ShouldContinue false, no argument list), fills the layers, restores
    //! the remembered box, option and shift, and proposes an output.
    void ArcApplication(const std::shared_ptr<IApplication>& application);

private:
    void SetOption(const char* option);
    void cmdOK_Click();
    //! The custom box's value, or false after the message that names it.
    bool ReadBoundary(const char* box, const char* what, double& value);
};

//! What the wrap command does with its dialog: creates it, gives it the application, shows it
//! modally and lets it go.
void ShowBoundaryWrapDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath);

} // namespace tess
