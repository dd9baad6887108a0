#pragma once
// A Yes and No question with a long text that the user can resize, for where
// the host's message box is too small. The answer goes to the extension's
// ShouldContinue: true for Yes, false for No and for closing the window.

#include <memory>

#include "platform/ui/Form.h"

namespace tess {

class AnchorObjectList;
class IApplication;
class clsExtension;

class frmMessageBox final : public Form {
public:
    frmMessageBox();
    ~frmMessageBox() override;

    //! Keeps the application, finds the extension and writes its ShouldContinue false, so that
    //! a window closed without an answer counts as No.
    void ArcApplication(const std::shared_ptr<IApplication>& application);
    const std::shared_ptr<IApplication>& ArcApplication() const { return application_; }

protected:
    void Form_Load() override;
    void Form_Resize() override;

private:
    void Answer(bool yes);

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<clsExtension> extension_;
    std::unique_ptr<AnchorObjectList> anchors_;
};

} // namespace tess
