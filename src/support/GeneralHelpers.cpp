#include "support/GeneralHelpers.h"

#include "frame/ErrorHandling.h"
#include "platform/framework/Application.h"
#include "platform/framework/CommandBars.h"
#include "platform/framework/Document.h"
#include "platform/system/Fault.h"
#include "platform/system/UID.h"
#include "platform/srs/SpatialReference.h"
#include "platform/system/Variant.h"
#include "platform/ui/Form.h"
#include "platform/ui/UIServices.h"
#include "support/Format.h"
#include "support/aml_func_mod.h"

namespace tess {
namespace {

// Key codes of the KeyPress event (ASCII).
constexpr int kRefused = 0;
constexpr int kBackspace = 8;
constexpr int kComma = 44;
constexpr int kMinus = 45;
constexpr int kPoint = 46;
constexpr int kDigitZero = 48;
constexpr int kDigitNine = 57;

constexpr const char* kLineBreak = "\r\n";
constexpr const char* kThousandsPattern = "#,##0.000000000000000";
constexpr const char* kPlainPattern = "0.000000000000000";

void FilterKey(int& keyCode, const Control& textBox, int caret, bool allowMinus) {
    if (keyCode <= kBackspace || keyCode == kComma || (keyCode >= kDigitZero && keyCode <= kDigitNine))
        return;
    if (keyCode == kMinus && allowMinus)
        return;
    if (keyCode == kPoint) {
        const std::string& text = textBox.Text;
        const std::size_t at =
            caret < 0 || static_cast<std::size_t>(caret) > text.size() ? text.size() : static_cast<std::size_t>(caret);
        const std::string candidate = text.substr(0, at) + "." + text.substr(at);
        if (IsNumeric(std::string_view(candidate)))
            return;
    }
    keyCode = kRefused;
}

} // namespace

void CheckNumericReal(int& keyCode, const Control& textBox, int caret) {
    TrappedVoid("CheckNumericReal ", [&] { FilterKey(keyCode, textBox, caret, true); });
}

void CheckNumericRealPositive(int& keyCode, const Control& textBox, int caret) {
    TrappedVoid("CheckNumericRealPositive ", [&] { FilterKey(keyCode, textBox, caret, false); });
}

std::string TrimZerosAndDecimals(double number, bool useThousands) {
    return Trapped("TrimZerosAndDecimals ", std::string(), [&] {
        const std::string text = Format(number, useThousands ? kThousandsPattern : kPlainPattern);
        std::string trimmed = BasicTrimAvenue(text, "", "0");
        if (!trimmed.empty() && trimmed.back() == '.')
            trimmed.pop_back();
        return trimmed;
    });
}

void OpenDoc(const std::string& path) {
    TrappedVoid("OpenDoc ", [&] {
        if (FileExists(path)) {
            UI().OpenDocument(path);
            return;
        }
        UI().MessageBox(std::string("Unable to find the following file:") + kLineBreak + kLineBreak + path +
                            kLineBreak + kLineBreak + "Bailing out...",
                        MsgBoxButtons::OK, MsgBoxIcon::Exclamation, "Missing File:");
    });
}

bool CompareSpatialReferences(const std::shared_ptr<ISpatialReference>& first,
                              const std::shared_ptr<ISpatialReference>& second) {
    return Trapped("CompareSpatialReferences ", false, [&] {
        if (!first || !second)
            return !first && !second;
        return first->IsEqual(*second) && first->IsXYPrecisionEqual(*second);
    });
}

void EnableSelectTool(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("EnableSelectTool ", [&] {
        UID uid;
        uid.Value(kSelectElementsToolId);
        std::shared_ptr<ICommandItem> item;
        if (application && application->Document())
            if (auto bars = application->Document()->CommandBars())
                item = bars->Find(uid, false, false);
        if (!item)
            throw Fault(fault::ObjectNotSet, "MyGeneralOperations", "Object variable or With block variable not set");
        item->Execute();
    });
}

} // namespace tess
