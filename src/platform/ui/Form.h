#pragma once
// Dialogs are presenters: a Form owns the state of its controls under their
// names (cmdOK, txtOutput, lbxLayers...) and its event handlers. A host renders
// the controls and forwards events with Fire(); the terminal host and the tests
// drive the same presenter by setting controls and firing clicks, so every rule
// of a dialog holds in every host.

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tess {

enum class ControlKind {
    Label, CommandButton, TextBox, RichTextBox, CheckBox, OptionButton, ListBox, ComboBox,
    Frame, Timer, PictureBox, Image, Other
};

enum class FormEvent { Click, DblClick, Change, KeyPress, GotFocus, LostFocus, Timer, Resize };

//! Arguments an event handler may read or change (KeyPress: set KeyAscii to 0 to swallow the key).
struct EventArgs {
    int KeyAscii = 0;
    int Index = -1; //!< the item of a list event, where it applies
};

//! One control's state. Members carry the host's property names; a host copies
//! them to its widgets after every event and every DoEvents.
class Control {
public:
    Control(std::string name, ControlKind kind) : name_(std::move(name)), kind_(kind) {}

    const std::string& Name() const { return name_; }
    ControlKind Kind() const { return kind_; }

    std::string Caption;     //!< labels, buttons, check and option boxes, frames
    std::string Text;        //!< text boxes, the edit part of combo boxes; rich text boxes hold RTF
    std::string ToolTipText;
    bool Enabled = true;
    bool Visible = true;
    bool Locked = false;
    int Value = 0;           //!< check box 0 unchecked, 1 checked, 2 grey; option button 0/1
    std::vector<std::string> List;   //!< list and combo items
    std::vector<bool> Selected;      //!< per item, for multi-select lists
    int ListIndex = -1;              //!< current item, -1 for none
    bool MultiSelect = false;
    int Interval = 0;                //!< timers, milliseconds
    std::uint32_t ForeColor = 0x000000;
    std::uint32_t BackColor = 0xFFFFFF;
    double Left = 0, Top = 0, Width = 0, Height = 0; //!< in the form's scale units

    // List helpers with the host's semantics.
    void AddItem(const std::string& item);
    void RemoveItem(int index);
    void Clear();
    int ListCount() const { return static_cast<int>(List.size()); }
    int SelCount() const;

private:
    std::string name_;
    ControlKind kind_;
};

//! One row of a dialog's layout table: a control, its caption and its place.
struct ControlSpec {
    const char* name;
    ControlKind kind;
    const char* caption;
    double left, top, width, height;
};

class Form {
public:
    explicit Form(std::string name);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& Name() const { return name_; }
    std::string Caption;
    double Left = 0, Top = 0, Width = 0, Height = 0;

    //! The control of that name; a Fault when the form has none.
    Control& Ctl(const std::string& name);
    const Control& Ctl(const std::string& name) const;
    bool HasControl(const std::string& name) const;
    //! Controls in creation order (the tab order of the hosts).
    const std::vector<std::unique_ptr<Control>>& Controls() const { return controls_; }

    //! Runs Form_Load once; showing a form loads it first.
    void Load();
    bool IsLoaded() const { return loaded_; }
    //! Shows the form modally through the host's UI services; returns when it is unloaded or hidden.
    void ShowModal();
    void Hide() { visible_ = false; }
    bool Visible() const { return visible_; }
    void SetVisible(bool visible) { visible_ = visible; }
    //! Runs Form_Unload and marks the form closed; the host closes its window.
    void Unload();

    //! Delivers an event from a host or a driver to the registered handler. Disabled
    //! or invisible controls take no clicks, as in the hosts.
    void Fire(const std::string& control, FormEvent event, EventArgs& args);
    void Fire(const std::string& control, FormEvent event);

protected:
    Control& AddControl(const std::string& name, ControlKind kind);
    //! Adds the controls of a layout table, in its order.
    void AddControls(std::span<const ControlSpec> layout);
    void On(const std::string& control, FormEvent event, std::function<void(EventArgs&)> handler);
    void On(const std::string& control, FormEvent event, std::function<void()> handler);

    virtual void Form_Load() {}
    virtual void Form_Unload() {}
    virtual void Form_Resize() {}

private:
    std::string name_;
    std::vector<std::unique_ptr<Control>> controls_;
    std::map<std::string, Control*> byName_; // lower-case names: hosts ignore case
    std::map<std::pair<std::string, FormEvent>, std::function<void(EventArgs&)>> handlers_;
    bool loaded_ = false;
    bool visible_ = false;
};

} // namespace tess
