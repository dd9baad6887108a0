#pragma once
// The registry stand-in: a small per-user JSON store of string values under
// keys, and of component category registrations. It answers where the
// extension would read the machine registry (the host's version) and where
// self-registration writes its classes.
//
// The file is $TESS_REGISTRY, or ~/.config/tessarine/registry.json. Every
// call reads the file afresh and every change rewrites it whole through a
// temporary file and a rename, so two processes never see half a file.

#include <optional>
#include <string>
#include <vector>

namespace tess {

//! The root of a key, as the host's registry has them.
enum class RegistryHive { LocalMachine, CurrentUser, ClassesRoot };

//! One class entered in a component category.
struct ComponentRegistration {
    std::string clsid;  //!< "{...}" text, may be empty
    std::string progId; //!< e.g. "Tessarine.clsExtension"
    friend bool operator==(const ComponentRegistration&, const ComponentRegistration&) = default;
};

class Registry {
public:
    //! The store at DefaultPath().
    Registry();
    //! A store at an explicit path (tests, tools).
    explicit Registry(std::string path);

    //! $TESS_REGISTRY when set and not empty, else ~/.config/tessarine/registry.json
    //! ($HOME unset: the current folder).
    static std::string DefaultPath();
    const std::string& Path() const { return path_; }

    //! A string value; nothing when the key or value is absent. Key paths compare without
    //! regard to case and accept "\" or "/" between their parts; value names ignore case.
    //! The host's version value is written with its default when absent (see HostVersion).
    std::optional<std::string> ReadString(RegistryHive hive, const std::string& key,
                                          const std::string& valueName) const;
    void WriteString(RegistryHive hive, const std::string& key, const std::string& valueName,
                     const std::string& value);
    //! True when the value was there.
    bool DeleteValue(RegistryHive hive, const std::string& key, const std::string& valueName);

    //! The version text of the platform, "10.0" unless the store holds another.
    std::string HostVersion() const;

    //! Enters a class in a category; registering the same class again changes nothing.
    //! A class is the same when its CLSID or its ProgID matches (ignoring case).
    void RegisterComponent(const std::string& category, const ComponentRegistration& component);
    //! Removes a class, named by CLSID or ProgID; true when it was there.
    bool UnregisterComponent(const std::string& category, const std::string& clsidOrProgId);
    //! The classes of a category in the order they were entered; empty for an unknown category.
    std::vector<ComponentRegistration> Components(const std::string& category) const;
    //! Names of all categories that hold at least one class.
    std::vector<std::string> Categories() const;

private:
    std::string path_;
};

//! The key and value under which the platform keeps its version, and that version.
inline constexpr const char* kHostVersionKey = "Software\\ESRI\\ArcGIS";
inline constexpr const char* kHostVersionValue = "RealVersion";
inline constexpr const char* kPlatformVersion = "10.0";

} // namespace tess
