#pragma once
// The report window: shows the rich-text report of a run, read-only, with
// Exit, Print and Copy to Clipboard. It knows nothing of the report's content.

#include <memory>
#include <string>

#include "platform/ui/Form.h"

namespace tess {

class AnchorObjectList;

class frmReport_modal final : public Form {
public:
    frmReport_modal();
    ~frmReport_modal() override;

    //! Shows `rtf` in a new report window, modally, as the commands do after a run.
    static void ShowReport(const std::string& rtf);

protected:
    void Form_Load() override;
    void Form_Resize() override;

private:
    void cmdOK_Click();
    void cmdCopy_Click();
    void cmdPrint_Click();

    std::unique_ptr<AnchorObjectList> anchors_;
};

} // namespace tess
