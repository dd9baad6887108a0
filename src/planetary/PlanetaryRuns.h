#pragma once
// The runs behind the wrap and the two latitude conversions: each writes a new
// feature class with every feature of the input layer's class (neither a
// selection nor a definition query limits it), its attributes carried over, and
// answers the RTF report. A feature that cannot be converted is written as it
// stands and named in the report; one bad feature never stops a run.

#include <memory>
#include <string>

#include "support/HostTime.h"

namespace tess {

class IApplication;
class IMxDocument;
class IVariantArray;
class clsExtension;

//! Wraps every feature into the box of the argument list (wrap_argument), after the shift.
std::string WrapToBoundaries(const std::shared_ptr<IApplication>& Application,
                             const std::shared_ptr<IMxDocument>& Document,
                             const std::shared_ptr<clsExtension>& Extension,
                             const std::shared_ptr<IVariantArray>& Arguments, bool ShowProgress,
                             const Clock& clock = {});

//! Planetocentric latitudes to planetographic ones on the spheroid of the argument list
//! (geocentric_argument), with the shift, then the wrap that the list asks for.
std::string CalcPlanetoCentricToPlanetoGraphic(const std::shared_ptr<IApplication>& Application,
                                               const std::shared_ptr<IMxDocument>& Document,
                                               const std::shared_ptr<clsExtension>& Extension,
                                               const std::shared_ptr<IVariantArray>& Arguments, bool ShowProgress,
                                               const Clock& clock = {});

//! Planetographic latitudes to planetocentric ones; otherwise as the other way.
std::string CalcPlanetoGraphicToPlanetoCentric(const std::shared_ptr<IApplication>& Application,
                                               const std::shared_ptr<IMxDocument>& Document,
                                               const std::shared_ptr<clsExtension>& Extension,
                                               const std::shared_ptr<IVariantArray>& Arguments, bool ShowProgress,
                                               const Clock& clock = {});

} // namespace tess
