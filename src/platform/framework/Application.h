#pragma once
// The host application as components see it: the document, the status bar,
// templates, extensions found by class id, and the host's commands.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tess {

class IDocument;
class IExtension;
class IStatusBar;
class IUID;
class ICommandItem;
class CommandBars;
class MxDocument;
class StatusBar;

//! The file paths of the document's templates; the last item is the document's own path.
class ITemplates {
public:
    virtual ~ITemplates() = default;
    virtual std::int32_t Count() const = 0;
    //! OutOfRange Fault outside 0..Count-1.
    virtual std::string Item(std::int32_t index) const = 0;
};

class IApplication {
public:
    virtual ~IApplication() = default;
    virtual std::shared_ptr<IDocument> Document() const = 0;
    virtual std::shared_ptr<IStatusBar> StatusBar() const = 0;
    virtual std::shared_ptr<ITemplates> Templates() const = 0;
    //! The loaded extension registered under the uid's value (a "{GUID}" or a ProgID, compared
    //! without regard to case), or null. An extension is created and started the first time it is
    //! needed, if Startup has not done so.
    virtual std::shared_ptr<IExtension> FindExtensionByCLSID(const IUID& uid) = 0;
    virtual std::string Name() const = 0;
    virtual std::string Caption() const = 0;
    virtual void Caption(const std::string& caption) = 0;
    //! Window handle stand-in: 0.
    virtual std::int32_t hWnd() const = 0;
    //! The tool that takes mouse input on the map; null until a tool is made current.
    virtual std::shared_ptr<ICommandItem> CurrentTool() const = 0;
    virtual void CurrentTool(const std::shared_ptr<ICommandItem>& tool) = 0;
};

//! Creates an extension object; the host supplies one per registered class.
using ExtensionFactory = std::function<std::shared_ptr<IExtension>()>;

//! Make it with Application::Create. Faults of document files name the path.
class Application final : public IApplication, public std::enable_shared_from_this<Application> {
public:
    //! An application with a new, empty document and the host's own commands registered
    //! (among them the tool that selects graphic elements, kSelectElementsToolId).
    static std::shared_ptr<Application> Create();
    ~Application() override;

    // IApplication
    std::shared_ptr<IDocument> Document() const override;
    std::shared_ptr<IStatusBar> StatusBar() const override;
    std::shared_ptr<ITemplates> Templates() const override;
    std::shared_ptr<IExtension> FindExtensionByCLSID(const IUID& uid) override;
    //! "Tessarine".
    std::string Name() const override;
    //! "<document title> - Tessarine" until set.
    std::string Caption() const override;
    void Caption(const std::string& caption) override { caption_ = caption; }
    std::int32_t hWnd() const override { return 0; }
    std::shared_ptr<ICommandItem> CurrentTool() const override { return currentTool_; }
    void CurrentTool(const std::shared_ptr<ICommandItem>& tool) override { currentTool_ = tool; }

    //! Registers an extension class by ProgID and class id (either may be empty, not both).
    //! Registering an id again replaces the entry (an instance already made stays running).
    void RegisterExtension(const std::string& progId, const std::string& clsid, ExtensionFactory factory);
    //! Creates and starts every registered extension not yet running, in registration order, and
    //! loads each one's settings from the document when it has a stream there.
    void Startup();
    //! Saves nothing; calls Shutdown on the running extensions, last started first, and drops them.
    void Shutdown();
    //! The running extensions, in the order they started.
    std::vector<std::shared_ptr<IExtension>> Extensions() const;

    //! The document as the platform's class.
    std::shared_ptr<MxDocument> MxDoc() const { return document_; }
    //! Replaces the document by a new one (the old one is dropped without saving).
    void NewDocument();
    //! Reads a map document and makes it the application's document; running extensions load
    //! their settings from it. On any fault the current document stays as it was.
    void OpenDocument(const std::string& path);
    //! Asks the running extensions for their settings and writes the document to path (empty:
    //! its own path). The document becomes clean and takes the path.
    void SaveDocument(const std::string& path = "");

    std::shared_ptr<tess::CommandBars> Commands() const { return commandBars_; }
    std::shared_ptr<tess::StatusBar> StatusBarObject() const { return statusBar_; }
    //! Faults raised by extensions while loading or saving their settings, as text; such a fault
    //! does not stop the document from opening or saving.
    const std::vector<std::string>& ExtensionFaults() const { return extensionFaults_; }

    //! The template a new document starts from: Normal.map.json beside the registry store.
    static std::string NormalTemplatePath();

private:
    Application();
    struct Entry;
    Entry* FindEntry(const std::string& id);
    std::shared_ptr<IExtension> Start(Entry& entry);
    void LoadSettings(IExtension& extension);
    void Adopt(std::shared_ptr<MxDocument> document);

    std::shared_ptr<MxDocument> document_;
    std::shared_ptr<tess::StatusBar> statusBar_;
    std::shared_ptr<tess::CommandBars> commandBars_;
    std::shared_ptr<ICommandItem> currentTool_;
    std::string caption_;
    std::vector<Entry> entries_;
    std::vector<std::shared_ptr<IExtension>> running_;
    std::vector<std::string> extensionFaults_;
};

} // namespace tess
