#pragma once
// Commands whose dialog does all the work: the click opens the dialog modally
// and everything further happens inside it.

#include "extension/CommandBase.h"
#include "extension/ToolRuns.h"

namespace tess {

namespace detail {
//! A command that shows one dialog of the tool table.
class DialogCommand : public CommandBase {
public:
    void OnClick() override;

protected:
    DialogCommand(std::string_view className, DialogRun ToolRuns::*dialog)
        : CommandBase(className), dialog_(dialog) {}
    //! The application the dialog is given.
    virtual std::shared_ptr<IApplication> DialogApplication() const { return application_; }

private:
    DialogRun ToolRuns::*dialog_;
};
} // namespace detail

//! Graphic elements to shapes: frmGraphicsShapefile.
class cmdNewShapefile final : public detail::DialogCommand {
public:
    static constexpr const char* ProgID = "Tessarine.cmdNewShapefile";
    cmdNewShapefile() : DialogCommand("cmdNewShapefile", &ToolRuns::GraphicsShapefileDialog) {}
};

//! Select graphic elements by type or name: frmSelectGraphics.
class clsSelGraphics final : public detail::DialogCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsSelGraphics";
    clsSelGraphics() : DialogCommand("clsSelGraphics", &ToolRuns::SelectGraphicsDialog) {}
};

//! Name graphic elements: frmNameElements, given the document's application.
class clsNameGraphics final : public detail::DialogCommand {
public:
    static constexpr const char* ProgID = "Tessarine.clsNameGraphics";
    clsNameGraphics() : DialogCommand("clsNameGraphics", &ToolRuns::NameElementsDialog) {}

protected:
    std::shared_ptr<IApplication> DialogApplication() const override;
};

//! The About box, frmAbout.
class cmdAbout final : public CommandBase {
public:
    static constexpr const char* ProgID = "Tessarine.cmdAbout";
    cmdAbout() : CommandBase("cmdAbout") {}
    void OnClick() override;
};

} // namespace tess
