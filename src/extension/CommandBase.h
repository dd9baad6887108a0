#pragma once
// What every command class shares: its constants from the command table, its
// picture, the application and document kept from OnCreate, and the steps that
// the runs of the tools have in common.

#include <memory>
#include <string>
#include <string_view>

#include "platform/framework/HostContracts.h"

namespace tess {

class IMxDocument;
class clsExtension;
struct CommandBitmap;
struct CommandInfo;

class CommandBase : public ICommand {
public:
    ~CommandBase() override;
    CommandBase(const CommandBase&) = delete;
    CommandBase& operator=(const CommandBase&) = delete;

    //! True; no command looks at the map to decide.
    bool Enabled() override { return true; }
    bool Checked() override { return false; }
    std::string Name() override;
    std::string Caption() override;
    std::string Tooltip() override;
    std::string Message() override;
    std::string HelpFile() override { return {}; }
    std::int32_t HelpContextID() override { return 0; }
    //! The id of the picture among the library's resources.
    std::int32_t Bitmap() override;
    //! "Halvorn".
    std::string Category() override;
    //! Keeps the application and its document.
    void OnCreate(const std::shared_ptr<IApplication>& hook) override;

    //! The picture loaded at creation (16 x 16, 24 bits per pixel).
    const CommandBitmap* Picture() const { return picture_; }
    const CommandInfo& Info() const { return *info_; }

protected:
    explicit CommandBase(std::string_view className);

    //! Throws the fault that tells the user this command's tool is not in this build.
    [[noreturn]] void NotAvailable() const;
    //! The extension of the kept application; a fault when it has none.
    std::shared_ptr<clsExtension> Extension() const;
    //! Shows a run's report in the report window, modally.
    static void ShowReport(const std::string& rtf);
    //! Marks the kept document dirty, so that the host offers to save it with the settings.
    void MarkDocumentDirty() const;

    std::shared_ptr<IApplication> application_;
    std::shared_ptr<IMxDocument> document_;

private:
    const CommandInfo* info_;
    const CommandBitmap* picture_;
};

} // namespace tess
