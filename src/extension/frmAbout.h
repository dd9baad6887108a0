#pragma once
// The About box: what the extension does, its version, the way to the manual
// and to the desktop's system information tool, and the maker's contacts.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/ui/Form.h"

namespace tess {

class AnchorObjectList;
class IApplication;
enum class RegistryHive;

//! The registry stand-in key and value that may name the system information tool.
inline constexpr const char* kSysInfoKey = "Software\\Shared Tools\\System Information";
inline constexpr const char* kSysInfoValue = "PATH";

class frmAbout final : public Form {
public:
    //! Starts a program without waiting for it; false when it could not be started.
    using ProgramLauncher = std::function<bool(const std::string& program)>;

    frmAbout();
    ~frmAbout() override;

    void ArcApplication(const std::shared_ptr<IApplication>& application) { application_ = application; }
    //! Replaces the way programs are started (tests).
    void Launcher(ProgramLauncher launcher) { launcher_ = std::move(launcher); }

    //! The text of Text1, in RTF.
    static std::string AboutText();
    //! The programs tried, in order, when the registry names no system information tool.
    static const std::vector<std::string>& KnownSysInfoPrograms();
    //! The system information tool: the one the registry names, if that file exists, else the
    //! first known program on PATH; nothing when there is none.
    static std::optional<std::string> FindSysInfoProgram();

    // Pointer moves that a host forwards (the forms have no such event of their own).
    //! Over a contact label: its text turns red.
    void Contact_MouseMove(const std::string& label);
    //! Over the form or the bottom picture: the contact labels turn back to blue.
    void Form_MouseMove();
    void imgBottomInset_MouseMove() { Form_MouseMove(); }

    //! The contact labels and the addresses their clicks open.
    static const std::vector<std::pair<std::string, std::string>>& Contacts();

protected:
    void Form_Load() override;
    void Form_Resize() override;

private:
    void cmdOK_Click();
    void cmdManual_Click();
    void cmdSysInfo_Click();
    void Contact_Click(const std::string& label);

    std::shared_ptr<IApplication> application_;
    std::unique_ptr<AnchorObjectList> anchors_;
    ProgramLauncher launcher_;
};

//! Reads a string value of the registry stand-in; false when the key or value is not there.
bool GetKeyValue(RegistryHive root, const std::string& key, const std::string& name, std::string& value);

} // namespace tess
