#include "platform/framework/Document.h"

#include <algorithm>
#include <cctype>

#include "platform/carto/Map.h"
#include "platform/carto/MapFrame.h"
#include "platform/carto/PageLayout.h"
#include "platform/framework/CommandBars.h"
#include "platform/system/Fault.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

constexpr const char* kSource = "MxDocument";
constexpr const char* kUntitled = "Untitled";

} // namespace

//! IMaps over the document's list; it does not keep the document alive.
class MxDocument::MapsView final : public IMaps {
public:
    explicit MapsView(std::weak_ptr<MxDocument> document) : document_(std::move(document)) {}

    std::int32_t Count() const override { return static_cast<std::int32_t>(Doc().maps_.size()); }
    std::shared_ptr<IMap> Item(std::int32_t index) const override {
        const auto& maps = Doc().maps_;
        if (index < 0 || index >= static_cast<std::int32_t>(maps.size()))
            throw Fault(fault::OutOfRange, kSource,
                        "Map " + std::to_string(index) + " of a document of " + std::to_string(maps.size()));
        return maps[static_cast<std::size_t>(index)];
    }
    void Add(const std::shared_ptr<IMap>& map) override {
        auto concrete = std::dynamic_pointer_cast<tess::Map>(map);
        if (!concrete)
            throw Fault(fault::InvalidCall, kSource, "Only maps of this platform can join a document");
        Doc().AddMap(concrete);
    }
    void Remove(const std::shared_ptr<IMap>& map) override { Doc().RemoveMap(map); }

private:
    MxDocument& Doc() const {
        auto document = document_.lock();
        if (!document)
            throw Fault(fault::ObjectNotSet, kSource, "The document of this map list is closed");
        return *document;
    }
    std::weak_ptr<MxDocument> document_;
};

MxDocument::MxDocument()
    : layout_(std::make_shared<tess::PageLayout>()), commandBars_(std::make_shared<tess::CommandBars>()) {
    AddMap(std::make_shared<tess::Map>());
}

MxDocument::~MxDocument() = default;

std::shared_ptr<ICommandBars> MxDocument::CommandBars() const { return commandBars_; }

std::string MxDocument::Title() const {
    if (path_.empty())
        return kUntitled;
    const auto slash = path_.find_last_of("/\\");
    return slash == std::string::npos ? path_ : path_.substr(slash + 1);
}

std::shared_ptr<IActiveView> MxDocument::ActiveView() const {
    if (layoutActive_)
        return layout_;
    return focus_;
}

void MxDocument::ActiveView(const std::shared_ptr<IActiveView>& view) {
    if (view && view.get() == static_cast<IActiveView*>(layout_.get())) {
        layoutActive_ = true;
        return;
    }
    for (const auto& map : maps_) {
        if (view && view.get() == static_cast<IActiveView*>(map.get())) {
            focus_ = map;
            layout_->FocusMap(map);
            layoutActive_ = false;
            return;
        }
    }
    throw Fault(fault::InvalidCall, kSource, "The active view must be the page layout or a map of the document");
}

std::shared_ptr<IMap> MxDocument::FocusMap() const { return focus_; }

void MxDocument::FocusMap(const std::shared_ptr<IMap>& map) {
    for (const auto& candidate : maps_) {
        if (map && map.get() == static_cast<IMap*>(candidate.get())) {
            focus_ = candidate;
            layout_->FocusMap(candidate);
            return;
        }
    }
    throw Fault(fault::InvalidCall, kSource, "The focus map must be a map of the document");
}

std::shared_ptr<IMaps> MxDocument::Maps() const {
    return std::make_shared<MapsView>(std::const_pointer_cast<MxDocument>(shared_from_this()));
}

std::shared_ptr<IPageLayout> MxDocument::PageLayout() const { return layout_; }

void MxDocument::AddLayer(const std::shared_ptr<ILayer>& layer) { focus_->AddLayer(layer); }

void MxDocument::AddMap(const std::shared_ptr<tess::Map>& map) {
    if (!map)
        throw Fault(fault::ObjectNotSet, kSource, "No map was given to add to the document");
    if (std::find(maps_.begin(), maps_.end(), map) != maps_.end())
        throw Fault(fault::InvalidCall, kSource, "The map '" + map->Name() + "' is already in the document");
    maps_.push_back(map);
    layout_->AddMapFrame(map);
    if (!focus_) {
        focus_ = map;
        layout_->FocusMap(map);
    }
}

void MxDocument::RemoveMap(const std::shared_ptr<IMap>& map) {
    auto it = std::find_if(maps_.begin(), maps_.end(),
                           [&](const auto& candidate) { return map && map.get() == static_cast<IMap*>(candidate.get()); });
    if (it == maps_.end())
        throw Fault(fault::InvalidCall, kSource, "The map is not in the document");
    if (maps_.size() == 1)
        throw Fault(fault::InvalidCall, kSource, "A document keeps at least one map");
    const auto removed = *it;
    maps_.erase(it);
    while (auto frame = layout_->FindFrame(Variant(std::static_pointer_cast<IMap>(removed))))
        layout_->DeleteElement(std::dynamic_pointer_cast<IElement>(frame));
    if (focus_ == removed) {
        focus_ = maps_.front();
        layout_->FocusMap(focus_);
    }
}

void MxDocument::ReplaceContents(std::vector<std::shared_ptr<tess::Map>> maps,
                                 std::shared_ptr<tess::PageLayout> layout) {
    if (maps.empty() || !layout || std::find(maps.begin(), maps.end(), nullptr) != maps.end())
        throw Fault(fault::InvalidCall, kSource, "A document needs at least one map and a page layout");
    maps_ = std::move(maps);
    layout_ = std::move(layout);
    focus_ = maps_.front();
    layout_->FocusMap(focus_);
    layoutActive_ = false;
    selectedLayer_.reset();
}

const std::string* MxDocument::FindExtensionStream(const std::string& progId) const {
    for (const auto& [id, text] : streams_) {
        if (EqualsNoCase(id, progId))
            return &text;
    }
    return nullptr;
}

void MxDocument::Attach(const std::shared_ptr<IApplication>& application,
                        const std::shared_ptr<tess::CommandBars>& commandBars) {
    parent_ = application;
    if (commandBars)
        commandBars_ = commandBars;
}

} // namespace tess
