#pragma once
// Everything the extension shows to a person goes through IUIServices: the Qt
// host, the terminal host and the scripted test double each implement it.

#include <memory>
#include <string>

namespace tess {

enum class MsgBoxButtons { OK, OKCancel, YesNo, YesNoCancel };
enum class MsgBoxIcon { None, Information, Exclamation, Critical, Question };
//! Answers keep the host's numeric values (vbOK 1 ... vbNo 7).
enum class MsgBoxResult { OK = 1, Cancel = 2, Abort = 3, Retry = 4, Ignore = 5, Yes = 6, No = 7 };

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
};

//! The services of the running host. A host installs its own at start; until then a
//! silent default answers OK/Yes-less defaults and writes messages to stderr.
IUIServices& UI();
//! Installs the services for this process and returns the previous ones.
std::shared_ptr<IUIServices> SetUI(std::shared_ptr<IUIServices> services);

} // namespace tess
