// The application and its document: extensions found by class id, the status
// bar record, host commands, templates, views, dirty flag and contents.

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/carto/FeatureLayer.h"
#include "platform/carto/Map.h"
#include "platform/carto/PageLayout.h"
#include "platform/framework/Application.h"
#include "platform/framework/CommandBars.h"
#include "platform/framework/Document.h"
#include "platform/framework/HostContracts.h"
#include "platform/framework/StatusBar.h"
#include "platform/system/Fault.h"
#include "platform/system/UID.h"

namespace tess {
namespace {

constexpr const char* kExtensionProgId = "Tessarine.clsExtension";
constexpr const char* kExtensionClsid = "{0B5A4E7C-1111-4C2D-9E3F-ABCDEF012345}";

//! An extension that remembers what the host did to it.
class RecordingExtension final : public IExtension {
public:
    explicit RecordingExtension(std::vector<std::string>& log) : log_(log) {}
    std::string Name() const override { return "Recording"; }
    void Startup(const std::shared_ptr<IApplication>& application) override {
        log_.push_back("Startup");
        application_ = application;
    }
    void Shutdown() override {
        log_.push_back("Shutdown");
        application_.reset();
    }
    std::shared_ptr<IApplication> application_;

private:
    std::vector<std::string>& log_;
};

class ApplicationTest : public ::testing::Test {
protected:
    void SetUp() override {
        app = Application::Create();
        app->RegisterExtension(kExtensionProgId, kExtensionClsid, [this] {
            ++created;
            return std::make_shared<RecordingExtension>(log);
        });
    }
    void TearDown() override { app->Shutdown(); }

    std::shared_ptr<Application> app;
    std::vector<std::string> log;
    int created = 0;
};

TEST_F(ApplicationTest, FindExtensionByClassIdOrProgIdStartsItOnce) {
    auto byProgId = app->FindExtensionByCLSID(UID(kExtensionProgId));
    ASSERT_TRUE(byProgId);
    EXPECT_EQ(log, std::vector<std::string>{"Startup"});
    auto recording = std::dynamic_pointer_cast<RecordingExtension>(byProgId);
    ASSERT_TRUE(recording);
    EXPECT_EQ(recording->application_.get(), static_cast<IApplication*>(app.get()));

    EXPECT_EQ(app->FindExtensionByCLSID(UID("tessarine.CLSEXTENSION")), byProgId);
    EXPECT_EQ(app->FindExtensionByCLSID(UID("{0b5a4e7c-1111-4c2d-9e3f-abcdef012345}")), byProgId);
    EXPECT_EQ(created, 1);
    EXPECT_EQ(app->FindExtensionByCLSID(UID("{BD6262BC-D9D4-4B93-87E0-E442702D93E6}")), nullptr);
}

TEST_F(ApplicationTest, StartupStartsEveryExtensionAndShutdownStopsThemLastFirst) {
    app->RegisterExtension("Other.Extension", "", [this] {
        log.push_back("made other");
        return std::make_shared<RecordingExtension>(log);
    });
    app->Startup();
    EXPECT_EQ(log, (std::vector<std::string>{"Startup", "made other", "Startup"}));
    EXPECT_EQ(app->Extensions().size(), 2u);
    app->Startup(); // nothing more to start
    EXPECT_EQ(created, 1);
    app->Shutdown();
    EXPECT_EQ(log.back(), "Shutdown");
    EXPECT_TRUE(app->Extensions().empty());
    EXPECT_THROW(app->RegisterExtension("", "", [] { return nullptr; }), Fault);
}

TEST_F(ApplicationTest, TheSelectElementsToolIsAHostCommandThatBecomesCurrent) {
    auto document = std::dynamic_pointer_cast<IDocument>(app->Document());
    ASSERT_TRUE(document);
    auto item = document->CommandBars()->Find(UID(kSelectElementsToolId), false, true);
    ASSERT_TRUE(item);
    EXPECT_EQ(app->CurrentTool(), nullptr);
    item->Execute();
    EXPECT_EQ(app->CurrentTool(), item);
    EXPECT_EQ(app->Commands()->Executed(), std::vector<std::string>{kSelectElementsToolId});
    EXPECT_EQ(document->CommandBars()->Find(UID("Nobody.Command"), false, true), nullptr);
}

TEST_F(ApplicationTest, HostCommandsRunTheirActionAndComponentCommandsTheirClick) {
    int runs = 0;
    app->Commands()->AddCommand("Host.Refresh", "Refresh", "&Refresh", [&] { ++runs; });
    app->MxDoc()->CommandBars()->Find(UID("host.refresh"), true, true)->Execute();
    EXPECT_EQ(runs, 1);

    class Clicker final : public ICommand {
    public:
        bool enabled = true;
        int clicks = 0;
        bool Enabled() override { return enabled; }
        bool Checked() override { return false; }
        std::string Name() override { return "Tessarine_Test"; }
        std::string Caption() override { return "&Test"; }
        std::string Tooltip() override { return ""; }
        std::string Message() override { return ""; }
        std::string HelpFile() override { return ""; }
        std::int32_t HelpContextID() override { return 0; }
        std::int32_t Bitmap() override { return 0; }
        std::string Category() override { return "Test"; }
        void OnCreate(const std::shared_ptr<IApplication>&) override {}
        void OnClick() override { ++clicks; }
    };
    auto command = std::make_shared<Clicker>();
    auto item = app->Commands()->AddCommand("Tessarine.clsTest", command);
    EXPECT_EQ(item->Name(), "Tessarine_Test");
    item->Execute();
    command->enabled = false;
    item->Execute();
    EXPECT_EQ(command->clicks, 1);
}

TEST_F(ApplicationTest, StatusBarRecordsTheProgressOfARun) {
    auto bar = app->StatusBar();
    bar->ProgressBar()->Position(1);
    bar->ShowProgressBar("Converting roads", 1, 1000, 1, true);
    for (int i = 0; i < 999; ++i)
        bar->StepProgressBar();
    bar->Message(0, "Converting roads: 999 of 1000");
    bar->StepProgressBar();
    bar->ProgressBar()->Position(0);
    bar->HideProgressBar();

    auto status = app->StatusBarObject();
    using Kind = StatusBarEvent::Kind;
    std::vector<Kind> kinds;
    for (const auto& event : status->Events())
        kinds.push_back(event.kind);
    EXPECT_EQ(kinds, (std::vector<Kind>{Kind::Position, Kind::ShowProgressBar, Kind::StepProgressBar, Kind::Message,
                                        Kind::StepProgressBar, Kind::Position, Kind::HideProgressBar}));
    const auto& show = status->Events()[1];
    EXPECT_EQ(show.text, "Converting roads");
    EXPECT_EQ(show.min, 1);
    EXPECT_EQ(show.max, 1000);
    EXPECT_TRUE(show.onePanel);
    EXPECT_EQ(status->Events()[2].count, 999); // one event for the whole run of steps
    EXPECT_EQ(status->Events()[2].value, 1000);
    EXPECT_EQ(bar->Message(0), "Converting roads: 999 of 1000");
    EXPECT_EQ(bar->ProgressBar()->Position(), 0);
    EXPECT_FALSE(status->ProgressBarVisible());
}

TEST_F(ApplicationTest, TheStepProgressorStopsAtItsMaximum) {
    auto bar = app->StatusBar();
    bar->ShowProgressBar("x", 0, 3, 2, false);
    bar->StepProgressBar();
    bar->StepProgressBar();
    EXPECT_EQ(bar->ProgressBar()->Position(), 3);
}

TEST_F(ApplicationTest, TheAnimationIsRecordedAndItsStateKept) {
    auto animation = app->StatusBar()->ProgressAnimation();
    animation->Show();
    animation->Play(0, -1, -1);
    auto status = app->StatusBarObject();
    EXPECT_TRUE(status->AnimationPlaying());
    EXPECT_EQ(status->Events().back().min, 0);
    EXPECT_EQ(status->Events().back().max, -1);
    EXPECT_EQ(status->Events().back().value, -1);
    animation->Stop();
    animation->Hide();
    EXPECT_FALSE(status->AnimationPlaying());
    EXPECT_FALSE(status->AnimationVisible());
    status->ClearEvents();
    EXPECT_TRUE(status->Events().empty());
}

TEST_F(ApplicationTest, TheStatusRecordKeepsOnlyTheLatestEvents) {
    auto bar = app->StatusBar();
    for (std::size_t i = 0; i < StatusBar::kMaxEvents + 5; ++i)
        bar->Message(0, std::to_string(i));
    auto status = app->StatusBarObject();
    EXPECT_EQ(status->Events().size(), StatusBar::kMaxEvents);
    EXPECT_EQ(status->DroppedEvents(), 5u);
    EXPECT_EQ(status->Events().back().text, std::to_string(StatusBar::kMaxEvents + 4));
}

TEST_F(ApplicationTest, TemplatesEndWithTheDocumentsPath) {
    auto templates = app->Templates();
    ASSERT_EQ(templates->Count(), 1);
    EXPECT_EQ(templates->Item(0), Application::NormalTemplatePath());
    app->MxDoc()->Path("/maps/site.map.json");
    templates = app->Templates();
    ASSERT_EQ(templates->Count(), 2);
    EXPECT_EQ(templates->Item(templates->Count() - 1), "/maps/site.map.json");
    EXPECT_THROW(templates->Item(2), Fault);
    EXPECT_EQ(app->Caption(), "site.map.json - Tessarine");
    EXPECT_EQ(app->Name(), "Tessarine");
    EXPECT_EQ(app->hWnd(), 0);
}

TEST_F(ApplicationTest, TheActiveViewIsTheFocusMapOrThePageLayout) {
    auto document = app->MxDoc();
    auto* mx = static_cast<IMxDocument*>(document.get());
    auto view = mx->ActiveView();
    EXPECT_EQ(view.get(), static_cast<IActiveView*>(document->FocusMapObject().get()));
    EXPECT_FALSE(std::dynamic_pointer_cast<IPageLayout>(view));

    mx->ActiveView(std::dynamic_pointer_cast<IActiveView>(mx->PageLayout()));
    EXPECT_TRUE(std::dynamic_pointer_cast<IPageLayout>(mx->ActiveView()));
    EXPECT_EQ(mx->ActiveView()->FocusMap(), mx->FocusMap());
    EXPECT_THROW(mx->ActiveView(std::make_shared<Map>()), Fault);

    auto second = std::make_shared<Map>();
    mx->Maps()->Add(second);
    EXPECT_EQ(mx->Maps()->Count(), 2);
    EXPECT_EQ(document->Layout()->ElementCount(), 2); // a frame for each map
    mx->FocusMap(second);
    EXPECT_EQ(mx->ActiveView()->FocusMap(), second);
    mx->Maps()->Remove(second);
    EXPECT_EQ(document->Layout()->ElementCount(), 1);
    EXPECT_EQ(mx->FocusMap().get(), static_cast<IMap*>(document->MapList().front().get()));
    EXPECT_THROW(mx->Maps()->Remove(mx->FocusMap()), Fault);
}

TEST_F(ApplicationTest, DirtyFlagContentsAndLayers) {
    auto document = app->MxDoc();
    EXPECT_FALSE(document->IsDirty());
    document->SetDirty();
    EXPECT_TRUE(document->IsDirty());
    document->SetClean();
    EXPECT_FALSE(document->IsDirty());

    auto layer = std::make_shared<FeatureLayer>();
    layer->Name("new");
    document->AddLayer(layer);
    document->UpdateContents();
    EXPECT_EQ(document->FocusMap()->LayerCount(), 1);
    EXPECT_EQ(document->UpdateContentsCount(), 1);
    document->SelectedLayer(layer);
    EXPECT_EQ(document->SelectedLayer(), layer);
    EXPECT_EQ(document->Parent().get(), static_cast<IApplication*>(app.get()));
    EXPECT_EQ(document->Title(), "Untitled");
}

TEST_F(ApplicationTest, SavingADocumentWithoutAPathIsRefused) {
    EXPECT_THROW(app->SaveDocument(), Fault);
}

} // namespace
} // namespace tess
