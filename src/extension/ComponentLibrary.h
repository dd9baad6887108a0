#pragma once
// Loading the extension library in a host: opens the shared library and finds
// its entry points by name. Header-only, so a host needs nothing of the library
// at link time.

#include <dlfcn.h>

#include <stdexcept>
#include <string>

#include "extension/ComponentContract.h"

namespace tess {

//! The file name of the extension library.
inline constexpr const char* kExtensionLibraryName = "libtessarine_extension.so";

class ComponentLibrary {
public:
    //! Opens the library; a std::runtime_error with the loader's message when it or one of the
    //! entry points cannot be found.
    explicit ComponentLibrary(const std::string& path) {
        handle_ = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!handle_)
            throw std::runtime_error(Describe("cannot load " + path));
        try {
            GetClassObject = Symbol<component::GetClassObjectFn>("DllGetClassObject");
            CanUnloadNow = Symbol<component::CanUnloadNowFn>("DllCanUnloadNow");
            RegisterServer = Symbol<component::RegisterServerFn>("DllRegisterServer");
            UnregisterServer = Symbol<component::UnregisterServerFn>("DllUnregisterServer");
            BitmapResource = Symbol<component::BitmapResourceFn>("TessBitmapResource");
        } catch (...) {
            ::dlclose(handle_);
            throw;
        }
    }
    ComponentLibrary(const ComponentLibrary&) = delete;
    ComponentLibrary& operator=(const ComponentLibrary&) = delete;
    //! Closes the library. Release every object it made first (CanUnloadNow tells).
    ~ComponentLibrary() { ::dlclose(handle_); }

    //! Creates an object by ProgID; an empty object when the library does not know the class.
    ComponentObject Create(const std::string& progId) const {
        ComponentObject object;
        GetClassObject(progId.c_str(), &object);
        return object;
    }

    component::GetClassObjectFn GetClassObject = nullptr;
    component::CanUnloadNowFn CanUnloadNow = nullptr;
    component::RegisterServerFn RegisterServer = nullptr;
    component::UnregisterServerFn UnregisterServer = nullptr;
    component::BitmapResourceFn BitmapResource = nullptr;

private:
    template <class Fn>
    Fn Symbol(const char* name) {
        ::dlerror();
        void* address = ::dlsym(handle_, name);
        if (!address)
            throw std::runtime_error(Describe(std::string("no entry point ") + name));
        return reinterpret_cast<Fn>(address);
    }
    static std::string Describe(const std::string& what) {
        const char* reason = ::dlerror();
        return reason ? what + ": " + reason : what;
    }

    void* handle_ = nullptr;
};

} // namespace tess
