#pragma once
// `tessarine wrap`, `tessarine ocentric-to-ographic` and `tessarine
// ographic-to-ocentric`: their options, and the drivers that answer the wrap
// dialog, the planetary dialog and its spheroid dialog from them as a user
// would: the layer, the box or range, the shift, the spheroid and the output,
// then OK. The dialogs' own rules and messages apply; options that do not fit
// end the run as bad usage with nothing written.

#include <optional>
#include <string>

#include "TerminalUI.h"

namespace CLI {
class App;
}

namespace tess::cli {

struct RunOptions;

//! --input, --output, --range, --shift, and --box for the wrap or --spheroid for the conversions.
void AddPlanetaryOptions(CLI::App& sub, RunOptions& run, bool wrap);

//! The help's closing text of the wrap and of the two conversions.
extern const char* const kWrapExamples;
extern const char* const kGeoCentricExamples;

//! Registers the drivers of frmBoundaryWrap, frmGeoCentric and frmSpheroidOptions.
void RegisterPlanetaryDrivers(const RunOptions& options, TerminalUI& ui);

//! Why a run that ended with this report wrote nothing (no output class was made); nothing when
//! it ran.
std::optional<std::string> PlanetaryFailure(const std::string& report);

} // namespace tess::cli
