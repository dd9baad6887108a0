#include "CommandsListing.h"

#include <array>
#include <cstdio>
#include <ostream>

#include "CommandTable.h"
#include "HostSession.h"
#include "TextUtil.h"

namespace tess::cli {
namespace {

constexpr int kIndentStep = 2;       // blanks per menu level
constexpr int kCaptionColumn = 46;   // width of the caption column, indent included
constexpr int kSeparatorWidth = 36;  // dashes of a group's separator line

std::string TrimEnd(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string TypedName(const BarItem& item) {
    const FriendlyCommand* entry = FindFriendlyCommand(item.name);
    if (!entry)
        return item.name;
    if (entry->dialog == DialogKind::Unsupported)
        return "(" + std::string(kDesktopOnly) + ")";
    return std::string(entry->friendly);
}

void PrintItems(std::ostream& out, const std::vector<BarItem>& items, int depth) {
    const std::string indent(static_cast<std::size_t>(depth * kIndentStep), ' ');
    for (std::size_t i = 0; i < items.size(); ++i) {
        const BarItem& item = items[i];
        if (item.group && i > 0)
            out << indent << std::string(kSeparatorWidth, '-') << '\n';
        std::string caption = indent + CaptionText(item.caption);
        if (item.isMenu) {
            out << caption << '\n';
            PrintItems(out, item.items, depth + 1);
            continue;
        }
        if (!item.known) {
            out << caption << "  (not in this library)\n";
            continue;
        }
        std::array<char, 256> line{};
        std::snprintf(line.data(), line.size(), "%-*s %-30s %s", kCaptionColumn, caption.c_str(),
                      item.name.c_str(), TypedName(item).c_str());
        out << TrimEnd(line.data()) << (item.enabled ? "" : "  [disabled]") << '\n';
    }
}

} // namespace

ExitCode ListCommands(Console& console, const std::string& libraryPath) {
    const std::string library = libraryPath.empty() ? FindExtensionLibrary() : libraryPath;
    if (library.empty()) {
        console.err << "tessarine: the extension library was not found (set TESS_EXTENSION_LIBRARY to its path)\n";
        return ExitCode::Failed;
    }
    try {
        HostSession session(library);
        std::array<char, 256> header{};
        std::snprintf(header.data(), header.size(), "%-*s %-30s %s", kCaptionColumn, "Menu item", "Command name",
                      "tessarine ...");
        console.out << TrimEnd(header.data()) << '\n';
        for (const ToolBar& bar : session.CommandBars()) {
            console.out << "[" << CaptionText(bar.caption) << "]\n";
            PrintItems(console.out, bar.items, 1);
        }
    } catch (const std::exception& caught) {
        console.err << "tessarine: cannot load the extension: " << caught.what() << '\n';
        return ExitCode::Failed;
    }
    return ExitCode::Success;
}

} // namespace tess::cli
