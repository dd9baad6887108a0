#pragma once
// Everything the extension shows to a person goes through IUIServices: the Qt
// host, the terminal host and the scripted test double each implement it.

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tess {

class Form;
class ISpatialReference;

enum class MsgBoxButtons { OK, OKCancel, YesNo, YesNoCancel };
enum class MsgBoxIcon { None, Information, Exclamation, Critical, Question };
//! Answers keep the host's numeric values (vbOK 1 ... vbNo 7).
enum class MsgBoxResult { OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

//! What a catalog browse dialog is asked for (the host's GxDialog).
struct BrowseRequest {
    bool Save = true;            //!< DoModalSave; false for DoModalOpen
    std::string Title;
    std::string ButtonCaption;
    std::string StartingLocation;
    std::string Name;            //!< proposed name
    bool AllowMultiSelect = false;
    std::vector<std::string> Filters; //!< filter descriptions, the default first
};

//! The item the user chose: a location (folder, .gdb, feature dataset) and a name in it.
struct BrowseResult {
    std::string FullName;   //!< the location's path; a feature dataset is "<gdb path>/<dataset>"
    std::string Name;       //!< the name typed or picked
    std::string Category;   //!< the catalog's word for the location, e.g. "Folder", "File Geodatabase"
};

enum class MousePointer { Default = 0, Arrow = 1, Hourglass = 11 };

class IUIServices {
public:
    virtual ~IUIServices() = default;

    //! A plain message box; returns the button pressed.
    virtual MsgBoxResult MessageBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon icon,
                                    const std::string& title) = 0;
    //! The error window of the fault report: shows selectable text and waits until closed.
    virtual void ShowErrorWindow(const std::string& text) = 0;
    virtual void Beep() = 0;
    //! Lets the host process pending events (repaints, a click on Stop).
    virtual void DoEvents() = 0;
    //! Opens a document in the desktop's default viewer; false when nothing could open it.
    virtual bool OpenDocument(const std::string& path) = 0;

    //! Shows a form modally: returns when the form is unloaded or hidden.
    virtual void ShowModal(Form& form) = 0;
    //! Shows or hides a form in a modeless frame over the host (progress windows).
    virtual void ShowModeless(Form& form) = 0;
    virtual void HideModeless(Form& form) = 0;
    //! The catalog browse dialog; nothing when the user cancelled.
    virtual std::optional<BrowseResult> Browse(const BrowseRequest& request) = 0;
    //! The spatial reference dialog; nothing when cancelled.
    virtual std::shared_ptr<ISpatialReference> ChooseSpatialReference(
        const std::shared_ptr<ISpatialReference>& start) = 0;
    virtual void SetMousePointer(MousePointer pointer) = 0;
    //! Screen size in the forms' scale units, for centring windows.
    virtual double ScreenWidth() const = 0;
    virtual double ScreenHeight() const = 0;
    //! Puts a report on the clipboard in all three forms.
    virtual void CopyToClipboard(const std::string& rtf, const std::string& html, const std::string& text) = 0;
    //! Prints a report (rendered from RTF); false when cancelled or no printer.
    virtual bool PrintReport(const std::string& rtf, const std::string& title) = 0;
};

//! The services of the running host. A host installs its own at start; until then a
//! fallback that never blocks answers No/Cancel and writes messages to stderr.
IUIServices& UI();
//! Installs the services for this process and returns the previous ones.
std::shared_ptr<IUIServices> SetUI(std::shared_ptr<IUIServices> services);

} // namespace tess
