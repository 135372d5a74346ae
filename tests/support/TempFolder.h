// A folder of one test's own under the system's temporary folder, removed
// with everything in it when the test is done.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

namespace sx::test {

class TempFolder {
public:
    TempFolder()
    {
        const std::filesystem::path base = std::filesystem::temp_directory_path();
        std::random_device random;
        for (int attempt = 0; attempt < MaxAttempts; ++attempt) {
            FDir = base / ("sx-test-" + std::to_string(random()) + std::to_string(random()));
            if (std::filesystem::create_directory(FDir))
                return;
        }
        throw std::runtime_error("no free name for a temporary folder in " + base.string());
    }
    ~TempFolder()
    {
        std::error_code ignored;  // a destructor must not throw; a leftover folder is harmless
        std::filesystem::remove_all(FDir, ignored);
    }
    /// Deleted: two owners would remove the folder twice.
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// The path of a file (or folder) of that name in the folder; nothing is made.
    const std::filesystem::path& Dir() const { return FDir; }
    std::filesystem::path Path(const std::string& name) const { return FDir / name; }
    /// Writes the bytes as they stand into the file of that name and returns its path.
    std::filesystem::path Write(const std::string& name, const std::string& bytes) const
    {
        const std::filesystem::path path = Path(name);
        std::ofstream file(path, std::ios::binary);
        file << bytes;
        if (!file.flush())
            throw std::runtime_error("cannot write " + path.string());
        return path;
    }

private:
    /// Random names collide only when something else is wrong; give up then.
    static constexpr int MaxAttempts = 100;
    std::filesystem::path FDir;
};

}  // namespace sx::test
