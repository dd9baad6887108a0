#include "platform/ui/UIServices.h"

#include "platform/ui/Form.h"

#include <iostream>

namespace tess {
namespace {

// Used until a host installs its own services: never blocks, never guesses Yes.
class ConsoleFallbackUI final : public IUIServices {
public:
    MsgBoxResult MessageBox(const std::string& text, MsgBoxButtons buttons, MsgBoxIcon,
                            const std::string& title) override {
        std::cerr << title << ' ' << text << '\n';
        switch (buttons) {
        case MsgBoxButtons::OK: return MsgBoxResult::OK;
        case MsgBoxButtons::OKCancel: return MsgBoxResult::Cancel;
        case MsgBoxButtons::YesNo: return MsgBoxResult::No;
        case MsgBoxButtons::YesNoCancel: return MsgBoxResult::Cancel;
        }
        return MsgBoxResult::Cancel;
    }
    void ShowErrorWindow(const std::string& text) override { std::cerr << text << '\n'; }
    void Beep() override {}
    void DoEvents() override {}
    bool OpenDocument(const std::string&) override { return false; }
    // Without a host nobody can answer a dialog: it closes as if cancelled.
    void ShowModal(Form& form) override { form.Unload(); }
    void ShowModeless(Form&) override {}
    void HideModeless(Form&) override {}
    std::optional<BrowseResult> Browse(const BrowseRequest&) override { return std::nullopt; }
    std::shared_ptr<ISpatialReference> ChooseSpatialReference(const std::shared_ptr<ISpatialReference>&) override {
        return nullptr;
    }
    void SetMousePointer(MousePointer) override {}
    double ScreenWidth() const override { return kScreenWidth; }
    double ScreenHeight() const override { return kScreenHeight; }
    void CopyToClipboard(const std::string&, const std::string&, const std::string&) override {}
    bool PrintReport(const std::string&, const std::string&) override { return false; }

private:
    static constexpr double kScreenWidth = 1920;  // pixels of a common desktop
    static constexpr double kScreenHeight = 1080;
};

std::shared_ptr<IUIServices>& Current() {
    static std::shared_ptr<IUIServices> current = std::make_shared<ConsoleFallbackUI>();
    return current;
}

} // namespace

IUIServices& UI() { return *Current(); }

std::shared_ptr<IUIServices> SetUI(std::shared_ptr<IUIServices> services) {
    auto previous = Current();
    Current() = services ? std::move(services) : std::make_shared<ConsoleFallbackUI>();
    return previous;
}

} // namespace tess
