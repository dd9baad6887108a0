#pragma once
// One-click commands on the graphic elements of the focus map (also while the
// page layout is shown): select all, unselect all, flip the selection and zoom
// to the selected. Each repaints only the area its elements cover.

#include "extension/CommandBase.h"

namespace tess {

//! Ratio by which the repainted area grows around the elements that changed, so that their
//! selection handles are repainted too.
inline constexpr double kRepaintExpandRatio = 1.1;
//! Ratio by which the zoomed extent grows around the selected elements.
inline constexpr double kZoomExpandRatio = 1.05;

class clsSelAllElements final : public CommandBase {
public:
    static constexpr const char* ProgID = "Tessarine.clsSelAllElements";
    clsSelAllElements() : CommandBase("clsSelAllElements") {}
    void OnClick() override;
};

class clsUnselElements final : public CommandBase {
public:
    static constexpr const char* ProgID = "Tessarine.clsUnselElements";
    clsUnselElements() : CommandBase("clsUnselElements") {}
    void OnClick() override;
};

class clsFlipGraphicSel final : public CommandBase {
public:
    static constexpr const char* ProgID = "Tessarine.clsFlipGraphicSel";
    clsFlipGraphicSel() : CommandBase("clsFlipGraphicSel") {}
    void OnClick() override;
};

class clsZoomToSelected final : public CommandBase {
public:
    static constexpr const char* ProgID = "Tessarine.clsZoomToSelected";
    clsZoomToSelected() : CommandBase("clsZoomToSelected") {}
    void OnClick() override;
};

} // namespace tess
