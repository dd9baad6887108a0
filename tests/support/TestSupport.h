#pragma once
// Shared pieces of the support tests: a scripted UI installed per test, and a
// clock the test moves by hand.

#include <gtest/gtest.h>

#include <memory>

#include "frame/clsExtension.h"
#include "platform/framework/Application.h"
#include "platform/system/DateTime.h"
#include "platform/ui/ScriptedUI.h"
#include "support/HostTime.h"

namespace tess::test {

class ScriptedUITest : public ::testing::Test {
public:
    using FormScript = ScriptedUI::FormScript;

protected:
    void SetUp() override { previous_ = SetUI(ui_); }
    void TearDown() override { SetUI(previous_); }
    std::shared_ptr<ScriptedUI> ui_ = std::make_shared<ScriptedUI>();

private:
    std::shared_ptr<IUIServices> previous_;
};

//! An application with the extension registered, as the hosts set it up; the extension is
//! started on first use.
class ExtensionUITest : public ScriptedUITest {
protected:
    void SetUp() override {
        ScriptedUITest::SetUp();
        app_ = Application::Create();
        app_->RegisterExtension(clsExtension::ProgID, "", [] { return std::make_shared<clsExtension>(); });
        extension_ = FindTessExtension(*app_);
        ASSERT_TRUE(extension_);
    }
    void TearDown() override {
        app_->Shutdown();
        ScriptedUITest::TearDown();
    }
    std::shared_ptr<Application> app_;
    std::shared_ptr<clsExtension> extension_;
};

//! A clock that stands still until the test moves it.
class FakeClock {
public:
    explicit FakeClock(CalendarTime start) : now_(DateFromCalendar(start)) {}
    Clock AsClock() {
        return [this] { return now_; };
    }
    DateValue Now() const { return now_; }
    void Advance(std::int64_t seconds) { now_ = DateAddSeconds(now_, seconds); }

private:
    DateValue now_;
};

//! 2024-03-05 10:00:00, a Tuesday.
inline CalendarTime MorningOfMarch5() { return CalendarTime{2024, 3, 5, 10, 0, 0.0}; }

} // namespace tess::test
