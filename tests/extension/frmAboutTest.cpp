// The About box: its texts after loading, the manual button, the system
// information button with and without a tool on the system, the contacts.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "ExtensionTestSupport.h"
#include "extension/ComponentFolder.h"
#include "extension/frmAbout.h"
#include "frame/Version.h"
#include "support/RtfRenderer.h"

namespace tess {
namespace {

//! Replaces $PATH for its lifetime.
class ScopedPath {
public:
    explicit ScopedPath(const std::string& value) {
        if (const char* old = std::getenv("PATH"))
            previous_ = old;
        ::setenv("PATH", value.c_str(), 1);
    }
    ~ScopedPath() {
        if (previous_)
            ::setenv("PATH", previous_->c_str(), 1);
        else
            ::unsetenv("PATH");
    }

private:
    std::optional<std::string> previous_;
};

std::string MakeProgram(const std::filesystem::path& folder, const std::string& name, bool executable = true) {
    std::filesystem::create_directories(folder);
    const auto path = folder / name;
    std::ofstream(path) << "#!/bin/sh\nexit 0\n";
    ::chmod(path.c_str(), executable ? 0755 : 0644);
    return path.string();
}

class AboutTest : public test::ScriptedUITest {
protected:
    void SetUp() override {
        ScriptedUITest::SetUp();
        form.Launcher([this](const std::string& program) {
            launched.push_back(program);
            return true;
        });
    }
    void ClickSysInfo() {
        form.Load();
        form.Fire("cmdSysInfo", FormEvent::Click);
    }

    test::TempRegistry registry;
    frmAbout form;
    std::vector<std::string> launched;
};

TEST_F(AboutTest, LoadingFillsCaptionVersionAndTheDescription) {
    form.Load();
    EXPECT_EQ(form.Caption, " About Tools for Tessarine Tools:");
    EXPECT_EQ(form.Ctl("lblVersion").Caption, "Version " + std::to_string(version::Major) + "." +
                                                  std::to_string(version::Minor) + "." +
                                                  std::to_string(version::Revision));
    const std::string rtf = form.Ctl("Text1").Text;
    EXPECT_EQ(rtf.rfind(R"({\rtf1)", 0), 0u);
    const std::string text = RtfToText(rtf);
    EXPECT_NE(text.find("About Tools for Tessarine Tools"), std::string::npos);
    EXPECT_NE(text.find("Vincenty"), std::string::npos);
    EXPECT_NE(text.find("shapefile"), std::string::npos);
    // Ends with the greeting, nothing of the RTF left over.
    const auto last = text.find_last_not_of(" \r\n");
    ASSERT_NE(last, std::string::npos);
    EXPECT_EQ(text.substr(last - 5, 6), "Enjoy!");
    EXPECT_EQ(text.find('\\'), std::string::npos);
    EXPECT_TRUE(ui_->Errors().empty());
}

TEST_F(AboutTest, TheManualIsLookedForBesideTheLibrary) {
    form.Load();
    form.Fire("cmdManual", FormEvent::Click);
    // The build folder holds no manual: the missing-file message names where it was looked for.
    const std::string expected = ComponentFolder() + "/Tessarine_Manual.pdf";
    if (std::filesystem::exists(expected)) {
        EXPECT_EQ(ui_->Texts("open"), std::vector<std::string>{expected});
    } else {
        ASSERT_EQ(ui_->Messages().size(), 1u);
        EXPECT_EQ(ui_->Log().back().title, "Missing File:");
        EXPECT_NE(ui_->Messages()[0].find(expected), std::string::npos);
    }
}

TEST_F(AboutTest, WithoutASystemInformationToolTheMessageAppearsAndNothingRuns) {
    ScopedPath path((registry.Folder() / "empty-bin").string());
    ClickSysInfo();
    EXPECT_TRUE(launched.empty());
    EXPECT_EQ(ui_->Messages(), std::vector<std::string>{"System Information Is Unavailable At This Time"});
}

TEST_F(AboutTest, AKnownProgramOnThePathIsStarted) {
    const auto bin = registry.Folder() / "bin";
    MakeProgram(bin, "not-it");
    MakeProgram(bin, "kinfocenter", /*executable=*/false); // present but not runnable: skipped
    const std::string tool = MakeProgram(bin / "more", "xfce4-about");
    ScopedPath path(bin.string() + ":" + (bin / "more").string());
    ClickSysInfo();
    EXPECT_EQ(launched, std::vector<std::string>{tool});
    EXPECT_TRUE(ui_->Messages().empty());
}

TEST_F(AboutTest, TheRegistryCanNameTheToolAndAMissingOneFallsBackToThePath) {
    const std::string named = MakeProgram(registry.Folder() / "tools", "sysinfo");
    const std::string onPath = MakeProgram(registry.Folder() / "bin", "hardinfo");
    ScopedPath path((registry.Folder() / "bin").string());
    Registry(registry.Path()).WriteString(RegistryHive::LocalMachine, kSysInfoKey, kSysInfoValue, named);
    ClickSysInfo();
    EXPECT_EQ(launched, std::vector<std::string>{named});

    launched.clear();
    Registry(registry.Path())
        .WriteString(RegistryHive::LocalMachine, kSysInfoKey, kSysInfoValue, "/no/such/sysinfo");
    form.Fire("cmdSysInfo", FormEvent::Click);
    EXPECT_EQ(launched, std::vector<std::string>{onPath});
}

TEST_F(AboutTest, AToolThatFailsToStartGivesTheMessage) {
    MakeProgram(registry.Folder() / "bin", "hardinfo");
    ScopedPath path((registry.Folder() / "bin").string());
    form.Launcher([](const std::string&) { return false; });
    ClickSysInfo();
    EXPECT_EQ(ui_->Messages(), std::vector<std::string>{"System Information Is Unavailable At This Time"});
}

TEST_F(AboutTest, ContactLabelsLightUpUnderThePointerAndOpenTheirAddress) {
    form.Load();
    ASSERT_FALSE(frmAbout::Contacts().empty());
    const auto& [label, address] = frmAbout::Contacts().front();
    const std::uint32_t rest = form.Ctl(label).ForeColor;
    form.Contact_MouseMove(label);
    EXPECT_NE(form.Ctl(label).ForeColor, rest);
    form.imgBottomInset_MouseMove();
    EXPECT_EQ(form.Ctl(label).ForeColor, rest);
    form.Fire(label, FormEvent::Click);
    EXPECT_EQ(ui_->Texts("open"), std::vector<std::string>{address});
}

} // namespace
} // namespace tess
