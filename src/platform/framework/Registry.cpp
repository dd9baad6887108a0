#include "platform/framework/Registry.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <nlohmann/json.hpp>

#include "platform/framework/detail/TextFile.h"
#include "platform/system/Fault.h"
#include "platform/system/Text.h"

namespace tess {
namespace {

using nlohmann::json;

constexpr const char* kSource = "Registry";
constexpr const char* kKeysMember = "keys";
constexpr const char* kCategoriesMember = "categories";


const char* HiveName(RegistryHive hive) {
    switch (hive) {
    case RegistryHive::LocalMachine:
        return "HKEY_LOCAL_MACHINE";
    case RegistryHive::CurrentUser:
        return "HKEY_CURRENT_USER";
    case RegistryHive::ClassesRoot:
        return "HKEY_CLASSES_ROOT";
    }
    return "HKEY_LOCAL_MACHINE";
}

//! "HIVE\part\part": separators unified, empty parts dropped.
std::string FullKey(RegistryHive hive, const std::string& key) {
    std::string full = HiveName(hive);
    std::string part;
    auto flush = [&] {
        if (!part.empty())
            full += "\\" + part;
        part.clear();
    };
    for (char c : key) {
        if (c == '\\' || c == '/')
            flush();
        else
            part += c;
    }
    flush();
    return full;
}

json Load(const std::string& path) {
    std::error_code ec;
    if (!std::filesystem::exists(path, ec))
        return json::object();
    const std::string text = detail::ReadTextFile(path);
    json store = json::parse(text, nullptr, false);
    if (store.is_discarded() || !store.is_object())
        throw Fault(fault::InvalidFileFormat, kSource, "The registry file '" + path + "' is not valid JSON");
    for (const char* member : {kKeysMember, kCategoriesMember}) {
        if (store.contains(member) && !store[member].is_object())
            throw Fault(fault::InvalidFileFormat, kSource,
                        "The registry file '" + path + "' has a malformed \"" + member + "\" member");
    }
    return store;
}

void Save(const std::string& path, const json& store) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code ec;
    if (!folder.empty())
        std::filesystem::create_directories(folder, ec);
    detail::WriteTextFileAtomically(path, store.dump(2) + "\n");
}

//! The stored spelling of a key, or nothing.
json* FindKey(json& store, const std::string& fullKey) {
    if (!store.contains(kKeysMember))
        return nullptr;
    for (auto& [name, values] : store[kKeysMember].items()) {
        if (EqualsNoCase(name, fullKey) && values.is_object())
            return &values;
    }
    return nullptr;
}

json::iterator FindValue(json& values, const std::string& valueName) {
    for (auto it = values.begin(); it != values.end(); ++it) {
        if (EqualsNoCase(it.key(), valueName))
            return it;
    }
    return values.end();
}

std::optional<std::string> Lookup(json& store, RegistryHive hive, const std::string& key,
                                  const std::string& valueName) {
    json* values = FindKey(store, FullKey(hive, key));
    if (!values)
        return std::nullopt;
    auto it = FindValue(*values, valueName);
    if (it == values->end() || !it->is_string())
        return std::nullopt;
    return it->get<std::string>();
}

void Put(json& store, RegistryHive hive, const std::string& key, const std::string& valueName,
         const std::string& value) {
    const std::string fullKey = FullKey(hive, key);
    json* values = FindKey(store, fullKey);
    if (!values) {
        store[kKeysMember][fullKey] = json::object();
        values = &store[kKeysMember][fullKey];
    }
    auto it = FindValue(*values, valueName);
    if (it != values->end())
        *it = value;
    else
        (*values)[valueName] = value;
}

bool IsHostVersion(RegistryHive hive, const std::string& key, const std::string& valueName) {
    return hive == RegistryHive::LocalMachine && EqualsNoCase(FullKey(hive, key), FullKey(hive, kHostVersionKey)) &&
           EqualsNoCase(valueName, kHostVersionValue);
}

json* FindCategory(json& store, const std::string& category) {
    if (!store.contains(kCategoriesMember))
        return nullptr;
    for (auto& [name, members] : store[kCategoriesMember].items()) {
        if (EqualsNoCase(name, category) && members.is_array())
            return &members;
    }
    return nullptr;
}

ComponentRegistration ToRegistration(const json& entry) {
    ComponentRegistration r;
    if (entry.is_object()) {
        r.clsid = entry.value("clsid", "");
        r.progId = entry.value("progId", "");
    }
    return r;
}

bool Matches(const ComponentRegistration& r, const std::string& clsidOrProgId) {
    return (!r.clsid.empty() && EqualsNoCase(r.clsid, clsidOrProgId)) ||
           (!r.progId.empty() && EqualsNoCase(r.progId, clsidOrProgId));
}

} // namespace

Registry::Registry() : path_(DefaultPath()) {}

Registry::Registry(std::string path) : path_(std::move(path)) {}

std::string Registry::DefaultPath() {
    if (const char* explicitPath = std::getenv("TESS_REGISTRY"); explicitPath && *explicitPath)
        return explicitPath;
    const char* home = std::getenv("HOME");
    const std::string base = (home && *home) ? home : ".";
    return base + "/.config/tessarine/registry.json";
}

std::optional<std::string> Registry::ReadString(RegistryHive hive, const std::string& key,
                                                const std::string& valueName) const {
    json store = Load(path_);
    if (auto value = Lookup(store, hive, key, valueName))
        return value;
    if (!IsHostVersion(hive, key, valueName))
        return std::nullopt;
    // The platform's version is part of its installation: write it the first time it is asked for.
    Put(store, hive, key, valueName, kPlatformVersion);
    try {
        Save(path_, store);
    } catch (const Fault&) {
        // A read-only store still answers the platform's version.
    }
    return std::string(kPlatformVersion);
}

void Registry::WriteString(RegistryHive hive, const std::string& key, const std::string& valueName,
                           const std::string& value) {
    json store = Load(path_);
    Put(store, hive, key, valueName, value);
    Save(path_, store);
}

bool Registry::DeleteValue(RegistryHive hive, const std::string& key, const std::string& valueName) {
    json store = Load(path_);
    json* values = FindKey(store, FullKey(hive, key));
    if (!values)
        return false;
    auto it = FindValue(*values, valueName);
    if (it == values->end())
        return false;
    values->erase(it);
    Save(path_, store);
    return true;
}

std::string Registry::HostVersion() const {
    return ReadString(RegistryHive::LocalMachine, kHostVersionKey, kHostVersionValue).value_or(kPlatformVersion);
}

void Registry::RegisterComponent(const std::string& category, const ComponentRegistration& component) {
    if (category.empty() || (component.clsid.empty() && component.progId.empty()))
        throw Fault(fault::InvalidCall, kSource, "A component registration needs a category and a CLSID or ProgID");
    json store = Load(path_);
    json* members = FindCategory(store, category);
    if (!members) {
        store[kCategoriesMember][category] = json::array();
        members = &store[kCategoriesMember][category];
    }
    for (auto& entry : *members) {
        const ComponentRegistration existing = ToRegistration(entry);
        if (Matches(existing, component.clsid) || Matches(existing, component.progId)) {
            if (existing == component)
                return;
            entry = json{{"clsid", component.clsid}, {"progId", component.progId}};
            Save(path_, store);
            return;
        }
    }
    members->push_back(json{{"clsid", component.clsid}, {"progId", component.progId}});
    Save(path_, store);
}

bool Registry::UnregisterComponent(const std::string& category, const std::string& clsidOrProgId) {
    json store = Load(path_);
    json* members = FindCategory(store, category);
    if (!members)
        return false;
    const auto before = members->size();
    for (auto it = members->begin(); it != members->end();) {
        if (Matches(ToRegistration(*it), clsidOrProgId))
            it = members->erase(it);
        else
            ++it;
    }
    if (members->size() == before)
        return false;
    Save(path_, store);
    return true;
}

std::vector<ComponentRegistration> Registry::Components(const std::string& category) const {
    json store = Load(path_);
    std::vector<ComponentRegistration> result;
    if (json* members = FindCategory(store, category)) {
        for (const auto& entry : *members)
            result.push_back(ToRegistration(entry));
    }
    return result;
}

std::vector<std::string> Registry::Categories() const {
    json store = Load(path_);
    std::vector<std::string> names;
    if (store.contains(kCategoriesMember)) {
        for (const auto& [name, members] : store[kCategoriesMember].items()) {
            if (members.is_array() && !members.empty())
                names.push_back(name);
        }
    }
    return names;
}

} // namespace tess
