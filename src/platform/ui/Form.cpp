#include "platform/ui/Form.h"

#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "platform/system/Text.h"

#include <algorithm>
#include <cctype>

namespace tess {
namespace {

} // namespace

void Control::AddItem(const std::string& item) {
    List.push_back(item);
    Selected.push_back(false);
}

void Control::RemoveItem(int index) {
    if (index < 0 || index >= ListCount())
        throw Fault(fault::InvalidCall, name_, "Invalid procedure call or argument");
    List.erase(List.begin() + index);
    Selected.resize(List.size() + 1);
    Selected.erase(Selected.begin() + index);
    if (ListIndex >= ListCount())
        ListIndex = ListCount() - 1;
}

void Control::Clear() {
    List.clear();
    Selected.clear();
    ListIndex = -1;
}

int Control::SelCount() const {
    if (!MultiSelect)
        return ListIndex >= 0 ? 1 : 0;
    return static_cast<int>(std::count(Selected.begin(), Selected.end(), true));
}

Form::Form(std::string name) : name_(std::move(name)) {}

Form::~Form() = default;

Control& Form::AddControl(const std::string& name, ControlKind kind) {
    controls_.push_back(std::make_unique<Control>(name, kind));
    byName_[Lower(name)] = controls_.back().get();
    return *controls_.back();
}

void Form::AddControls(std::span<const ControlSpec> layout) {
    for (const ControlSpec& spec : layout) {
        Control& c = AddControl(spec.name, spec.kind);
        c.Caption = spec.caption;
        c.Left = spec.left;
        c.Top = spec.top;
        c.Width = spec.width;
        c.Height = spec.height;
    }
}

bool Form::HasControl(const std::string& name) const { return byName_.count(Lower(name)) != 0; }

Control& Form::Ctl(const std::string& name) {
    auto it = byName_.find(Lower(name));
    if (it == byName_.end())
        throw Fault(fault::InvalidCall, name_, "Form " + name_ + " has no control named '" + name + "'");
    return *it->second;
}

const Control& Form::Ctl(const std::string& name) const { return const_cast<Form*>(this)->Ctl(name); }

void Form::Load() {
    if (loaded_)
        return;
    loaded_ = true;
    Form_Load();
}

void Form::ShowModal() {
    Load();
    if (!loaded_) // Form_Load may unload the form at once
        return;
    visible_ = true;
    UI().ShowModal(*this);
}

void Form::Unload() {
    if (!loaded_)
        return;
    Form_Unload();
    loaded_ = false;
    visible_ = false;
}

void Form::On(const std::string& control, FormEvent event, std::function<void(EventArgs&)> handler) {
    handlers_[{Lower(control), event}] = std::move(handler);
}

void Form::On(const std::string& control, FormEvent event, std::function<void()> handler) {
    On(control, event, [h = std::move(handler)](EventArgs&) { h(); });
}

void Form::Fire(const std::string& control, FormEvent event, EventArgs& args) {
    if (!control.empty() && HasControl(control)) {
        const Control& c = Ctl(control);
        if ((event == FormEvent::Click || event == FormEvent::DblClick) && (!c.Enabled || !c.Visible))
            return;
    }
    auto it = handlers_.find({Lower(control), event});
    if (it != handlers_.end())
        it->second(args);
    else if (event == FormEvent::Resize && control.empty())
        Form_Resize();
}

void Form::Fire(const std::string& control, FormEvent event) {
    EventArgs args;
    Fire(control, event, args);
}

} // namespace tess
