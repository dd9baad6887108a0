#include "frame/clsExtension.h"

#include "frame/ErrorHandling.h"
#include "platform/framework/Application.h"
#include "platform/framework/Registry.h"
#include "platform/system/Arrays.h"
#include "platform/system/UID.h"
#include "platform/system/VariantStream.h"

#include <cctype>
#include <charconv>
#include <vector>

namespace tess {
namespace {

constexpr const char* kVersionUnknown = "Unable to determine ArcGIS Version!";
// Another host extension the extension holds on to from Startup to Shutdown.
constexpr const char* kCompanionExtension = "{BD6262BC-D9D4-4B93-87E0-E442702D93E6}";

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::string::size_type start = 0;
    for (;;) {
        auto end = text.find(separator, start);
        parts.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos)
            return parts;
        start = end + 1;
    }
}

// The host's numeric test on a version part: digits with an optional fraction, blanks around allowed.
bool ParseWhole(const std::string& text, long& value) {
    std::string_view s(text);
    while (!s.empty() && s.front() == ' ')
        s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ')
        s.remove_suffix(1);
    if (s.empty())
        return false;
    auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
    return ec == std::errc() && end == s.data() + s.size();
}

} // namespace

clsExtension::clsExtension() = default;
clsExtension::~clsExtension() = default;

std::string SubKey(const std::string& company, const std::string& product, const std::string& version) {
    std::string key = "Software\\" + company + "\\" + product;
    if (!version.empty())
        key += "\\" + version;
    return key;
}

std::string ReturnArcGISVersion() {
    std::string result = kVersionUnknown;
    try {
        auto value = Registry().ReadString(RegistryHive::LocalMachine, SubKey("ESRI", "ArcGIS", ""), "RealVersion");
        if (value)
            result = *value;
    } catch (const std::exception&) {
        // An unreadable registry means an unknown version, as a missing key does.
    }
    return result;
}

bool IsVersion92OrLater(const std::string& versionText) {
    auto parts = Split(versionText, '.');
    long major = 0, minor = 0;
    if (parts.size() < 2 || !ParseWhole(parts[0], major) || !ParseWhole(parts[1], minor))
        return false;
    return major > 9 || (major == 9 && minor >= 2);
}

void clsExtension::Startup(const std::shared_ptr<IApplication>& application) {
    TrappedVoid("IExtension_Startup ", [&] {
        m_IsVersion92 = false;
        m_IsVersion92 = IsVersion92OrLater(ReturnArcGISVersion());
        if (application) {
            UID uid;
            uid.Value(kCompanionExtension);
            m_OtherExtension = application->FindExtensionByCLSID(uid);
        }
    });
}

void clsExtension::Shutdown() {
    TrappedVoid("IExtension_Shutdown ", [&] {
        SelectedLayer(nullptr);
        SelectedFeatureClass(nullptr);
        SelectedFields(nullptr);
        GeometryOptions(nullptr);
        SelectedPointLayer(nullptr);
        m_OtherExtension = nullptr;
        frmGeoCentricReturn(nullptr);
        frmBoundaryWrapReturn(nullptr);
        frmLayerFieldsReturn(nullptr);
    });
}

void clsExtension::Save(IVariantStream& stream) {
    TrappedVoid("IPersistVariant_Save ", [&] {
        stream.Write(Variant(StreamVersion));
        stream.Write(Variant(DirectoryPath()));
        stream.Write(Variant(NewShapefileLocation()));
        stream.Write(Variant(ProgressDialogSetExpanded()));
        stream.Write(Variant(ProgressDialogAutoClose()));
        stream.Write(Variant(LongitudeShift()));
        stream.Write(Variant(LongitudeWrapOption()));
        stream.Write(Variant(CustomBoundaryWest()));
        stream.Write(Variant(CustomBoundaryNorth()));
        stream.Write(Variant(CustomBoundaryEast()));
        stream.Write(Variant(CustomBoundarySouth()));
        stream.Write(Variant(DirectoryType()));
    });
}

// Fields are read one by one into the members, so a short stream keeps what it
// had and the read fault is reported; there is no branch on the version.
void clsExtension::Load(IVariantStream& stream) {
    TrappedVoid("IPersistVariant_Load ", [&] {
        m_StreamVersion = stream.Read().ToDouble();
        DirectoryPath(stream.Read().ToString());
        NewShapefileLocation(stream.Read().ToString());
        ProgressDialogSetExpanded(stream.Read().ToBool());
        ProgressDialogAutoClose(stream.Read().ToBool());
        LongitudeShift(stream.Read().ToDouble());
        LongitudeWrapOption(stream.Read().ToLong());
        CustomBoundaryWest(stream.Read().ToDouble());
        CustomBoundaryNorth(stream.Read().ToDouble());
        CustomBoundaryEast(stream.Read().ToDouble());
        CustomBoundarySouth(stream.Read().ToDouble());
        DirectoryType(stream.Read().ToString());
    });
}

std::shared_ptr<clsExtension> FindTessExtension(IApplication& application) {
    UID uid;
    uid.Value(clsExtension::ProgID);
    return std::dynamic_pointer_cast<clsExtension>(application.FindExtensionByCLSID(uid));
}

} // namespace tess
