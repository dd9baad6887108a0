#pragma once
// The dialog that gives one name to all, or to the selected, graphic elements
// of the focus map. Groups are named as wholes; their members keep their names.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/ui/Form.h"

namespace tess {

class IApplication;
class IMxDocument;

class frmNameElements final : public Form {
public:
    frmNameElements();
    ~frmNameElements() override;

    //! Keeps the application and its document, counts all and the selected elements of the focus
    //! map and chooses the option: the selected ones when there are any.
    void ArcApplication(const std::shared_ptr<IApplication>& application);
    void ManualPath(const std::string& path) { manualPath_ = path; }

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdManual_Click();
    void optAll_Click();
    void optSel_Click();

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;
    std::int32_t selectedCount_ = 0;
    std::int32_t allCount_ = 0;
    std::string manualPath_;
};

void ShowNameElementsDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath);

} // namespace tess
