#pragma once
// A shared library opened when it is first needed rather than when the program starts. The HTTP client and
// the secret service bring some fifty libraries between them; a command that never syncs does not pay the
// dynamic loader for them (about 20 ms of every command).
#include <dlfcn.h>

#include <string>

namespace kro {

class LoadedLibrary {
public:
    explicit LoadedLibrary(const char* soname) : handle_(dlopen(soname, RTLD_NOW | RTLD_LOCAL)) {
        if (!handle_) error_ = dlerror();
    }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;
    // Never closed: the functions taken from it may be called until the process ends.

    bool loaded() const { return handle_ != nullptr; }
    // Why it could not be opened, in the loader's words.
    const std::string& error() const { return error_; }

    // The named function, with the type of the declaration `Function` (`decltype(curl_easy_init)`); null when
    // the library or the function is missing. The library's own dependencies are searched too.
    template <class Function>
    Function* function(const char* name) const {
        return handle_ ? reinterpret_cast<Function*>(dlsym(handle_, name)) : nullptr;
    }

private:
    void* handle_;
    std::string error_;
};

}  // namespace kro
