#pragma once

#include "host/FolderChain.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumabroom {

struct FileInfo {
    std::int64_t allocatedBytes = 0; // st_blocks × 512
    std::uint64_t linkCount = 0;
    std::int64_t modificationSeconds = 0;
    bool isDirectory = false;
    bool isLink = false;
};

// stat(2), which follows links; nothing if it fails.
std::optional<FileInfo> statFollowingLinks(const std::string& path);
// Of the item itself, a link rather than what it points at; nothing if it fails.
std::optional<FileInfo> statNotFollowingLinks(const std::string& path);
std::optional<FileIdentity> identityOf(const std::string& path);
// The path with its links resolved; nothing if it does not exist.
std::optional<std::string> resolvedPath(const std::string& path);

// Reads one open folder entry by entry, with the type the system reports and, for regular files,
// stat data taken relative to the folder's descriptor. Never follows a link: a folder swapped for a
// link is not entered, and neither is a mount below it. Move-only; closes its descriptor unless it
// was only lent one.
class DirectoryReader {
public:
    struct Entry {
        const char* name = nullptr;
        bool isDirectory = false;
        // Stat data if the entry is a regular file (not a link, socket or the like).
        std::optional<FileInfo> regularFile() const;

        int folder = -1;
        unsigned char type = 0;
        std::optional<FileInfo> known; // filled where the type had to be asked for
    };

    DirectoryReader() = default;
    explicit DirectoryReader(const std::string& path) { open(path); }
    // Reads an open folder from its start without taking the descriptor over.
    static DirectoryReader borrowing(int fd);
    DirectoryReader(DirectoryReader&& other) noexcept;
    DirectoryReader& operator=(DirectoryReader&& other) noexcept;
    DirectoryReader(const DirectoryReader&) = delete;
    DirectoryReader& operator=(const DirectoryReader&) = delete;
    ~DirectoryReader() { close(); }

    void open(const std::string& path);
    DirectoryReader openChild(const char* name) const;
    // Whether the child `name` is a folder where another mount begins.
    bool isMountPointBelow(const char* name) const;
    bool isOpen() const { return fd_ >= 0; }
    void close();

    // Calls visit(entry) for each child but "." and ".."; stops when visit returns false, and then
    // returns false.
    template <typename Visit>
    bool forEach(Visit&& visit) {
        Entry entry;
        while (next(entry))
            if (!visit(entry)) return false;
        return true;
    }

private:
    bool next(Entry& entry);

    int fd_ = -1;
    bool owned_ = true;
    void* dir_ = nullptr; // DIR* where there is no getdents64
    int bufferUsed_ = 0;
    int bufferPosition_ = 0;
};

} // namespace lumabroom
