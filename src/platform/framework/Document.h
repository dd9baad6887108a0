#pragma once
// The map document: its maps, the page layout, which of them is shown, the
// selected layer, the dirty flag, and the persisted streams of extensions.

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tess {

class IActiveView;
class IApplication;
class ICommandBars;
class ILayer;
class IMap;
class IPageLayout;
class Map;
class PageLayout;
class CommandBars;

class IDocument {
public:
    virtual ~IDocument() = default;
    virtual std::shared_ptr<ICommandBars> CommandBars() const = 0;
    //! The file name of the document, or "Untitled" while it has none.
    virtual std::string Title() const = 0;
    //! The application showing the document; null for a document on its own.
    virtual std::shared_ptr<IApplication> Parent() const = 0;
};

//! The maps of a document.
class IMaps {
public:
    virtual ~IMaps() = default;
    virtual std::int32_t Count() const = 0;
    //! OutOfRange Fault outside 0..Count-1.
    virtual std::shared_ptr<IMap> Item(std::int32_t index) const = 0;
    //! Adds a map (and a frame for it on the page layout).
    virtual void Add(const std::shared_ptr<IMap>& map) = 0;
    //! Removes a map and its frame; the last map cannot be removed (InvalidCall Fault).
    virtual void Remove(const std::shared_ptr<IMap>& map) = 0;
};

class IMxDocument {
public:
    virtual ~IMxDocument() = default;
    //! The focus map (as a view) in data view, the page layout in layout view.
    virtual std::shared_ptr<IActiveView> ActiveView() const = 0;
    //! The page layout or one of the maps; anything else is an InvalidCall Fault.
    virtual void ActiveView(const std::shared_ptr<IActiveView>& view) = 0;
    virtual std::shared_ptr<IMap> FocusMap() const = 0;
    //! One of the document's maps; anything else is an InvalidCall Fault.
    virtual void FocusMap(const std::shared_ptr<IMap>& map) = 0;
    virtual std::shared_ptr<IMaps> Maps() const = 0;
    virtual std::shared_ptr<IPageLayout> PageLayout() const = 0;
    //! The layer chosen in the table of contents; null when none is.
    virtual std::shared_ptr<ILayer> SelectedLayer() const = 0;
    virtual void SelectedLayer(const std::shared_ptr<ILayer>& layer) = 0;
    //! Adds the layer to the focus map.
    virtual void AddLayer(const std::shared_ptr<ILayer>& layer) = 0;
    //! Tells the table of contents to redraw; counted (UpdateContentsCount).
    virtual void UpdateContents() = 0;
    //! How often UpdateContents was called (an addition of this platform).
    virtual std::int32_t UpdateContentsCount() const = 0;
};

class IDocumentDirty {
public:
    virtual ~IDocumentDirty() = default;
    virtual void SetDirty() = 0;
    virtual bool IsDirty() const = 0;
};

class IDocumentDirty2 : public IDocumentDirty {
public:
    virtual void SetClean() = 0;
};

//! Make it with std::make_shared. A new document has one map named "Layers" in data view and a
//! page layout with one frame showing it; it is clean and has no path.
class MxDocument final : public IDocument,
                         public IMxDocument,
                         public IDocumentDirty2,
                         public std::enable_shared_from_this<MxDocument> {
public:
    MxDocument();
    ~MxDocument() override;

    // IDocument
    std::shared_ptr<ICommandBars> CommandBars() const override;
    std::string Title() const override;
    std::shared_ptr<IApplication> Parent() const override { return parent_.lock(); }

    // IMxDocument
    std::shared_ptr<IActiveView> ActiveView() const override;
    void ActiveView(const std::shared_ptr<IActiveView>& view) override;
    std::shared_ptr<IMap> FocusMap() const override;
    void FocusMap(const std::shared_ptr<IMap>& map) override;
    std::shared_ptr<IMaps> Maps() const override;
    std::shared_ptr<IPageLayout> PageLayout() const override;
    std::shared_ptr<ILayer> SelectedLayer() const override { return selectedLayer_; }
    void SelectedLayer(const std::shared_ptr<ILayer>& layer) override { selectedLayer_ = layer; }
    void AddLayer(const std::shared_ptr<ILayer>& layer) override;
    void UpdateContents() override { ++updateContents_; }
    std::int32_t UpdateContentsCount() const override { return updateContents_; }

    // IDocumentDirty2
    void SetDirty() override { dirty_ = true; }
    bool IsDirty() const override { return dirty_; }
    void SetClean() override { dirty_ = false; }

    //! Whether the page layout is the active view.
    bool LayoutActive() const { return layoutActive_; }
    //! The maps as the platform's class, in order.
    const std::vector<std::shared_ptr<tess::Map>>& MapList() const { return maps_; }
    std::shared_ptr<tess::Map> FocusMapObject() const { return focus_; }
    std::shared_ptr<tess::PageLayout> Layout() const { return layout_; }
    //! Adds a map and a frame for it on the page layout.
    void AddMap(const std::shared_ptr<tess::Map>& map);
    //! Removes a map and its frame (InvalidCall Fault for the last map or a map not here).
    void RemoveMap(const std::shared_ptr<IMap>& map);

    //! The file the document was read from or last saved to; empty for a new one.
    const std::string& Path() const { return path_; }
    void Path(const std::string& path) { path_ = path; }

    //! Persisted settings of extensions: ProgID -> the text form of their variant stream. Streams
    //! of extensions that are not loaded stay and are saved back as they came.
    const std::map<std::string, std::string>& ExtensionStreams() const { return streams_; }
    void ExtensionStream(const std::string& progId, const std::string& text) { streams_[progId] = text; }
    //! The stream of a ProgID (ignoring case), or nothing.
    const std::string* FindExtensionStream(const std::string& progId) const;

    //! Replaces maps and page layout at once (a document reader fills a document this way); the
    //! first map becomes the focus map and data view is active. The list must not be empty.
    void ReplaceContents(std::vector<std::shared_ptr<tess::Map>> maps, std::shared_ptr<tess::PageLayout> layout);

    //! Joins the document to an application: Parent and CommandBars come from it.
    void Attach(const std::shared_ptr<IApplication>& application,
                const std::shared_ptr<tess::CommandBars>& commandBars);

private:
    class MapsView;
    std::vector<std::shared_ptr<tess::Map>> maps_;
    std::shared_ptr<tess::Map> focus_;
    std::shared_ptr<tess::PageLayout> layout_;
    bool layoutActive_ = false;
    std::shared_ptr<ILayer> selectedLayer_;
    bool dirty_ = false;
    std::int32_t updateContents_ = 0;
    std::string path_;
    std::map<std::string, std::string> streams_;
    std::weak_ptr<IApplication> parent_;
    std::shared_ptr<tess::CommandBars> commandBars_;
};

} // namespace tess
