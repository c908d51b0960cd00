#include "tools/virtualcamera/run/Preload.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;

namespace Preload
{
namespace
{

constexpr char OWNER_FILE[] = "camera-owner-pid";

bool isRunning(int pid)
{
    return pid > 0 && (::kill(pid, 0) == 0 || errno == EPERM);
}

} // namespace

bool ensure(char **arguments)
{
    const char *present = std::getenv("LD_PRELOAD");
    if (present && std::string(present).find("umockdev-preload") != std::string::npos)
        return true;
    std::error_code error;
    const fs::path self = fs::read_symlink("/proc/self/exe", error);
    const fs::path guard = self.parent_path() / "libdevguard.so";
    if (error || !fs::exists(guard))
        return false;
    // By its name and not by its path, which would end at a space.
    const char *folders = std::getenv("LD_LIBRARY_PATH");
    ::setenv("LD_LIBRARY_PATH",
             (self.parent_path().string() + (folders ? std::string(":") + folders : "")).c_str(),
             1);
    std::string libraries = SANITIZER_RUNTIME;
    for (const std::string &library :
         {guard.filename().string(), std::string("libumockdev-preload.so.0"),
          std::string(present ? present : "")}) {
        if (!library.empty())
            libraries += (libraries.empty() ? "" : ":") + library;
    }
    ::setenv("LD_PRELOAD", libraries.c_str(), 1);
    ::execv(self.c_str(), arguments);
    return false;
}

void sweepLeftovers()
{
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, error)) {
        if (entry.path().filename().string().rfind("umockdev.", 0) != 0)
            continue;
        int owner = 0;
        if (std::ifstream(entry.path() / OWNER_FILE) >> owner && !isRunning(owner))
            fs::remove_all(entry.path(), error);
    }
}

void markOwner(const char *root)
{
    std::ofstream(fs::path(root) / OWNER_FILE) << ::getpid() << '\n';
}

} // namespace Preload
