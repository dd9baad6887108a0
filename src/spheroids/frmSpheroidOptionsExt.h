#pragma once
// The spheroid dialog of the geometry calculator: the same choice of spheroid,
// and whether the data's latitudes are planetographic or planetocentric.

#include "spheroids/frmSpheroidOptions.h"

namespace tess {

class frmSpheroidOptionsExt final : public frmSpheroidOptions {
public:
    frmSpheroidOptionsExt();

protected:
    //! CurrentSpheroidGeocentric from optCentric.
    void WriteExtra(clsExtension& extension) override;

private:
    void cmdHelp_Click();
};

//! The help text of the two latitude definitions (RTF).
std::string CentricVsGraphicHelp();

} // namespace tess
