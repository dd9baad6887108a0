#pragma once
// The dialog that picks or types a spheroid: from the custom file, the
// planetary list or the common Earth list, or by its two radii. It answers
// through the extension's CurrentSpheroid* properties, never by a return value:
// CurrentSpheroidCanceled is true from the moment it opens until OK.

#include <memory>
#include <string>

#include "platform/ui/Form.h"

namespace tess {

class Collection;
class IVariantArray;
class clsExtension;

class frmSpheroidOptions : public Form {
public:
    frmSpheroidOptions();
    ~frmSpheroidOptions() override;

    //! Opens the dialog on the spheroid now in use: application, extension, name, semi-major
    //! and semi-minor axis (metres), in that order.
    void ArcApplication(const std::shared_ptr<IVariantArray>& setup);
    //! The manual that the Manual button opens.
    void ManualPath(const std::string& path) { manualPath_ = path; }

    // The working choice, as OK would hand it on.
    const std::string& WorkingName() const { return name_; }
    double WorkingMajor() const { return major_; }
    double WorkingMinor() const { return minor_; }

protected:
    //! name: the form's name; caption: its title.
    frmSpheroidOptions(const std::string& name, const std::string& caption);
    //! What OK writes besides name and axes.
    virtual void WriteExtra(clsExtension&) {}

    std::shared_ptr<clsExtension> extension_;

private:
    void Build(const std::string& caption);
    void LoadRow(const std::shared_ptr<Collection>& rows, const std::string& comboName);
    void ShowAxes();
    void CheckOK();
    void AxisChange(const std::string& box, double& axis);
    void cmdOK_Click();
    void cmdCancel_Click();

    std::shared_ptr<Collection> custom_;
    std::shared_ptr<Collection> planets_;
    std::shared_ptr<Collection> earth_;
    std::string receivedName_;
    double receivedMajor_ = 0;
    double receivedMinor_ = 0;
    std::string name_;
    double major_ = 0;
    double minor_ = 0;
    bool guard_ = false; // false while the dialog writes the text boxes itself
    std::string manualPath_;
};

//! The radius as the dialogs show it: 13 decimals, trailing zeros and then the point cut.
std::string SpheroidAxisText(double axis);

} // namespace tess
