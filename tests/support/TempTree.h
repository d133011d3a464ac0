#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace lumabroom::test {

// A folder of its own below the temporary folder, removed with everything in it at the end
// (unreadable folders are made readable again first).
class TempTree {
public:
    TempTree();
    ~TempTree();
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    const std::filesystem::path& root() const { return root_; }
    std::filesystem::path operator/(std::string_view relative) const { return root_ / relative; }

    // All take paths relative to root() and create missing parent folders.
    std::filesystem::path dir(std::string_view relative);
    std::filesystem::path file(std::string_view relative, std::size_t bytes = 0, char fill = 'x');
    std::filesystem::path sparseFile(std::string_view relative, std::int64_t logicalLength);
    std::filesystem::path symlink(std::string_view relative, const std::filesystem::path& target);
    std::filesystem::path hardlink(std::string_view relative, std::string_view existingRelative);
    void setMTime(std::string_view relative, std::int64_t secondsSince1970);
    void makeUnreadable(std::string_view relative);

private:
    std::filesystem::path root_;
};

// The whole content of a file; empty if it cannot be read.
std::string readFile(const std::filesystem::path& file);
// Writes `text` as the whole content of `file`, creating missing parent folders.
void writeText(const std::filesystem::path& file, const std::string& text);

// Allocated bytes of one file (st_blocks × 512), without following a link.
std::int64_t allocatedBytes(const std::filesystem::path&);

// Sets environment variables for the life of the object and restores them after.
class ScopedEnv {
public:
    ScopedEnv(std::initializer_list<std::pair<std::string, std::string>> values);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    std::map<std::string, std::pair<bool, std::string>> saved_;
};

} // namespace lumabroom::test
