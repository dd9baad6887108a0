#pragma once
// The dialog that selects graphic elements by their kind, by names picked from
// a list, or by a typed name pattern. It works on the container of the view on
// show: the page layout in layout view, the focus map otherwise. It only adds
// to the selection.

#include <array>
#include <cstddef>
#include <memory>
#include <string>

#include "platform/ui/Form.h"

namespace tess {

class AnchorObjectList;
class Collection;
class IApplication;
class IElement;
class IGraphicsContainer;
class IMxDocument;
class IStringArray;
class IVariantArray;
class clsExtension;

//! Whether `name` matches `pattern`, ignoring case: "*" stands for any run of characters and
//! "&" for any one character; every other character stands for itself.
bool GraphicNameMatches(const std::string& name, const std::string& pattern);

class frmSelectGraphics final : public Form {
public:
    //! The kinds in the dialog's order: an element counts under the first it answers to.
    static constexpr std::size_t kTypeCount = 11;
    //! The check box of each kind, in that order.
    static const std::array<const char*, kTypeCount>& TypeBoxes();

    frmSelectGraphics();
    ~frmSelectGraphics() override;

    //! Keeps the application and its document, finds the extension and fills the form.
    void ArcApplication(const std::shared_ptr<IApplication>& application);
    void ManualPath(const std::string& path) { manualPath_ = path; }

    //! Counts the elements of the container by kind and collects their names.
    void FillGraphicsOptions();

protected:
    void Form_Load() override;
    void Form_Unload() override;
    void Form_Resize() override;

private:
    void cmdOK_Click();
    void cmdClose_Click();
    void cmdHelp_Click();
    std::shared_ptr<IGraphicsContainer> Container() const;

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;
    std::shared_ptr<clsExtension> extension_;
    std::array<std::shared_ptr<IVariantArray>, kTypeCount> typeLists_;
    std::array<bool, kTypeCount> typeFound_{};
    std::shared_ptr<IStringArray> names_;          // every name met, in container order
    std::shared_ptr<Collection> elementsByName_;   // name -> IVariantArray of its elements
    std::shared_ptr<Collection> nameByLine_;       // list line -> name
    bool anyName_ = false;
    std::string manualPath_;
    std::unique_ptr<AnchorObjectList> anchors_;
};

void ShowSelectGraphicsDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath);

} // namespace tess
