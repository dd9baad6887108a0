#include "platform/framework/Application.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "platform/framework/CommandBars.h"
#include "platform/framework/Document.h"
#include "platform/framework/HostContracts.h"
#include "platform/framework/MapDocument.h"
#include "platform/framework/Registry.h"
#include "platform/framework/StatusBar.h"
#include "platform/system/Fault.h"
#include "platform/system/UID.h"
#include "platform/system/VariantStream.h"

namespace tess {
namespace {

constexpr const char* kSource = "Application";
constexpr const char* kApplicationName = "Tessarine";
constexpr const char* kNormalTemplateName = "Normal.map.json";
constexpr const char* kSelectToolName = "SelectElementsTool";
constexpr const char* kSelectToolCaption = "Select Elements";

bool SameId(const std::string& a, const std::string& b) {
    return !a.empty() && a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(),
                      [](unsigned char x, unsigned char y) { return std::toupper(x) == std::toupper(y); });
}

std::string Describe(const std::exception& error) {
    if (auto* fault = dynamic_cast<const Fault*>(&error))
        return fault->Source() + ": " + fault->Description() + " (" + std::to_string(fault->Number()) + ")";
    return error.what();
}

class TemplateList final : public ITemplates {
public:
    explicit TemplateList(std::vector<std::string> items) : items_(std::move(items)) {}
    std::int32_t Count() const override { return static_cast<std::int32_t>(items_.size()); }
    std::string Item(std::int32_t index) const override {
        if (index < 0 || index >= Count())
            throw Fault(fault::OutOfRange, "Templates",
                        "Template " + std::to_string(index) + " of " + std::to_string(Count()));
        return items_[static_cast<std::size_t>(index)];
    }

private:
    std::vector<std::string> items_;
};

} // namespace

struct Application::Entry {
    std::string progId;
    std::string clsid;
    ExtensionFactory factory;
    std::shared_ptr<IExtension> instance;
};

Application::Application()
    : statusBar_(std::make_shared<tess::StatusBar>()), commandBars_(std::make_shared<tess::CommandBars>()) {}

Application::~Application() = default;

std::shared_ptr<Application> Application::Create() {
    std::shared_ptr<Application> application(new Application());
    std::weak_ptr<Application> weak = application;
    auto selectTool = std::make_shared<std::weak_ptr<ICommandItem>>();
    auto item = application->commandBars_->AddCommand(kSelectElementsToolId, kSelectToolName, kSelectToolCaption,
                                                      [weak, selectTool] {
                                                          if (auto app = weak.lock())
                                                              app->CurrentTool(selectTool->lock());
                                                      });
    *selectTool = item;
    application->Adopt(std::make_shared<MxDocument>());
    return application;
}

std::shared_ptr<IDocument> Application::Document() const { return document_; }

std::shared_ptr<IStatusBar> Application::StatusBar() const { return statusBar_; }

std::shared_ptr<ITemplates> Application::Templates() const {
    std::vector<std::string> items{NormalTemplatePath()};
    if (!document_->Path().empty())
        items.push_back(document_->Path());
    return std::make_shared<TemplateList>(std::move(items));
}

std::string Application::NormalTemplatePath() {
    const std::filesystem::path registry(Registry::DefaultPath());
    return (registry.parent_path() / kNormalTemplateName).string();
}

std::string Application::Name() const { return kApplicationName; }

std::string Application::Caption() const {
    if (!caption_.empty())
        return caption_;
    return document_->Title() + " - " + kApplicationName;
}

Application::Entry* Application::FindEntry(const std::string& id) {
    for (auto& entry : entries_) {
        if (SameId(entry.progId, id) || SameId(entry.clsid, id))
            return &entry;
    }
    return nullptr;
}

void Application::RegisterExtension(const std::string& progId, const std::string& clsid, ExtensionFactory factory) {
    if (progId.empty() && clsid.empty())
        throw Fault(fault::InvalidCall, kSource, "An extension needs a ProgID or a class id");
    if (!factory)
        throw Fault(fault::InvalidCall, kSource, "The extension '" + progId + clsid + "' needs a factory");
    Entry* entry = FindEntry(progId.empty() ? clsid : progId);
    if (!entry && !clsid.empty())
        entry = FindEntry(clsid);
    if (!entry) {
        entries_.push_back({});
        entry = &entries_.back();
    }
    entry->progId = progId;
    entry->clsid = clsid;
    entry->factory = std::move(factory);
}

std::shared_ptr<IExtension> Application::Start(Entry& entry) {
    auto instance = entry.factory();
    if (!instance)
        return nullptr;
    entry.instance = instance;
    running_.push_back(instance);
    try {
        instance->Startup(shared_from_this());
    } catch (const std::exception& error) {
        // A failed start leaves the extension loaded, as far as it got.
        extensionFaults_.push_back("Startup of " + entry.progId + ": " + Describe(error));
    }
    LoadSettings(*instance);
    return instance;
}

void Application::Startup() {
    for (auto& entry : entries_) {
        if (!entry.instance)
            Start(entry);
    }
}

void Application::Shutdown() {
    for (auto it = running_.rbegin(); it != running_.rend(); ++it) {
        try {
            (*it)->Shutdown();
        } catch (const std::exception& error) {
            extensionFaults_.push_back("Shutdown: " + Describe(error));
        }
    }
    running_.clear();
    for (auto& entry : entries_)
        entry.instance.reset();
}

std::vector<std::shared_ptr<IExtension>> Application::Extensions() const { return running_; }

std::shared_ptr<IExtension> Application::FindExtensionByCLSID(const IUID& uid) {
    Entry* entry = FindEntry(uid.Value());
    if (!entry)
        return nullptr;
    if (entry->instance)
        return entry->instance;
    return Start(*entry);
}

void Application::LoadSettings(IExtension& extension) {
    auto* persist = dynamic_cast<IPersistVariant*>(&extension);
    if (!persist)
        return;
    try {
        const std::string* text = document_->FindExtensionStream(persist->ID());
        if (!text)
            return;
        MemoryVariantStream stream = MemoryVariantStream::FromText(*text);
        persist->Load(stream);
    } catch (const std::exception& error) {
        extensionFaults_.push_back("Loading the settings of " + extension.Name() + ": " + Describe(error));
    }
}

void Application::Adopt(std::shared_ptr<MxDocument> document) {
    document->Attach(shared_from_this(), commandBars_);
    document_ = std::move(document);
}

void Application::NewDocument() { Adopt(std::make_shared<MxDocument>()); }

void Application::OpenDocument(const std::string& path) {
    Adopt(ReadMapDocument(path));
    for (const auto& extension : running_)
        LoadSettings(*extension);
}

void Application::SaveDocument(const std::string& path) {
    const std::string target = path.empty() ? document_->Path() : path;
    if (target.empty())
        throw Fault(fault::InvalidCall, kSource, "The document has no file yet; give a path to save it to");
    for (const auto& extension : running_) {
        auto* persist = dynamic_cast<IPersistVariant*>(extension.get());
        if (!persist)
            continue;
        try {
            MemoryVariantStream stream;
            persist->Save(stream);
            document_->ExtensionStream(persist->ID(), stream.ToText());
        } catch (const std::exception& error) {
            // The stream saved before stays in the document.
            extensionFaults_.push_back("Saving the settings of " + extension->Name() + ": " + Describe(error));
        }
    }
    WriteMapDocument(*document_, target);
    document_->Path(target);
    document_->SetClean();
}

} // namespace tess
