#include "extension/frmAbout.h"

#include "extension/ComponentFolder.h"
#include "frame/ErrorHandling.h"
#include "frame/Version.h"
#include "platform/framework/Registry.h"
#include "platform/ui/UIServices.h"
#include "support/AnchorObjectList.h"
#include "support/GeneralHelpers.h"
#include "support/ReportTemplates.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

extern char** environ;

namespace tess {
namespace {

// Layout, in pixels.
constexpr double kFormWidth = 480.0;
constexpr double kFormHeight = 400.0;

constexpr ControlSpec kControls[] = {
    {"Text1", ControlKind::RichTextBox, "", 12, 12, 456, 236},
    {"lblVersion", ControlKind::Label, "", 12, 256, 220, 18},
    {"lblMaker", ControlKind::Label, "The Tessarine Project", 12, 280, 220, 18},
    {"lblWebsite", ControlKind::Label, "https://tessarine.example.org", 12, 300, 220, 18},
    {"lblEmail", ControlKind::Label, "tessarine@example.org", 12, 320, 220, 18},
    {"cmdManual", ControlKind::CommandButton, "&Manual", 248, 256, 104, 28},
    {"cmdSysInfo", ControlKind::CommandButton, "&System Info...", 364, 256, 104, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 364, 292, 104, 28},
    {"imgBottomInset", ControlKind::Image, "", 0, 344, 480, 40},
    {"imgCornerBars", ControlKind::Image, "", 460, 380, 16, 16},
};

// Contact label colours (0xRRGGBB): blue at rest, red under the pointer.
constexpr std::uint32_t kContactColour = 0x0000C0;
constexpr std::uint32_t kContactHoverColour = 0xC00000;

constexpr const char* kSysInfoMissing = "System Information Is Unavailable At This Time";
constexpr const char* kSysInfoTitle = "System Information:";

bool IsExecutable(const std::filesystem::path& path) {
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec) && ::access(path.c_str(), X_OK) == 0;
}

std::optional<std::string> FindOnPath(const std::string& program) {
    const char* pathVariable = std::getenv("PATH");
    if (!pathVariable)
        return std::nullopt;
    const std::string paths = pathVariable;
    std::size_t start = 0;
    while (start <= paths.size()) {
        std::size_t end = paths.find(':', start);
        if (end == std::string::npos)
            end = paths.size();
        const std::string folder = paths.substr(start, end - start);
        if (!folder.empty()) {
            const std::filesystem::path candidate = std::filesystem::path(folder) / program;
            if (IsExecutable(candidate))
                return candidate.string();
        }
        start = end + 1;
    }
    return std::nullopt;
}

// Starts the program on its own; a thread waits for its end so that it leaves no zombie.
bool LaunchDetached(const std::string& program) {
    pid_t pid = 0;
    char* argv[] = {const_cast<char*>(program.c_str()), nullptr};
    if (posix_spawn(&pid, program.c_str(), nullptr, nullptr, argv, environ) != 0)
        return false;
    std::thread([pid] {
        int status = 0;
        waitpid(pid, &status, 0);
    }).detach();
    return true;
}

} // namespace

bool GetKeyValue(RegistryHive root, const std::string& key, const std::string& name, std::string& value) {
    std::optional<std::string> found = Registry().ReadString(root, key, name);
    if (!found)
        return false;
    value = *found;
    return true;
}

frmAbout::frmAbout() : Form("frmAbout"), launcher_(&LaunchDetached) {
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("Text1").Locked = true;
    for (const auto& [label, address] : Contacts()) {
        Ctl(label).ForeColor = kContactColour;
        Ctl(label).ToolTipText = address;
        On(label, FormEvent::Click, [this, name = label] { Contact_Click(name); });
    }
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdManual", FormEvent::Click, [this] { cmdManual_Click(); });
    On("cmdSysInfo", FormEvent::Click, [this] { cmdSysInfo_Click(); });
}

frmAbout::~frmAbout() = default;

const std::vector<std::pair<std::string, std::string>>& frmAbout::Contacts() {
    static const std::vector<std::pair<std::string, std::string>> contacts{
        {"lblWebsite", "https://tessarine.example.org"},
        {"lblEmail", "mailto:tessarine@example.org"},
    };
    return contacts;
}

std::string frmAbout::AboutText() {
    const std::string_view lineBreak = kReportLineBreak;
    std::string text(kReportHeader);
    text += lineBreak;
    text += Replace(kReportTitleLine, "zzzTitle", "About Tools for Tessarine Tools");
    text += lineBreak;
    text += R"(\par\pard\fs17 This extension offers tools to calculate geometric attributes of vector features, )"
            R"(and to select and name the graphic elements of a map.\par)";
    text += lineBreak;
    text += R"(\par It computes the true area and centroid of polygons on the sphere, so avoiding the )"
            R"(distortion of map projections, and the true length of polylines on the spheroid by )"
            R"(Vincenty's equations.\par)";
    text += lineBreak;
    text += R"(\par It can also create a new shapefile, either empty or by converting graphic elements )"
            R"(into features.\par)";
    text += lineBreak;
    text += R"(\par Enjoy!\par)";
    text += lineBreak;
    text += kReportEnd;
    return text;
}

const std::vector<std::string>& frmAbout::KnownSysInfoPrograms() {
    static const std::vector<std::string> programs{"hardinfo2", "hardinfo", "kinfocenter", "xfce4-about",
                                                   "gnome-system-monitor", "mate-system-monitor"};
    return programs;
}

std::optional<std::string> frmAbout::FindSysInfoProgram() {
    std::string named;
    if (GetKeyValue(RegistryHive::LocalMachine, kSysInfoKey, kSysInfoValue, named) && !named.empty())
        if (IsExecutable(named))
            return named;
    for (const std::string& program : KnownSysInfoPrograms())
        if (auto found = FindOnPath(program))
            return found;
    return std::nullopt;
}

void frmAbout::Form_Load() {
    TrappedVoid("Form_Load ", [&] {
        // Modal windows of the hosts stay above the main window by themselves.
        anchors_ = std::make_unique<AnchorObjectList>(*this);
        anchors_->Item(Ctl("Text1")).SetAnchors(enumStartEnd, enumStartEnd);
        for (const char* name : {"lblVersion", "lblMaker", "lblWebsite", "lblEmail"})
            anchors_->Item(Ctl(name)).SetAnchors(enumStartSize, enumSizeEnd);
        for (const char* name : {"cmdManual", "cmdSysInfo", "cmdOK"})
            anchors_->Item(Ctl(name)).SetAnchors(enumSizeEnd, enumSizeEnd);
        anchors_->Item(Ctl("imgBottomInset")).SetAnchors(enumStartEnd, enumSizeEnd);
        anchors_->Item(Ctl("imgCornerBars")).SetAnchors(enumSizeEnd, enumSizeEnd);

        Ctl("lblVersion").Caption = "Version " + std::to_string(version::Major) + "." +
                                    std::to_string(version::Minor) + "." + std::to_string(version::Revision);
        Caption = " About Tools for Tessarine Tools:";
        Ctl("Text1").Text = AboutText();
    });
}

void frmAbout::Form_Resize() {
    if (anchors_)
        anchors_->DoAnchors();
}

void frmAbout::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] { Unload(); });
}

void frmAbout::cmdManual_Click() {
    TrappedVoid("cmdManual_Click ", [&] { OpenDoc(ManualPath()); });
}

void frmAbout::cmdSysInfo_Click() {
    TrappedVoid("cmdSysInfo_Click ", [&] {
        std::optional<std::string> program = FindSysInfoProgram();
        if (!program) {
            UI().MessageBox(kSysInfoMissing, MsgBoxButtons::OK, MsgBoxIcon::Exclamation, kSysInfoTitle);
            return;
        }
        if (!launcher_(*program))
            UI().MessageBox(kSysInfoMissing, MsgBoxButtons::OK, MsgBoxIcon::Exclamation, kSysInfoTitle);
    });
}

void frmAbout::Contact_MouseMove(const std::string& label) {
    TrappedVoid("Contact_MouseMove ", [&] { Ctl(label).ForeColor = kContactHoverColour; });
}

void frmAbout::Form_MouseMove() {
    TrappedVoid("Form_MouseMove ", [&] {
        for (const auto& contact : Contacts())
            Ctl(contact.first).ForeColor = kContactColour;
    });
}

void frmAbout::Contact_Click(const std::string& label) {
    TrappedVoid("Contact_Click ", [&] {
        for (const auto& [name, address] : Contacts())
            if (name == label)
                UI().OpenDocument(address);
    });
}

} // namespace tess
