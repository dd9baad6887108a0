#include "graphics/frmSelectGraphics.h"

#include <vector>

#include "frame/ErrorHandling.h"
#include "frame/clsExtension.h"
#include "platform/carto/ActiveView.h"
#include "platform/carto/GraphicElements.h"
#include "platform/carto/GraphicsContainer.h"
#include "platform/carto/Map.h"
#include "platform/carto/PageLayout.h"
#include "platform/framework/Application.h"
#include "platform/framework/Document.h"
#include "platform/system/Arrays.h"
#include "platform/system/Collection.h"
#include "platform/system/Fault.h"
#include "platform/ui/UIServices.h"
#include "support/AnchorObjectList.h"
#include "support/GeneralHelpers.h"
#include "support/QuickSort.h"

namespace tess {
namespace {

constexpr const char* kSource = "frmSelectGraphics";

// Layout, in pixels.
constexpr double kFormWidth = 460.0;
constexpr double kFormHeight = 420.0;

constexpr ControlSpec kControls[] = {
    {"lblInstructions", ControlKind::Label, "Select graphic elements by type:", 12, 8, 200, 18},
    {"chkPoints", ControlKind::CheckBox, "Points", 12, 30, 200, 20},
    {"chkLines", ControlKind::CheckBox, "Lines", 12, 52, 200, 20},
    {"chkPolygons", ControlKind::CheckBox, "Polygons", 12, 74, 200, 20},
    {"chkRectangles", ControlKind::CheckBox, "Rectangles", 12, 96, 200, 20},
    {"chkEllipses", ControlKind::CheckBox, "Ellipses", 12, 118, 200, 20},
    {"chkCircles", ControlKind::CheckBox, "Circles", 12, 140, 200, 20},
    {"chkText", ControlKind::CheckBox, "Text", 12, 162, 200, 20},
    {"chkPictures", ControlKind::CheckBox, "Pictures", 12, 184, 200, 20},
    {"chkData", ControlKind::CheckBox, "Data Graphs", 12, 206, 200, 20},
    {"chkGroup", ControlKind::CheckBox, "Group Elements", 12, 228, 200, 20},
    {"chkFrames", ControlKind::CheckBox, "Frames", 12, 250, 200, 20},
    {"lblSelByName", ControlKind::Label, "Select graphic elements by name:", 224, 8, 224, 18},
    {"lblSelFromList", ControlKind::Label, "Select Name from List:", 224, 30, 224, 18},
    {"lbxNamesActive", ControlKind::ListBox, "", 224, 50, 224, 180},
    {"lbxNamesInactive", ControlKind::ListBox, "", 224, 50, 224, 180},
    {"lblTypeName", ControlKind::Label, "Type Name:", 224, 238, 224, 18},
    {"txtName", ControlKind::TextBox, "", 224, 258, 224, 22},
    {"lblWildcards", ControlKind::Label, "(can include wildcards * and &&)", 224, 284, 224, 18},
    {"cmdHelp", ControlKind::CommandButton, "Manual", 12, 372, 100, 28},
    {"cmdOK", ControlKind::CommandButton, "OK", 240, 372, 100, 28},
    {"cmdClose", ControlKind::CommandButton, "Close", 348, 372, 100, 28},
};

constexpr const char* kCaption = " Select Graphic Elements:";
constexpr const char* kNoNames = "<-- No Names Found -->!";
// Geography, graphics and the graphics' selection.
constexpr std::int32_t kRepaintPhases = esriViewGeography | esriViewGraphics | esriViewGraphicSelection;

struct TypeRow {
    const char* box;
    const char* word;
    bool (*test)(const std::shared_ptr<IElement>&);
};

template <class Interface>
bool Is(const std::shared_ptr<IElement>& element) {
    return std::dynamic_pointer_cast<Interface>(element) != nullptr;
}

// The tests run in this order and the first that holds decides.
constexpr TypeRow kTypes[frmSelectGraphics::kTypeCount] = {
    {"chkPoints", "Points", &Is<IMarkerElement>},
    {"chkLines", "Lines", &Is<ILineElement>},
    {"chkPolygons", "Polygons", &Is<IPolygonElement>},
    {"chkRectangles", "Rectangles", &Is<IRectangleElement>},
    {"chkEllipses", "Ellipses", &Is<IEllipseElement>},
    {"chkCircles", "Circles", &Is<ICircleElement>},
    {"chkText", "Text", &Is<ITextElement>},
    {"chkPictures", "Pictures", &Is<IPictureElement>},
    {"chkData", "Data Graphs", &Is<IDataGraphElement>},
    {"chkGroup", "Group Elements", &Is<IGroupElement>},
    {"chkFrames", "Frames", &Is<IFrameElement>},
};

char Folded(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

std::string NameOf(const std::shared_ptr<IElement>& element) {
    auto properties = std::dynamic_pointer_cast<IElementProperties>(element);
    return properties ? properties->Name() : std::string();
}

} // namespace

bool GraphicNameMatches(const std::string& name, const std::string& pattern) {
    // Iterative glob with one back-tracking point: the last "*" seen.
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t starAt = std::string::npos;
    std::size_t resumeAt = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            starAt = p++;
            resumeAt = n;
        } else if (p < pattern.size() && (pattern[p] == '&' || Folded(pattern[p]) == Folded(name[n]))) {
            ++p;
            ++n;
        } else if (starAt != std::string::npos) {
            p = starAt + 1;
            n = ++resumeAt;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

const std::array<const char*, frmSelectGraphics::kTypeCount>& frmSelectGraphics::TypeBoxes() {
    static const std::array<const char*, kTypeCount> boxes = [] {
        std::array<const char*, kTypeCount> names{};
        for (std::size_t i = 0; i < kTypeCount; ++i)
            names[i] = kTypes[i].box;
        return names;
    }();
    return boxes;
}

frmSelectGraphics::frmSelectGraphics() : Form("frmSelectGraphics") {
    Caption = kCaption;
    Width = kFormWidth;
    Height = kFormHeight;
    AddControls(kControls);
    Ctl("lbxNamesActive").MultiSelect = true;
    Ctl("lbxNamesInactive").AddItem(kNoNames);
    Ctl("lbxNamesInactive").Visible = false;
    On("cmdOK", FormEvent::Click, [this] { cmdOK_Click(); });
    On("cmdClose", FormEvent::Click, [this] { cmdClose_Click(); });
    On("cmdHelp", FormEvent::Click, [this] { cmdHelp_Click(); });
}

frmSelectGraphics::~frmSelectGraphics() = default;

void frmSelectGraphics::ArcApplication(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("ArcApplication ", [&] {
        application_ = application;
        document_ = application ? std::dynamic_pointer_cast<IMxDocument>(application->Document()) : nullptr;
        if (!extension_ && application_)
            extension_ = FindTessExtension(*application_);
        FillGraphicsOptions();
    });
}

std::shared_ptr<IGraphicsContainer> frmSelectGraphics::Container() const {
    if (!document_)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    std::shared_ptr<IGraphicsContainer> container;
    if (std::dynamic_pointer_cast<IPageLayout>(document_->ActiveView()))
        container = std::dynamic_pointer_cast<IGraphicsContainer>(document_->PageLayout());
    else
        container = std::dynamic_pointer_cast<IGraphicsContainer>(document_->FocusMap());
    if (!container)
        throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
    return container;
}

void frmSelectGraphics::FillGraphicsOptions() {
    TrappedNested("FillGraphicsOptions ", [&] {
        std::shared_ptr<IGraphicsContainer> container = Container();
        for (auto& list : typeLists_)
            list = std::make_shared<VarArray>();
        typeFound_.fill(false);
        names_ = std::make_shared<StrArray>();
        elementsByName_ = std::make_shared<Collection>();
        nameByLine_ = std::make_shared<Collection>();
        anyName_ = false;

        container->Reset();
        for (std::shared_ptr<IElement> element = container->Next(); element; element = container->Next()) {
            const std::string name = NameOf(element);
            if (!name.empty()) {
                anyName_ = true;
                names_->Add(name);
                if (elementsByName_->Exists(name)) {
                    // Taken out and put back, as the collection keeps no changeable entries.
                    auto list = elementsByName_->Item(name).As<IVariantArray>();
                    elementsByName_->Remove(name);
                    list->Add(element);
                    elementsByName_->Add(Variant(list), name);
                } else {
                    auto list = std::make_shared<VarArray>();
                    list->Add(element);
                    elementsByName_->Add(Variant(std::shared_ptr<IVariantArray>(list)), name);
                }
            }
            for (std::size_t i = 0; i < kTypeCount; ++i) {
                if (kTypes[i].test(element)) {
                    typeLists_[i]->Add(element);
                    typeFound_[i] = true;
                    break;
                }
            }
        }

        for (std::size_t i = 0; i < kTypeCount; ++i) {
            Control& box = Ctl(kTypes[i].box);
            const std::int32_t count = typeLists_[i]->Count();
            box.Enabled = count > 0;
            box.Caption = std::string(kTypes[i].word) + " [" + std::to_string(count) + "]";
        }

        for (const char* control : {"lblSelByName", "lblSelFromList", "lblTypeName", "lbxNamesActive",
                                    "lbxNamesInactive", "txtName", "lblWildcards"})
            Ctl(control).Enabled = anyName_;
        Ctl("txtName").Text.clear();
        Control& active = Ctl("lbxNamesActive");
        active.Clear();
        active.Visible = anyName_;
        Ctl("lbxNamesInactive").Visible = !anyName_;

        Collection seen;
        std::vector<std::string> lines;
        for (std::int32_t i = 0; i < names_->Count(); ++i) {
            const std::string name = names_->Element(i);
            if (seen.Exists(name))
                continue;
            seen.Add(Variant(name), name);
            const std::int32_t count = elementsByName_->Item(name).As<IVariantArray>()->Count();
            const std::string line = name + " [" + std::to_string(count) + "]";
            nameByLine_->Add(Variant(name), line);
            lines.push_back(line);
        }
        if (!lines.empty())
            StringsAscending(lines, 0, static_cast<std::int32_t>(lines.size()) - 1);
        for (const std::string& line : lines)
            active.AddItem(line);
    });
}

void frmSelectGraphics::cmdOK_Click() {
    TrappedVoid("cmdOK_Click ", [&] {
        std::shared_ptr<IGraphicsContainer> container = Container();
        auto selection = std::dynamic_pointer_cast<IGraphicsContainerSelect>(container);
        if (!selection)
            throw Fault(fault::ObjectNotSet, kSource, "Object variable or With block variable not set");
        bool selectedAny = false;
        auto selectAll = [&](const IVariantArray& elements) {
            for (std::int32_t i = 0; i < elements.Count(); ++i) {
                selection->SelectElement(elements.Element(i).As<IElement>());
                selectedAny = true;
            }
        };

        for (std::size_t i = 0; i < kTypeCount; ++i)
            if (Ctl(kTypes[i].box).Value == 1 && typeLists_[i])
                selectAll(*typeLists_[i]);

        if (anyName_) {
            const Control& list = Ctl("lbxNamesActive");
            for (int i = 0; i < list.ListCount(); ++i) {
                if (!list.Selected[static_cast<std::size_t>(i)])
                    continue;
                const std::string name = nameByLine_->Item(list.List[static_cast<std::size_t>(i)]).ToString();
                selectAll(*elementsByName_->Item(name).As<IVariantArray>());
            }
        }

        const std::string pattern = Ctl("txtName").Text;
        if (!pattern.empty()) {
            container->Reset();
            for (std::shared_ptr<IElement> element = container->Next(); element; element = container->Next()) {
                if (selection->ElementSelected(element))
                    continue;
                const std::string name = NameOf(element);
                if (!name.empty() && GraphicNameMatches(name, pattern)) {
                    selection->SelectElement(element);
                    selectedAny = true;
                }
            }
        }

        if (selectedAny) {
            document_->ActiveView()->PartialRefresh(kRepaintPhases, Variant::Nothing(), nullptr);
            if (auto dirty = std::dynamic_pointer_cast<IDocumentDirty>(document_))
                dirty->SetDirty();
        }
        Unload();
    });
}

void frmSelectGraphics::cmdClose_Click() {
    TrappedVoid("cmdClose_Click ", [&] { Unload(); });
}

void frmSelectGraphics::cmdHelp_Click() {
    TrappedVoid("cmdHelp_Click ", [&] { OpenDoc(manualPath_); });
}

void frmSelectGraphics::Form_Load() {
    TrappedVoid("Form_Load ", [&] {
        // Modal windows of the hosts stay above the main window by themselves.
        Left = UI().ScreenWidth() / 2 - Width / 2;
        Top = UI().ScreenHeight() / 2 - Height / 2;
        // The kinds keep their place; the names take the room the window gains.
        anchors_ = std::make_unique<AnchorObjectList>(*this);
        for (const TypeRow& type : kTypes)
            anchors_->Item(Ctl(type.box)).SetAnchors(enumStartSize, enumStartSize);
        anchors_->Item(Ctl("lblInstructions")).SetAnchors(enumStartSize, enumStartSize);
        for (const char* name : {"lblSelByName", "lblSelFromList"})
            anchors_->Item(Ctl(name)).SetAnchors(enumStartEnd, enumStartSize);
        for (const char* name : {"lbxNamesActive", "lbxNamesInactive"})
            anchors_->Item(Ctl(name)).SetAnchors(enumStartEnd, enumStartEnd);
        for (const char* name : {"lblTypeName", "txtName", "lblWildcards"})
            anchors_->Item(Ctl(name)).SetAnchors(enumStartEnd, enumSizeEnd);
        anchors_->Item(Ctl("cmdHelp")).SetAnchors(enumStartSize, enumSizeEnd);
        for (const char* name : {"cmdOK", "cmdClose"})
            anchors_->Item(Ctl(name)).SetAnchors(enumSizeEnd, enumSizeEnd);
    });
}

void frmSelectGraphics::Form_Resize() {
    if (anchors_)
        anchors_->DoAnchors();
}

void frmSelectGraphics::Form_Unload() {
    for (auto& list : typeLists_)
        list.reset();
    names_.reset();
    elementsByName_.reset();
    nameByLine_.reset();
    application_.reset();
    document_.reset();
    extension_.reset();
}

void ShowSelectGraphicsDialog(const std::shared_ptr<IApplication>& application, const std::string& manualPath) {
    TrappedVoid("ShowSelectGraphicsDialog ", [&] {
        frmSelectGraphics form;
        form.ManualPath(manualPath);
        form.ArcApplication(application);
        form.ShowModal();
    });
}

} // namespace tess
