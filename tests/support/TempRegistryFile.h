// A registry file written for one test into the temporary folder and selected
// through SX_REGISTRY_FILE; environment variables come back as they were.
#pragma once

#include "support/TempFolder.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace sx::test {

/// Sets (or, with no value, removes) an environment variable for one scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const std::optional<std::string>& value) : FName(name)
    {
        if (const char* old = std::getenv(name))
            FOld = old;
        Set(value);
    }
    ~ScopedEnv() { Set(FOld); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    void Set(const std::optional<std::string>& value)
    {
        value ? ::setenv(FName, value->c_str(), 1) : ::unsetenv(FName);
    }
    const char* FName;
    std::optional<std::string> FOld;
};

/// The file holds the bytes as they stand.
class TempRegistryFile {
public:
    explicit TempRegistryFile(const std::string& bytes)
        : FEnv("SX_REGISTRY_FILE", FFolder.Write("registry.reg", bytes).string()) {}

private:
    TempFolder FFolder;  // declared first: written before the variable names it
    ScopedEnv FEnv;
};

}  // namespace sx::test
