#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace lumabroom::test {

namespace {
fs::path baseFolder() {
    const char* tmp = std::getenv("TMPDIR");
    return fs::path(tmp && *tmp ? tmp : testing::TempDir().c_str());
}

void makeAllReadable(const fs::path& p) {
    std::error_code ec;
    if (fs::is_symlink(p, ec) || !fs::is_directory(p, ec)) return;
    ::chmod(p.c_str(), 0755);
    for (auto it = fs::directory_iterator(p, ec); !ec && it != fs::directory_iterator(); it.increment(ec))
        makeAllReadable(it->path());
}
} // namespace

TempTree::TempTree() {
    std::string pattern = (baseFolder() / "lumabroom-test-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    root_ = fs::canonical(pattern);
    ::chmod(root_.c_str(), 0755); // open to the unprivileged child of asUnprivileged
}

TempTree::~TempTree() {
    makeAllReadable(root_);
    std::error_code ec;
    fs::remove_all(root_, ec);
}

fs::path TempTree::dir(std::string_view relative) {
    fs::path p = root_ / relative;
    fs::create_directories(p);
    return p;
}

fs::path TempTree::file(std::string_view relative, std::size_t bytes, char fill) {
    fs::path p = root_ / relative;
    fs::create_directories(p.parent_path());
    std::ofstream out(p, std::ios::binary | std::ios::trunc);
    std::string chunk(64 * 1024, fill);
    while (bytes > 0) {
        std::size_t n = std::min(bytes, chunk.size());
        out.write(chunk.data(), static_cast<std::streamsize>(n));
        bytes -= n;
    }
    return p;
}

fs::path TempTree::sparseFile(std::string_view relative, std::int64_t logicalLength) {
    fs::path p = root_ / relative;
    fs::create_directories(p.parent_path());
    int fd = ::open(p.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0644);
    if (fd < 0 || ::ftruncate(fd, logicalLength) != 0) throw std::runtime_error("sparse file");
    ::close(fd);
    return p;
}

fs::path TempTree::symlink(std::string_view relative, const fs::path& target) {
    fs::path p = root_ / relative;
    fs::create_directories(p.parent_path());
    fs::create_symlink(target, p);
    return p;
}

fs::path TempTree::hardlink(std::string_view relative, std::string_view existingRelative) {
    fs::path p = root_ / relative;
    fs::create_directories(p.parent_path());
    fs::create_hard_link(root_ / existingRelative, p);
    return p;
}

void TempTree::setMTime(std::string_view relative, std::int64_t secondsSince1970) {
    fs::path p = root_ / relative;
    struct timeval times[2] = {{static_cast<time_t>(secondsSince1970), 0}, {static_cast<time_t>(secondsSince1970), 0}};
    ::lutimes(p.c_str(), times);
}

void TempTree::makeUnreadable(std::string_view relative) { ::chmod((root_ / relative).c_str(), 0); }

std::string readFile(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeText(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
}

std::int64_t allocatedBytes(const fs::path& p) {
    struct stat st {};
    if (::lstat(p.c_str(), &st) != 0) return -1;
    return static_cast<std::int64_t>(st.st_blocks) * 512;
}

ScopedEnv::ScopedEnv(std::initializer_list<std::pair<std::string, std::string>> values) {
    for (auto& [name, value] : values) {
        const char* old = std::getenv(name.c_str());
        saved_[name] = {old != nullptr, old ? old : ""};
        ::setenv(name.c_str(), value.c_str(), 1);
    }
}

ScopedEnv::~ScopedEnv() {
    for (auto& [name, old] : saved_) {
        if (old.first) ::setenv(name.c_str(), old.second.c_str(), 1);
        else ::unsetenv(name.c_str());
    }
}

} // namespace lumabroom::test
