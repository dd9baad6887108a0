#pragma once
// Shared pieces of the extension tests: a scripted UI per test, a registry
// stand-in of its own per test, and an application with the extension running.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "extension/ToolRuns.h"
#include "frame/clsExtension.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/framework/Registry.h"
#include "platform/ui/Form.h"
#include "platform/ui/ScriptedUI.h"

namespace tess::test {

//! Points $TESS_REGISTRY at a fresh file in a temporary folder for its lifetime.
class TempRegistry {
public:
    TempRegistry() {
        folder_ = std::filesystem::temp_directory_path() /
                  ("tess-ext-" + std::to_string(::getpid()) + "-" + std::to_string(++counter_));
        std::filesystem::create_directories(folder_);
        if (const char* old = std::getenv("TESS_REGISTRY"))
            previous_ = old;
        ::setenv("TESS_REGISTRY", Path().c_str(), 1);
    }
    ~TempRegistry() {
        if (previous_)
            ::setenv("TESS_REGISTRY", previous_->c_str(), 1);
        else
            ::unsetenv("TESS_REGISTRY");
        std::error_code ec;
        std::filesystem::remove_all(folder_, ec);
    }
    TempRegistry(const TempRegistry&) = delete;
    TempRegistry& operator=(const TempRegistry&) = delete;

    std::string Path() const { return (folder_ / "registry.json").string(); }
    const std::filesystem::path& Folder() const { return folder_; }
    //! Sets the host version the extension reads at Startup.
    void HostVersion(const std::string& version) const {
        Registry(Path()).WriteString(RegistryHive::LocalMachine, kHostVersionKey, kHostVersionValue, version);
    }

private:
    static inline int counter_ = 0;
    std::filesystem::path folder_;
    std::optional<std::string> previous_;
};

//! Puts the tool table back as it was when the test ends.
class RunsGuard {
public:
    RunsGuard() : saved_(Runs()) {}
    ~RunsGuard() { Runs() = saved_; }
    RunsGuard(const RunsGuard&) = delete;
    RunsGuard& operator=(const RunsGuard&) = delete;

private:
    ToolRuns saved_;
};

class ScriptedUITest : public ::testing::Test {
protected:
    void SetUp() override { previous_ = SetUI(ui_); }
    void TearDown() override { SetUI(previous_); }
    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();

private:
    std::shared_ptr<IUIServices> previous_;
};

//! An application with a new document and the extension registered and started, on a registry of
//! its own (host version 10.0 unless the test says otherwise before calling Start).
class HostTest : public ScriptedUITest {
protected:
    void SetUp() override {
        ScriptedUITest::SetUp();
        registry_ = std::make_unique<TempRegistry>();
    }
    void TearDown() override {
        if (app_)
            app_->Shutdown();
        app_.reset();
        registry_.reset();
        ScriptedUITest::TearDown();
    }
    void Start() {
        app_ = Application::Create();
        app_->RegisterExtension(clsExtension::ProgID, "", [] { return std::make_shared<clsExtension>(); });
        app_->Startup();
        extension_ = FindTessExtension(*app_);
        ASSERT_TRUE(extension_);
    }
    std::shared_ptr<MxDocument> Document() const { return app_->MxDoc(); }

    std::unique_ptr<TempRegistry> registry_;
    std::shared_ptr<Application> app_;
    std::shared_ptr<clsExtension> extension_;
};

} // namespace tess::test
