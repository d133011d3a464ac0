// Makes a synthetic developer home in the macOS layout, for timing the scanner against its peers and
// for checking the sizes it reports. The same seed and file count give the same tree.
//
//   gen_home OUT_DIR [--files N | --small] [--seed S] [--jobs J]
//
// OUT_DIR/home is meant as HOME and OUT_DIR/home/tmp/ as TMPDIR. Standard C++20 and POSIX only, so it
// builds with one plain compiler call: g++ -O2 -std=c++20 bench/gen_home.cpp -o gen_home

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::uint64_t kDefaultFiles = 1'000'000;
constexpr std::uint64_t kSmallFiles = 20'000;
constexpr std::uint64_t kMinFiles = 2'000;
constexpr std::size_t kPayloadBytes = 64 * 1024;
constexpr std::size_t kDeepPathLength = 4'000;

[[noreturn]] void die(const std::string& what) {
    std::fprintf(stderr, "gen_home: %s: %s\n", what.c_str(), std::strerror(errno));
    std::exit(1);
}

// xoshiro256**: the same stream on every platform, unlike the standard distributions.
class Rng {
public:
    explicit Rng(std::uint64_t seed) {
        for (auto& word : s_) {
            seed += 0x9e3779b97f4a7c15ULL;
            std::uint64_t z = seed;
            z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
            z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
            word = z ^ (z >> 31);
        }
    }
    std::uint64_t next() {
        const std::uint64_t result = rotl(s_[1] * 5, 7) * 9;
        const std::uint64_t t = s_[1] << 17;
        s_[2] ^= s_[0];
        s_[3] ^= s_[1];
        s_[1] ^= s_[2];
        s_[0] ^= s_[3];
        s_[2] ^= t;
        s_[3] = rotl(s_[3], 45);
        return result;
    }
    std::uint64_t below(std::uint64_t n) { return n == 0 ? 0 : next() % n; }
    std::uint64_t between(std::uint64_t lo, std::uint64_t hi) { return lo + below(hi - lo + 1); }
    bool chance(unsigned permille) { return below(1000) < permille; }
    double unit() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }

private:
    static std::uint64_t rotl(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }
    std::array<std::uint64_t, 4> s_{};
};

struct Stats {
    std::uint64_t files = 0;
    std::uint64_t folders = 0;
    std::uint64_t hardLinks = 0;
    std::uint64_t symlinks = 0;
    std::uint64_t bytes = 0;         // bytes written
    std::uint64_t sparseLogical = 0; // logical length of the sparse files, beyond what was written

    void add(const Stats& o) {
        files += o.files;
        folders += o.folders;
        hardLinks += o.hardLinks;
        symlinks += o.symlinks;
        bytes += o.bytes;
        sparseLogical += o.sparseLogical;
    }
};

std::vector<char> gPayload;

// One open folder. Children are made relative to its descriptor, which keeps path lookups short
// and lets the deep path grow past what a single path argument could hold.
class Dir {
public:
    Dir(int fd, std::string path, Stats& stats) : fd_(fd), path_(std::move(path)), stats_(&stats) {}
    Dir(const Dir&) = delete;
    Dir& operator=(const Dir&) = delete;
    Dir(Dir&& o) noexcept : fd_(std::exchange(o.fd_, -1)), path_(std::move(o.path_)), stats_(o.stats_) {}
    Dir& operator=(Dir&& o) noexcept {
        if (this != &o) {
            if (fd_ >= 0) ::close(fd_);
            fd_ = std::exchange(o.fd_, -1);
            path_ = std::move(o.path_);
            stats_ = o.stats_;
        }
        return *this;
    }
    ~Dir() {
        if (fd_ >= 0) ::close(fd_);
    }

    const std::string& path() const { return path_; }
    std::string child(std::string_view name) const { return path_ + "/" + std::string(name); }
    Stats& stats() const { return *stats_; }

    Dir sub(std::string_view name) const {
        const std::string n(name);
        if (::mkdirat(fd_, n.c_str(), 0755) == 0) ++stats_->folders;
        else if (errno != EEXIST) die("mkdir " + child(name));
        const int fd = ::openat(fd_, n.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (fd < 0) die("open " + child(name));
        return Dir(fd, child(name), *stats_);
    }

    // A path of several components below this folder, made as needed.
    Dir subPath(std::string_view relative) const {
        Dir cur = sub(relative.substr(0, relative.find('/')));
        for (std::size_t at = relative.find('/'); at != std::string_view::npos;) {
            const std::size_t next = relative.find('/', at + 1);
            cur = cur.sub(relative.substr(at + 1, next == std::string_view::npos ? next : next - at - 1));
            at = next;
        }
        return cur;
    }

    void file(std::string_view name, std::uint64_t size) const {
        const std::string n(name);
        const int fd = ::openat(fd_, n.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd < 0) die("create " + child(name));
        std::uint64_t left = size;
        std::size_t offset = static_cast<std::size_t>((size * 7919) % 4093);
        while (left > 0) {
            const std::size_t chunk = static_cast<std::size_t>(std::min<std::uint64_t>(left, kPayloadBytes - offset));
            const ssize_t wrote = ::write(fd, gPayload.data() + offset, chunk);
            if (wrote <= 0) die("write " + child(name));
            left -= static_cast<std::uint64_t>(wrote);
            offset = 0;
        }
        ::close(fd);
        ++stats_->files;
        stats_->bytes += size;
    }

    // A file of a large logical length of which only a few chunks hold data, like a VM disk image.
    void sparse(std::string_view name, std::uint64_t logical, unsigned chunks, std::size_t chunkBytes, Rng& rng) const {
        const std::string n(name);
        const int fd = ::openat(fd_, n.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd < 0) die("create " + child(name));
        if (::ftruncate(fd, static_cast<off_t>(logical)) != 0) die("truncate " + child(name));
        const std::uint64_t slots = logical / chunkBytes;
        for (unsigned i = 0; i < chunks; ++i) {
            const std::uint64_t slot = i == 0 ? 0 : rng.below(slots);
            for (std::size_t done = 0; done < chunkBytes;) {
                const std::size_t piece = std::min(chunkBytes - done, kPayloadBytes);
                if (::pwrite(fd, gPayload.data(), piece, static_cast<off_t>(slot * chunkBytes + done))
                    != static_cast<ssize_t>(piece))
                    die("write " + child(name));
                done += piece;
            }
            stats_->bytes += chunkBytes;
        }
        ::close(fd);
        ++stats_->files;
        stats_->sparseLogical += logical - std::min<std::uint64_t>(logical, std::uint64_t{chunks} * chunkBytes);
    }

    void symlink(const std::string& target, std::string_view name) const {
        if (::symlinkat(target.c_str(), fd_, std::string(name).c_str()) != 0) die("symlink " + child(name));
        ++stats_->symlinks;
    }

    void hardLink(const std::string& existing, std::string_view name) const {
        if (::linkat(AT_FDCWD, existing.c_str(), fd_, std::string(name).c_str(), 0) != 0)
            die("link " + existing + " to " + child(name));
        ++stats_->hardLinks;
    }

    void hardLinkFrom(const Dir& from, const std::string& existing, std::string_view name) const {
        if (::linkat(from.fd_, existing.c_str(), fd_, std::string(name).c_str(), 0) != 0)
            die("link " + from.child(existing) + " to " + child(name));
        ++stats_->hardLinks;
    }

    void text(std::string_view name, std::string_view body) const {
        const std::string n(name);
        const int fd = ::openat(fd_, n.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd < 0 || ::write(fd, body.data(), body.size()) != static_cast<ssize_t>(body.size()))
            die("write " + child(name));
        ::close(fd);
        ++stats_->files;
        stats_->bytes += body.size();
    }

    void fifo(std::string_view name) const {
        if (::mkfifoat(fd_, std::string(name).c_str(), 0644) != 0) die("mkfifo " + child(name));
    }

private:
    int fd_;
    std::string path_;
    Stats* stats_;
};

// ---- names and sizes ----

constexpr std::array<std::string_view, 48> kWords = {
    "core",   "util",  "net",    "ui",   "model", "view",   "data",   "cache",  "index", "build", "asset",  "render",
    "parse",  "store", "layout", "text", "image", "audio",  "video",  "crypto", "http",  "json",  "sync",   "task",
    "graph",  "event", "log",    "test", "mock",  "shared", "common", "kit",    "base",  "io",    "fs",     "auth",
    "config", "gen",   "proto",  "math", "lexer", "codec",  "query",  "route",  "theme", "font",  "shader", "worker"};

constexpr std::string_view kHexDigits = "0123456789abcdef";

std::string hex(Rng& rng, std::size_t len, bool upper = false) {
    std::string s(len, '0');
    for (auto& ch : s) {
        ch = kHexDigits[rng.below(16)];
        if (upper) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
    }
    return s;
}

std::string hex2(unsigned v) { return {kHexDigits[(v >> 4) & 15], kHexDigits[v & 15]}; }

std::string letters(Rng& rng, std::size_t len) {
    std::string s(len, 'a');
    for (auto& ch : s) ch = static_cast<char>('a' + rng.below(26));
    return s;
}

std::string uuid(Rng& rng, bool upper = true) {
    return hex(rng, 8, upper) + "-" + hex(rng, 4, upper) + "-" + hex(rng, 4, upper) + "-" + hex(rng, 4, upper) + "-"
           + hex(rng, 12, upper);
}

std::string num(std::uint64_t v) {
    std::array<char, 24> buf{};
    const auto end = std::to_chars(buf.data(), buf.data() + buf.size(), v).ptr;
    return std::string(buf.data(), end);
}

std::string_view word(Rng& rng) { return kWords[rng.below(kWords.size())]; }

// How big files are. Anything of 1 to 4096 bytes takes one block, so most files are tiny and a
// million of them stay within a few GiB.
enum class Mix { tiny, mixed, text, binary };

std::uint64_t drawSize(Mix mix, Rng& rng) {
    const unsigned p = static_cast<unsigned>(rng.below(1000));
    switch (mix) {
    case Mix::tiny: return p < 200 ? 0 : rng.between(1, 2048);
    case Mix::mixed:
        if (p < 150) return 0;
        if (p < 950) return rng.between(1, 4096);
        if (p < 995) return rng.between(4097, 12288);
        return rng.between(12289, 49152);
    case Mix::text:
        if (p < 50) return 0;
        if (p < 950) return rng.between(64, 4096);
        return rng.between(4097, 12288);
    case Mix::binary:
        if (p < 80) return 0;
        if (p < 880) return rng.between(1, 4096);
        if (p < 985) return rng.between(4097, 12288);
        return rng.between(12289, 49152);
    }
    return 0;
}

// Splits a total unevenly over k parts, the first parts getting the most, as caches do: one
// project or browser build holds much, most hold little.
std::vector<std::uint64_t> split(std::uint64_t total, std::size_t k, double skew, Rng& rng) {
    std::vector<std::uint64_t> parts(k, 0);
    if (k == 0) return parts;
    std::vector<double> w(k);
    double sum = 0;
    for (std::size_t i = 0; i < k; ++i) {
        w[i] = (0.4 + rng.unit()) / std::pow(static_cast<double>(i + 1), skew);
        sum += w[i];
    }
    std::uint64_t given = 0;
    for (std::size_t i = 0; i < k; ++i) {
        parts[i] = static_cast<std::uint64_t>(static_cast<double>(total) * w[i] / sum);
        given += parts[i];
    }
    for (std::size_t i = 0; given < total; i = (i + 1) % k, ++given) ++parts[i];
    return parts;
}

enum class Naming { words, hex2, hexDigit, hexLong, numbered };

struct Shape {
    std::uint64_t perDir = 12; // mean files per folder
    std::size_t fanout = 6;    // most subfolders per folder
    Mix mix = Mix::mixed;
    std::vector<std::string_view> exts = {".dat"};
    Naming dirs = Naming::words;
    Naming files = Naming::words;
};

std::string dirName(Naming naming, Rng& rng, std::size_t i, unsigned salt) {
    switch (naming) {
    case Naming::hex2: return hex2(static_cast<unsigned>(i * 73 + salt) & 255);
    case Naming::hexDigit: return std::string(1, kHexDigits[(i + salt) & 15]);
    case Naming::hexLong: return hex(rng, 32) + num(i);
    case Naming::numbered: return num(i + 1);
    case Naming::words: break;
    }
    // Capitalised, so that no folder takes the name of a file beside it.
    std::string name(word(rng));
    name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    return i == 0 ? name : name + num(i);
}

std::string fileName(const Shape& s, Rng& rng, std::uint64_t i) {
    const std::string_view ext = s.exts[rng.below(s.exts.size())];
    switch (s.files) {
    case Naming::hex2:
    case Naming::hexDigit:
    case Naming::hexLong: return hex(rng, 34) + hex2(static_cast<unsigned>(i)) + num(i) + std::string(ext);
    case Naming::numbered:
        return "f_" + std::string(6 - std::min<std::size_t>(6, num(i).size()), '0') + num(i) + std::string(ext);
    case Naming::words: break;
    }
    std::string name(word(rng));
    if (rng.chance(500)) name += std::string("_") + std::string(word(rng));
    return name + num(i) + std::string(ext);
}

// Exactly n files below d: about perDir in each folder, the rest spread unevenly over subfolders.
void fillTree(const Dir& d, std::uint64_t n, const Shape& s, Rng& rng) {
    if (n == 0) return;
    const std::uint64_t per = std::max<std::uint64_t>(1, s.perDir);
    const std::uint64_t here = n <= per + per / 2 ? n : std::min(n, per / 2 + rng.below(per + 1));
    for (std::uint64_t i = 0; i < here; ++i) d.file(fileName(s, rng, i), drawSize(s.mix, rng));
    const std::uint64_t rest = n - here;
    if (rest == 0) return;
    const std::size_t k = static_cast<std::size_t>(std::clamp<std::uint64_t>(rest / per, 1, s.fanout));
    const auto shares = split(rest, k, 0.8, rng);
    const unsigned salt = static_cast<unsigned>(rng.below(256));
    for (std::size_t i = 0; i < k; ++i) {
        if (shares[i] == 0) continue;
        Dir c = d.sub(dirName(s.dirs, rng, i, salt));
        fillTree(c, shares[i], s, rng);
    }
}

// All files in one folder, as browser caches keep them.
void fillFlat(const Dir& d, std::uint64_t n, const Shape& s, Rng& rng) {
    for (std::uint64_t i = 0; i < n; ++i) d.file(fileName(s, rng, i), drawSize(s.mix, rng));
}

// Named subfolders, each filled with its share of n.
void spread(const Dir& base, std::uint64_t n, const std::vector<std::string>& names, double skew, const Shape& s,
            Rng& rng) {
    const auto shares = split(n, names.size(), skew, rng);
    for (std::size_t i = 0; i < names.size(); ++i)
        if (shares[i] > 0) fillTree(base.subPath(names[i]), shares[i], s, rng);
}

// ---- what the jobs share ----

// Paths that jobs hand to the final phase, which makes the links between caches and takes away
// read rights once everything is written.
struct Handoff {
    std::mutex lock;
    std::vector<std::string> unreadable;
    std::string brewDownload;
    std::vector<std::string> gradleJars;
    std::vector<std::string> mavenFolders;

    void addUnreadable(const std::string& path) {
        std::lock_guard guard(lock);
        unreadable.push_back(path);
    }
};

struct Ctx {
    std::string home;
    Stats stats;
    Handoff* handoff = nullptr;
    std::uint64_t budget = 0;
    std::uint64_t start = 0;

    Dir homeDir() {
        const int fd = ::open(home.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (fd < 0) die("open " + home);
        return Dir(fd, home, stats);
    }
    Dir at(std::string_view relative) { return homeDir().subPath(relative); }
    // Files of this job's budget not yet made.
    std::uint64_t left() const {
        const std::uint64_t used = stats.files - start;
        return used >= budget ? 0 : budget - used;
    }
};

Shape shape(std::uint64_t perDir, std::size_t fanout, Mix mix, std::vector<std::string_view> exts,
            Naming dirs = Naming::words, Naming files = Naming::words) {
    return Shape{perDir, fanout, mix, std::move(exts), dirs, files};
}

// ---- Xcode and simulators ----

// One DerivedData project folder; returns the paths of its precompiled modules, for hard links.
std::vector<std::string> xcodeProject(const Dir& p, std::uint64_t n, const std::string& name, Rng& rng) {
    std::vector<std::string> pcms;
    if (n == 0) return pcms;
    p.file("info.plist", 412);
    n -= 1;
    const std::uint64_t pcmCount = std::min<std::uint64_t>(n / 20, 40);
    if (pcmCount > 0) {
        const Dir mc = p.subPath("ModuleCache.noindex/" + hex(rng, 13, true));
        for (std::uint64_t i = 0; i < pcmCount; ++i) {
            const std::string pcm = std::string(word(rng)) + num(i) + "-" + hex(rng, 13, true) + ".pcm";
            mc.file(pcm, drawSize(Mix::binary, rng));
            pcms.push_back(mc.child(pcm));
        }
        n -= pcmCount;
    }
    const auto parts = split(n, 5, 0.0, rng);
    fillTree(p.subPath("Build/Intermediates.noindex/" + name + ".build/Debug-iphonesimulator"), parts[0] + parts[1] / 2,
             shape(24, 6, Mix::binary, {".o", ".d", ".dia", ".swiftdeps", ".swiftmodule", ".LinkFileList"}), rng);
    fillTree(p.subPath("Build/Products/Debug-iphonesimulator/" + name + ".app"), parts[1] - parts[1] / 2,
             shape(16, 5, Mix::binary, {".nib", ".car", ".plist", ".strings", ""}), rng);
    fillTree(p.subPath("Index.noindex/DataStore/v5/records"), parts[2],
             shape(20, 16, Mix::tiny, {""}, Naming::hex2, Naming::hexLong), rng);
    fillTree(p.subPath("Logs/Build"), parts[3] / 4,
             shape(30, 2, Mix::text, {".xcactivitylog"}, Naming::words, Naming::hexLong), rng);
    fillTree(p.subPath("SourcePackages/checkouts"), parts[4] + parts[3] - parts[3] / 4,
             shape(14, 6, Mix::text, {".swift", ".h", ".c", ".md", ".json"}), rng);
    return pcms;
}

// A folder chain whose deepest file has a path of kDeepPathLength characters, still below PATH_MAX.
void deepPath(const Dir& base) {
    Dir cur = base.sub("DeepNest.build");
    constexpr std::string_view leaf = "deepest.o";
    const std::size_t target = std::max<std::size_t>(kDeepPathLength, cur.path().size() + 1000);
    std::size_t length = cur.path().size();
    for (unsigned level = 0;; ++level) {
        const std::size_t room = target - length - 1 - leaf.size();
        if (room < 10) break;
        const std::size_t len = std::min<std::size_t>(99, room - 1);
        std::string name = "level" + num(level) + "_";
        name.resize(len, static_cast<char>('a' + level % 26));
        cur = cur.sub(name);
        length += 1 + len;
        if (level == 19) cur.file("halfway.o", 1500);
    }
    cur.file("empty.d", 0);
    cur.file(std::string(leaf) + std::string(target - length - 1 - leaf.size(), 'o'), 3000);
}

void derivedData(Ctx& c, Rng& rng) {
    const Dir dd = c.at("Library/Developer/Xcode/DerivedData");
    dd.file(".DS_Store", 6148); // hidden: a wildcard must not find it
    constexpr std::array kProjects = {"Lumina", "Parcel", "Tidewater", "Quartzite", "Brisk", "Mosaic",
                                      "Hearth", "Nimbus", "Orchard",   "Pilot",     "Relay", "Sable"};
    std::vector<std::string> names;
    for (const char* p : kProjects) names.push_back(std::string(p) + "-" + letters(rng, 28));
    // Names that the scanner's output has to escape, or to carry as UTF-8.
    names.push_back("Say \"Hi\" \\ and\ttab-" + letters(rng, 28));
    names.push_back("Caf\xc3\xa9 \xc3\x9cn\xc3\xaf"
                    "code \xe5\xbf\x9c\xe7\x94\xa8-"
                    + letters(rng, 28));

    const std::uint64_t total = c.left();
    const std::uint64_t locked = std::min<std::uint64_t>(total / 100 + 1, 300);
    const std::uint64_t linked = total / 60 + 1;
    const std::uint64_t shared = total / 40 + 1;
    const std::uint64_t reserved = locked + linked + shared + 4;
    const auto shares = split(total > reserved ? total - reserved : 0, names.size(), 1.2, rng);

    std::vector<std::vector<std::string>> pcms;
    std::vector<std::string> projectPaths;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Dir p = dd.sub(names[i]);
        projectPaths.push_back(p.path());
        pcms.push_back(xcodeProject(p, shares[i], names[i].substr(0, names[i].find('-')), rng));
        if (i == 0) deepPath(p.subPath("Build/Intermediates.noindex"));
    }

    // Hard links inside one entry, and between two entries of the same cache.
    {
        const Dir within = dd.subPath(names[0] + "/Build/Intermediates.noindex/PrecompiledHeaders");
        for (std::size_t i = 0; i < pcms[0].size() && i < 20; ++i) within.hardLink(pcms[0][i], "pch" + num(i) + ".pcm");
        const Dir between = dd.subPath(names[1] + "/Build/Intermediates.noindex/SharedPCM");
        for (std::size_t i = 0; i < pcms[0].size() && i < 30; ++i)
            between.hardLink(pcms[0][i], "shared" + num(i) + ".pcm");
    }

    fillTree(dd.sub("ModuleCache.noindex"), shared,
             shape(30, 16, Mix::binary, {".pcm", ".swiftmodule", ".timestamp"}, Naming::hexLong, Naming::words), rng);

    const Dir lockedDir = dd.sub("Locked-" + letters(rng, 28));
    xcodeProject(lockedDir, locked, "Locked", rng);
    c.handoff->addUnreadable(lockedDir.path());

    // An entry that is a link to a build folder kept elsewhere in the home, and one that leads nowhere.
    const Dir outside = c.at("Projects/linked-build/DerivedData");
    xcodeProject(outside, linked, "Linked", rng);
    dd.symlink("../../../../Projects/linked-build/DerivedData", "LinkedBuild-" + letters(rng, 28));
    dd.symlink("../DerivedData-old/Gone-" + letters(rng, 28), "Gone-" + letters(rng, 28));
}

void deviceSupport(Ctx& c, Rng& rng) {
    const std::vector<std::pair<std::string, std::string>> versions = {{"iOS", "18.1 (22B83)"},
                                                                       {"iOS", "17.5.1 (21F90)"},
                                                                       {"iOS", "17.0.3 (21A360)"},
                                                                       {"iOS", "16.7.8 (20H343)"},
                                                                       {"iOS", "iPhone15,2 18.2 (22C152)"},
                                                                       {"watchOS", "11.1 (22R5570)"},
                                                                       {"watchOS", "10.4 (21T216)"},
                                                                       {"tvOS", "18.1 (22J580)"}};
    const auto shares = split(c.left(), versions.size(), 0.7, rng);
    for (std::size_t i = 0; i < versions.size(); ++i) {
        const Dir v = c.at("Library/Developer/Xcode/" + versions[i].first + " DeviceSupport/" + versions[i].second);
        if (shares[i] == 0) continue;
        v.file("Info.plist", 380);
        fillTree(v.subPath("Symbols/System/Library"), shares[i] - 1,
                 shape(22, 8, Mix::binary, {".dylib", ".tbd", "", ".plist"}), rng);
    }
    c.at("Library/Developer/Xcode/iOS DeviceSupport").file(".processed", 0);
}

void archives(Ctx& c, Rng& rng) {
    const Dir a = c.at("Library/Developer/Xcode/Archives");
    a.file("README.txt", 300); // a plain file one level down cannot be listed, so the pattern skips it
    const std::vector<std::string> dates = {"2024-03-02", "2024-06-18", "2024-11-05", "2025-01-21", "2025-04-09"};
    const auto shares = split(c.left() > 2 ? c.left() - 2 : 0, dates.size() * 2, 0.5, rng);
    for (std::size_t i = 0; i < dates.size(); ++i) {
        const Dir d = a.sub(dates[i]);
        for (std::size_t j = 0; j < 2; ++j) {
            const std::uint64_t n = shares[i * 2 + j];
            if (n < 3) continue;
            const Dir x = d.sub("Lumina " + dates[i].substr(5) + ", 10." + num(10 + j * 7) + ".xcarchive");
            x.file("Info.plist", 900);
            x.subPath("dSYMs/Lumina.app.dSYM/Contents/Resources/DWARF").file("Lumina", 60000);
            fillTree(x.subPath("Products/Applications/Lumina.app"), n - 2,
                     shape(14, 5, Mix::binary, {".nib", ".car", ".plist", ""}), rng);
        }
    }
    a.sub(dates[1]).file("notes.txt", 1200);
}

void simCaches(Ctx& c, Rng& rng) {
    spread(c.at("Library/Developer/CoreSimulator/Caches"), c.left(),
           {"dyld/24B83/com.apple.CoreSimulator.SimRuntime.iOS-18-1",
            "dyld/21F79/com.apple.CoreSimulator.SimRuntime.iOS-17-5", "com.apple.mobileassetd"},
           1.0, shape(18, 6, Mix::binary, {".dylddata", ".map", ""}), rng);
}

void xcodeCaches(Ctx& c, Rng& rng) {
    const Dir x = c.at("Library/Caches/com.apple.dt.Xcode");
    x.file("Cache.db", 40960);
    x.file("Cache.db-wal", 0);
    fillTree(x.sub("fsCachedData"), c.left(), shape(40, 4, Mix::mixed, {""}, Naming::hexLong, Naming::hexLong), rng);
}

void previews(Ctx& c, Rng& rng) {
    const Dir p = c.at("Library/Developer/Xcode/UserData/Previews/Simulator Devices");
    p.file("device_set.plist", 1500);
    const auto shares = split(c.left(), 4, 1.0, rng);
    for (auto n : shares)
        if (n > 0) fillTree(p.sub(uuid(rng)).sub("data"), n, shape(12, 6, Mix::mixed, {".plist", ".db", ""}), rng);
}

void xctestDevices(Ctx& c, Rng& rng) {
    const Dir x = c.at("Library/Developer/XCTestDevices");
    x.file("device_set.plist", 700);
    const auto shares = split(c.left(), 3, 0.5, rng);
    for (auto n : shares) {
        if (n == 0) continue;
        const Dir d = x.sub(uuid(rng));
        d.file("device.plist", 880);
        fillTree(d.sub("data"), n - 1, shape(12, 6, Mix::mixed, {".plist", ".db", ".log", ""}), rng);
    }
}

void docCache(Ctx& c, Rng& rng) {
    fillTree(c.at("Library/Developer/Xcode/DocumentationCache/v263/16.2"), c.left(),
             shape(25, 8, Mix::text, {".json", ".index", ".db"}), rng);
}

void simDevices(Ctx& c, Rng& rng) {
    const Dir devs = c.at("Library/Developer/CoreSimulator/Devices");
    devs.file("device_set.plist", 2200);
    // Names the 36-character pattern must not find: hidden, one character too long.
    devs.sub("." + uuid(rng).substr(1)).file("device.plist", 500);
    devs.sub(uuid(rng) + "0").file("device.plist", 500);
    const std::uint64_t total = c.left();
    const std::size_t count = static_cast<std::size_t>(std::clamp<std::uint64_t>(total / 300, 3, 24));
    const auto shares = split(total, count, 1.1, rng);
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < count; ++i) {
        ids.push_back(uuid(rng, i != 2)); // one in lower case: it still has the shape
        if (shares[i] == 0) continue;
        const Dir d = devs.sub(ids.back());
        d.file("device.plist", 900);
        const Dir data = d.sub("data");
        const std::uint64_t n = shares[i] - 1;
        const std::uint64_t apps = n / 2;
        fillTree(data.subPath("Containers/Data/Application"), apps,
                 shape(12, 8, Mix::mixed, {".plist", ".db", ".png", ""}, Naming::hexLong), rng);
        fillTree(data.sub("Library"), n - apps - (i == 1 && n - apps > 4 ? 4 : 0),
                 shape(14, 6, Mix::mixed, {".plist", ".db", ".log", ""}), rng);
        if (i == 1 && n - apps > 4) {
            const Dir locked = data.subPath("Library/Locked Caches");
            fillFlat(locked, 4, shape(4, 1, Mix::mixed, {".db"}), rng);
            c.handoff->addUnreadable(locked.path());
        }
    }
    devs.symlink(ids[0], uuid(rng));        // followed: the target is measured once more
    devs.symlink("gone-device", uuid(rng)); // dangling: not an entry
}

// ---- package managers ----

void swiftpm(Ctx& c, Rng& rng) {
    spread(c.at("Library/Caches/org.swift.swiftpm"), c.left(),
           {"repositories/swift-collections-a1b2c3d4", "repositories/swift-argument-parser-5e6f7a8b",
            "repositories/swift-nio-9c0d1e2f", "manifests", "artifacts"},
           1.0, shape(16, 6, Mix::mixed, {".pack", ".idx", "", ".json"}), rng);
}

void cocoapods(Ctx& c, Rng& rng) {
    spread(c.at("Library/Caches/CocoaPods"), c.left(), {"Pods/Release", "Pods/Specs/Release", "Pods/VERSION_FILES"},
           0.8, shape(14, 6, Mix::mixed, {".m", ".h", ".json", ".podspec", ""}), rng);
}

void carthage(Ctx& c, Rng& rng) {
    spread(c.at("Library/Caches/org.carthage.CarthageKit"), c.left(), {"dependencies", "binaries", "DerivedData"}, 0.8,
           shape(14, 6, Mix::binary, {".zip", ".framework", ".swift", ""}), rng);
}

void homebrew(Ctx& c, Rng& rng) {
    const Dir h = c.at("Library/Caches/Homebrew");
    h.file(".cleaned", 0);
    const Dir downloads = h.sub("downloads");
    const std::uint64_t total = c.left();
    const std::uint64_t downloadCount = std::clamp<std::uint64_t>(total / 20, 4, 400);
    for (std::uint64_t i = 0; i < downloadCount; ++i) {
        const std::string pkg = std::string(word(rng)) + num(i);
        const std::string version = num(rng.between(1, 9)) + "." + num(rng.below(20)) + "." + num(rng.below(10));
        const std::string file =
            hex(rng, 64) + "--" + pkg + "-" + version + (i % 3 == 0 ? ".bottle.tar.gz" : ".tar.gz");
        downloads.file(file, drawSize(Mix::binary, rng) + 4096 * rng.below(8));
        if (i == 0) {
            std::lock_guard guard(c.handoff->lock);
            c.handoff->brewDownload = downloads.child(file);
        }
        if (i % 2 == 0) // what brew itself leaves: a link per package at the top, to the download
            h.symlink("downloads/" + file, pkg + "--" + version + ".tar.gz");
    }
    h.symlink("downloads/" + hex(rng, 64) + "--missing-0.1.tar.gz", "missing--0.1.tar.gz");
    h.symlink("loop--1.0", "loop--1.0");
    const std::uint64_t rest = c.left();
    spread(h, rest, {"api", "Cask", "bootsnap"}, 1.0, shape(20, 8, Mix::mixed, {".json", ".rb", ".cache", ""}), rng);
}

void npm(Ctx& c, Rng& rng) {
    const Dir cc = c.at(".npm/_cacache");
    cc.sub("tmp");
    const std::uint64_t total = c.left();
    const std::uint64_t content = total * 6 / 10;
    // Content-addressed: hash-prefix folders of two levels, the second one sparse.
    auto addressed = [&](const Dir& base, std::uint64_t n, std::size_t nameLen, Mix mix) {
        const auto firsts = split(n, 256, 0.0, rng);
        for (unsigned i = 0; i < 256; ++i) {
            if (firsts[i] == 0) continue;
            const Dir f = base.sub(hex2(i));
            const auto seconds = split(firsts[i], 8, 0.0, rng);
            for (unsigned j = 0; j < 8; ++j) {
                if (seconds[j] == 0) continue;
                const Dir s = f.sub(hex2((i * 37 + j * 29) & 255));
                for (std::uint64_t k = 0; k < seconds[j]; ++k)
                    s.file(hex(rng, nameLen - 6) + hex2(static_cast<unsigned>(k)) + num(k % 10000), drawSize(mix, rng));
            }
        }
    };
    addressed(cc.subPath("content-v2/sha512"), content, 124, Mix::mixed);
    addressed(cc.sub("index-v5"), total - content, 60, Mix::tiny);
}

void yarn(Ctx& c, Rng& rng) {
    const std::uint64_t total = c.left();
    const std::uint64_t berry = total / 5;
    const Dir v6 = c.at("Library/Caches/Yarn/v6");
    const std::uint64_t packages = std::max<std::uint64_t>(1, (total - berry) / 25);
    const auto shares = split(total - berry, static_cast<std::size_t>(packages), 0.6, rng);
    std::vector<std::string> tarballs;
    for (std::size_t i = 0; i < shares.size(); ++i) {
        if (shares[i] == 0) continue;
        const std::string pkg = std::string(word(rng)) + "-" + std::string(word(rng)) + num(i);
        const Dir p =
            v6.subPath("npm-" + pkg + "-1." + num(i % 30) + ".0-" + hex(rng, 40) + "-integrity/node_modules/" + pkg);
        p.file(".yarn-tarball.tgz", drawSize(Mix::binary, rng));
        tarballs.push_back(p.child(".yarn-tarball.tgz"));
        if (shares[i] > 1)
            fillTree(p, shares[i] - 1, shape(10, 5, Mix::text, {".js", ".d.ts", ".json", ".md", ".map"}), rng);
    }
    // The berry cache of the same rule holds links to some tarballs of the classic cache.
    const Dir b = c.at(".yarn/berry/cache");
    for (std::uint64_t i = 0; i < berry; ++i)
        b.file(std::string(word(rng)) + "-npm-" + num(i % 40) + "." + num(i % 7) + ".0-" + hex(rng, 10) + "-" + num(i)
                   + ".zip",
               drawSize(Mix::binary, rng));
    for (std::size_t i = 0; i < tarballs.size() && i < 50; i += 3)
        b.hardLink(tarballs[i], "linked-" + num(i) + "-" + hex(rng, 10) + ".zip");
}

// The store's files are hard-linked into projects elsewhere in the home, most once, some twice,
// some not at all; only the last ones count for this rule.
void pnpm(Ctx& c, Rng& rng) {
    const std::uint64_t total = c.left();
    const std::uint64_t library = total / 10;
    const std::uint64_t v10 = total / 20;
    const std::uint64_t v3 = total - library - v10;

    const Dir app = c.at("Projects/web-app/node_modules/.pnpm");
    const Dir app2 = c.at("Projects/web-admin/node_modules/.pnpm");
    std::vector<Dir> packages;
    std::vector<Dir> packages2;
    for (unsigned i = 0; i < 48; ++i) {
        const std::string name =
            std::string(kWords[i]) + "@" + num(1 + i % 5) + "." + num(i) + ".0/node_modules/" + std::string(kWords[i]);
        packages.push_back(app.subPath(name));
        if (i < 16) packages2.push_back(app2.subPath(name));
    }

    std::uint64_t serial = 0;
    auto store = [&](const Dir& files, std::uint64_t n) {
        const auto firsts = split(n, 256, 0.0, rng);
        for (unsigned i = 0; i < 256; ++i) {
            if (firsts[i] == 0) continue;
            const Dir f = files.sub(hex2(i));
            for (std::uint64_t k = 0; k < firsts[i]; ++k, ++serial) {
                const bool index = rng.chance(150);
                const std::string name = hex(rng, 120) + hex2(static_cast<unsigned>(k)) + num(k % 10000)
                                         + (index            ? "-index.json"
                                            : rng.chance(50) ? "-exec"
                                                             : "");
                f.file(name, drawSize(index ? Mix::tiny : Mix::mixed, rng));
                const unsigned p = static_cast<unsigned>(rng.below(100));
                if (index || p >= 80) continue; // index files and orphans stay single
                const std::string target = std::string(kWords[serial % 48].substr(0, 6)) + num(serial) + ".js";
                packages[serial % 48].hardLinkFrom(f, name, target);
                if (p < 10 && serial % 48 < 16) packages2[serial % 48].hardLinkFrom(f, name, target);
            }
        }
    };
    store(c.at(".pnpm-store/v3/files"), v3);
    store(c.at(".pnpm-store/v10/files"), v10);
    store(c.at("Library/pnpm/store/v3/files"), library);
}

void bun(Ctx& c, Rng& rng) {
    const Dir cache = c.at(".bun/install/cache");
    const std::uint64_t total = c.left();
    const std::size_t packages = static_cast<std::size_t>(std::max<std::uint64_t>(1, total / 30));
    const auto shares = split(total, packages, 0.5, rng);
    for (std::size_t i = 0; i < packages; ++i)
        if (shares[i] > 0)
            fillTree(cache.sub(std::string(word(rng)) + num(i) + "@" + num(i % 9) + ".1.0@@@1"), shares[i],
                     shape(10, 5, Mix::text, {".js", ".json", ".md", ".d.ts"}), rng);
}

void pip(Ctx& c, Rng& rng) {
    const Dir p = c.at("Library/Caches/pip");
    p.subPath("selfcheck").file(hex(rng, 56), 180);
    const std::uint64_t total = c.left();
    const std::uint64_t wheels = total / 6;
    // Not UTF-8: the scanner must measure it all the same.
    const Dir http = p.sub("http-v2");
    http.sub("f").file("caf\xe9-\xff\xfe.body", 2100);
    fillTree(http, total - wheels - 1, shape(6, 16, Mix::mixed, {".body", ""}, Naming::hexDigit, Naming::hexLong), rng);
    fillTree(p.sub("wheels"), wheels, shape(3, 16, Mix::binary, {".whl"}, Naming::hex2, Naming::words), rng);
}

void uv(Ctx& c, Rng& rng) {
    const std::uint64_t total = c.left();
    const std::uint64_t dotCache = total / 4;
    const Dir lib = c.at("Library/Caches/uv");
    lib.file("CACHEDIR.TAG", 43);
    lib.file(".gitignore", 1);
    const std::vector<std::string> parts = {"archive-v0", "wheels-v5/pypi", "sdists-v9/pypi", "interpreter-v4",
                                            "simple-v16/pypi"};
    spread(lib, total - dotCache - 2, parts, 1.0,
           shape(12, 8, Mix::mixed, {".py", ".pyc", ".so", ".msgpack", ".whl", ""}), rng);
    // The other location of the same rule, and a virtual environment outside both, share files
    // with the first by hard links, as uv installs them.
    const Dir dot = c.at(".cache/uv");
    fillTree(dot.sub("archive-v0"), dotCache, shape(12, 8, Mix::mixed, {".py", ".pyc", ".so", ""}), rng);
    const Dir shared = lib.subPath("archive-v0/" + letters(rng, 21));
    const Dir venv = c.at("Projects/py-tool/.venv/lib/python3.12/site-packages/shared");
    const Dir dotShared = dot.subPath("archive-v0/" + letters(rng, 21));
    for (unsigned i = 0; i < 40; ++i) {
        const std::string name = "module" + num(i) + ".py";
        shared.file(name, drawSize(Mix::text, rng));
        if (i % 2 == 0) dotShared.hardLinkFrom(shared, name, name);
        venv.hardLinkFrom(shared, name, name);
    }
}

void cargo(Ctx& c, Rng& rng) {
    const std::string registry = "index.crates.io-6f17d22bba15001f";
    const std::uint64_t total = c.left();
    const std::uint64_t crates = std::max<std::uint64_t>(2, total / 40);
    const Dir cache = c.at(".cargo/registry/cache/" + registry);
    const Dir src = c.at(".cargo/registry/src/" + registry);
    c.at(".cargo/registry/index/" + registry + "/.cache").file("config.json", 320); // outside both patterns
    std::vector<std::string> names;
    for (std::uint64_t i = 0; i < crates; ++i) {
        names.push_back(std::string(word(rng)) + "-" + std::string(word(rng)) + num(i) + "-0." + num(rng.below(30))
                        + "." + num(rng.below(10)));
        cache.file(names.back() + ".crate", drawSize(Mix::binary, rng));
    }
    const std::uint64_t rest = c.left();
    const auto shares = split(rest, names.size(), 0.7, rng);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (shares[i] == 0) continue;
        const Dir crate = src.sub(names[i]);
        crate.file("Cargo.toml", drawSize(Mix::text, rng));
        if (shares[i] > 1) fillTree(crate.sub("src"), shares[i] - 1, shape(12, 5, Mix::text, {".rs"}), rng);
        if (i == 0) {
            // Links a walker must not follow: to a file, to a folder, dangling, a loop of two, a cycle.
            crate.symlink("Cargo.toml", "Cargo.toml.orig");
            crate.symlink("src", "src-link");
            crate.symlink("does-not-exist", "dangling");
            crate.symlink("loop-b", "loop-a");
            crate.symlink("loop-a", "loop-b");
            crate.symlink(".", "self");
            crate.symlink("../" + names[std::min<std::size_t>(1, names.size() - 1)], "sibling");
        }
    }
}

void goBuild(Ctx& c, Rng& rng) {
    const Dir g = c.at("Library/Caches/go-build");
    g.file("README", 136);
    g.file("trim.txt", 11);
    const std::uint64_t total = c.left();
    const auto shares = split(total, 256, 0.0, rng);
    for (unsigned i = 0; i < 256; ++i) {
        if (shares[i] == 0) continue;
        const Dir d = g.sub(hex2(i));
        for (std::uint64_t k = 0; k < shares[i]; ++k) {
            const bool action = k % 2 == 0;
            d.file(hex2(i) + hex(rng, 56) + hex2(static_cast<unsigned>(k)) + num(k % 10000) + (action ? "-a" : "-d"),
                   drawSize(action ? Mix::tiny : Mix::mixed, rng));
        }
    }
}

void gradle(Ctx& c, Rng& rng) {
    const Dir caches = c.at(".gradle/caches");
    caches.file("CACHEDIR.TAG", 43);
    caches.file("user-id.txt", 36);
    c.at(".gradle/wrapper/dists/gradle-8.5-bin").file("gradle-8.5-bin.zip.ok", 0); // not under the pattern
    const std::uint64_t total = c.left();
    const auto parts = split(total, 5, 0.6, rng);

    // modules-2: group/artifact/version/hash/file, one file per hash folder as Gradle keeps them.
    const Dir files = caches.subPath("modules-2/files-2.1");
    std::vector<std::string> jars;
    std::uint64_t made = 0;
    for (unsigned g = 0; made < parts[0]; ++g) {
        const Dir group = files.sub("org." + std::string(word(rng)) + "." + std::string(word(rng)) + num(g));
        for (unsigned a = 0; a < 6 && made < parts[0]; ++a) {
            const std::string artifact = std::string(word(rng)) + "-" + std::string(word(rng)) + num(a);
            const Dir version = group.subPath(artifact + "/" + num(1 + a) + "." + num(g % 12) + ".0");
            for (std::string_view ext : {".jar", ".pom", "-sources.jar"}) {
                if (made == parts[0]) break;
                const std::string name = artifact + "-" + num(1 + a) + "." + num(g % 12) + ".0" + std::string(ext);
                const Dir h = version.sub(hex(rng, 40));
                h.file(name, drawSize(ext == ".pom" ? Mix::text : Mix::binary, rng));
                ++made;
                if (ext == ".jar" && jars.size() < 200) jars.push_back(h.child(name));
            }
        }
    }
    {
        std::lock_guard guard(c.handoff->lock);
        c.handoff->gradleJars = jars;
    }
    const Dir meta = caches.subPath("modules-2/metadata-2.106");
    meta.file("module-metadata.bin", 16000);
    fillTree(meta.sub("descriptors"), parts[1] > 0 ? parts[1] - 1 : 0,
             shape(8, 8, Mix::tiny, {".bin"}, Naming::words, Naming::words), rng);
    // transforms share jars with modules-2 by hard links: two entries of one rule.
    const Dir transforms = caches.sub("transforms-4");
    fillTree(transforms, parts[2], shape(10, 12, Mix::binary, {".jar", ".bin", ".dex"}, Naming::hexLong), rng);
    const Dir linked = transforms.subPath(hex(rng, 32) + "/transformed");
    for (std::size_t i = 0; i < jars.size() && i < 40; ++i) linked.hardLink(jars[i], "linked" + num(i) + ".jar");
    fillTree(caches.sub("build-cache-1"), parts[3] / 2,
             shape(400, 1, Mix::binary, {""}, Naming::words, Naming::hexLong), rng);
    spread(caches, parts[3] - parts[3] / 2 + parts[4], {"8.5/kotlin-dsl", "8.5/fileHashes", "jars-9", "journal-1"}, 1.0,
           shape(12, 8, Mix::mixed, {".jar", ".bin", ".lock", ""}), rng);
}

void maven(Ctx& c, Rng& rng) {
    const Dir repo = c.at(".m2/repository");
    std::vector<std::string> folders;
    std::uint64_t total = c.left();
    for (unsigned g = 0; total > 0; ++g) {
        const Dir group = repo.subPath("org/" + std::string(word(rng)) + num(g) + "/" + std::string(word(rng)));
        for (unsigned a = 0; a < 5 && total > 0; ++a) {
            const std::string artifact = std::string(word(rng)) + "-" + std::string(word(rng)) + num(a);
            const Dir art = group.sub(artifact);
            const unsigned versions = 1 + static_cast<unsigned>(rng.below(3));
            for (unsigned v = 0; v < versions && total > 0; ++v) {
                const std::string ver = num(1 + v) + "." + num(a) + "." + num(g % 10);
                const Dir d = art.sub(ver);
                if (folders.size() < 100) folders.push_back(d.path());
                for (std::string_view ext : {".jar", ".pom", ".jar.sha1", ".pom.sha1", "_remote.repositories"}) {
                    if (total == 0) break;
                    d.file(ext == "_remote.repositories" ? std::string(ext) : artifact + "-" + ver + std::string(ext),
                           drawSize(ext == ".jar" ? Mix::binary : Mix::tiny, rng));
                    --total;
                }
            }
        }
    }
    std::lock_guard guard(c.handoff->lock);
    c.handoff->mavenFolders = folders;
}

// ---- containers, virtual machines, models ----

void docker(Ctx& c, Rng& rng) {
    const Dir vm = c.at("Library/Containers/com.docker.docker/Data/vms/0");
    vm.subPath("data").sparse("Docker.raw", 64ULL << 30, 16, 256 * 1024, rng);
    vm.file("config.json", 1200);
    vm.file("console.log", 30000);
    vm.file("hyperkit.pid", 5);
    fillTree(vm.sub("log"), c.left(), shape(20, 2, Mix::text, {".log"}), rng);
}

void orbstack(Ctx& c, Rng& rng) {
    const Dir data = c.at("Library/Group Containers/HUAQ24HBR6.dev.orbstack/data");
    data.sparse("data.img.raw", 1ULL << 40, 32, 256 * 1024, rng);
    data.sparse("rosetta.raw", 2ULL << 30, 4, 64 * 1024, rng);
    data.sparse("swap.img", 4ULL << 30, 4, 128 * 1024, rng);
    data.sparse(".hidden.raw", 1ULL << 30, 1, 64 * 1024, rng); // a wildcard must not find it
    data.subPath("logs").file("vmgr.log", 9000);
    c.at(".orbstack/run").file("state", 10);
    fillTree(c.at(".orbstack/data"), c.left(), shape(14, 6, Mix::mixed, {".json", ".db", ".log", ""}), rng);
}

void ollama(Ctx& c, Rng& rng) {
    const Dir models = c.at(".ollama/models");
    const Dir library = models.subPath("manifests/registry.ollama.ai/library");
    const Dir blobs = models.sub("blobs");
    auto manifest = [&](const std::string& model, const std::string& tag, const std::string& body) {
        const std::string name = hex(rng, 64);
        blobs.file("sha256-" + name,
                   4096 + rng.below(8192)); // the real blobs are gigabytes; the route reads manifests only
        library.sub(model).text(tag, body);
    };
    auto layers = [&](std::initializer_list<std::uint64_t> sizes, std::uint64_t config) {
        std::string s = "{\"schemaVersion\":2,\"mediaType\":\"application/"
                        "vnd.docker.distribution.manifest.v2+json\",\"config\":{\"mediaType\":\"application/"
                        "vnd.docker.container.image.v1+json\",\"digest\":\"sha256:"
                        + hex(rng, 64) + "\",\"size\":" + num(config) + "},\"layers\":[";
        bool first = true;
        for (auto size : sizes) {
            s += std::string(first ? "" : ",")
                 + "{\"mediaType\":\"application/vnd.ollama.image.model\",\"digest\":\"sha256:" + hex(rng, 64)
                 + "\",\"size\":" + num(size) + "}";
            first = false;
        }
        return s + "]}";
    };
    manifest("llama3.2", "3b", layers({2019377376, 1429, 7711, 6016}, 561));
    manifest("qwen2.5-coder", "7b", layers({4683073184, 1644, 11343, 487}, 487));
    manifest("qwen2.5-coder", "14b", layers({8988110976, 1644, 11343, 487}, 488));
    manifest("nomic-embed-text", "latest", layers({274290656, 11357}, 420));
    manifest("tiny", "empty", layers({}, 0));                                                   // total 0: no entry
    manifest("odd", "latest", "{\"layers\":[{\"size\":\"12\"},{\"size\":100}],\"config\":{}}"); // text size adds 0
    manifest("broken", "latest", "not json {");                                                 // skipped
    fillTree(models.sub("tmp"), c.left(), shape(10, 2, Mix::tiny, {".partial"}), rng);
}

// ---- browsers and runtime downloads ----

void playwright(Ctx& c, Rng& rng) {
    const Dir p = c.at("Library/Caches/ms-playwright");
    p.subPath(".links").file(hex(rng, 40), 60); // hidden: not an entry
    spread(p, c.left(),
           {"chromium-1148/chrome-mac/Chromium.app/Contents", "chromium_headless_shell-1148/chrome-mac/headless_shell",
            "webkit-2104/pw_run.sh.d", "firefox-1466/firefox/Nightly.app/Contents", "ffmpeg-1010"},
           1.2, shape(18, 8, Mix::binary, {".pak", ".dylib", ".bin", ".json", ".plist", ""}), rng);
}

void puppeteer(Ctx& c, Rng& rng) {
    spread(c.at(".cache/puppeteer"), c.left(),
           {"chrome/mac_arm-131.0.6778.85/chrome-mac-arm64",
            "chrome-headless-shell/mac_arm-131.0.6778.85/chrome-headless-shell-mac-arm64"},
           1.0, shape(18, 8, Mix::binary, {".pak", ".dylib", ".bin", ""}), rng);
}

void electron(Ctx& c, Rng& rng) {
    const Dir e = c.at("Library/Caches/electron");
    std::uint64_t n = c.left();
    for (unsigned i = 0; n > 0; ++i, --n)
        e.sub(hex(rng, 64))
            .file("electron-v" + num(28 + i) + ".0.0-darwin-arm64.zip", drawSize(Mix::binary, rng) + 8192);
}

// A browser profile cache: mostly one flat folder of entries, plus code caches.
void browserProfile(const Dir& profile, std::uint64_t n, Rng& rng) {
    if (n == 0) return;
    const auto parts = split(n, 3, 0.0, rng);
    const Dir data = profile.subPath("Cache/Cache_Data");
    data.file("index", 24);
    fillFlat(data, parts[0] > 0 ? parts[0] - 1 : 0, shape(1, 1, Mix::mixed, {""}, Naming::words, Naming::numbered),
             rng);
    fillTree(profile.subPath("Code Cache/js"), parts[1],
             shape(300, 3, Mix::mixed, {"_0"}, Naming::words, Naming::hexLong), rng);
    fillTree(profile.subPath("Code Cache/wasm"), parts[2] / 3,
             shape(100, 2, Mix::binary, {"_0"}, Naming::words, Naming::hexLong), rng);
    fillTree(profile.sub("GPUCache"), parts[2] - parts[2] / 3, shape(50, 2, Mix::mixed, {""}), rng);
}

void chromeLike(Ctx& c, Rng& rng, const std::string& base, const std::vector<std::string>& profiles) {
    const Dir b = c.at(base);
    const auto shares = split(c.left(), profiles.size(), 1.3, rng);
    for (std::size_t i = 0; i < profiles.size(); ++i) browserProfile(b.subPath(profiles[i]), shares[i], rng);
}

void chrome(Ctx& c, Rng& rng) {
    const Dir data = c.at("Library/Caches/Google/Chrome/Default/Cache/Cache_Data");
    data.file("f_\xff\xfe\x80", 700);                         // not UTF-8
    data.file("f_line\nbreak", 300);                          // a newline in a name
    data.file("f_\xe6\x97\xa5\xe6\x9c\xac\xe8\xaa\x9e", 900); // UTF-8
    chromeLike(c, rng, "Library/Caches/Google/Chrome", {"Default", "Profile 1", "Profile 2", "System Profile"});
}

void arc(Ctx& c, Rng& rng) { chromeLike(c, rng, "Library/Caches/Arc/User Data", {"Default", "Profile 1"}); }

void edge(Ctx& c, Rng& rng) { chromeLike(c, rng, "Library/Caches/Microsoft Edge", {"Default", "Profile 1"}); }

void firefox(Ctx& c, Rng& rng) {
    const Dir profiles = c.at("Library/Caches/Firefox/Profiles");
    const auto shares = split(c.left(), 2, 1.0, rng);
    for (std::size_t i = 0; i < 2; ++i) {
        if (shares[i] == 0) continue;
        const Dir p = profiles.sub(letters(rng, 8) + (i == 0 ? ".default-release" : ".dev-edition-default"));
        const std::uint64_t entries = shares[i] * 9 / 10;
        fillFlat(p.subPath("cache2/entries"), entries, shape(1, 1, Mix::mixed, {""}, Naming::words, Naming::hexLong),
                 rng);
        p.subPath("cache2/doomed");
        fillTree(p.sub("startupCache"), shares[i] - entries, shape(10, 3, Mix::mixed, {".bin", ".little"}), rng);
    }
}

// ---- coding agents ----

void claude(Ctx& c, Rng& rng) {
    const Dir projects = c.at(".claude/projects");
    c.at(".claude").file("settings.json", 220);
    projects.file("stray.jsonl", 100); // a file, not a project folder
    const std::uint64_t total = c.left();
    const std::size_t count = static_cast<std::size_t>(std::clamp<std::uint64_t>(total / 12, 2, 10));
    const auto shares = split(total, count, 1.0, rng);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string project = std::string(kWords[i]) + "-app";
        const Dir p = projects.sub("-Users-dev-Projects-" + project);
        std::uint64_t n = shares[i];
        if (i == count - 1) { // only an empty session: no entry
            p.file(uuid(rng, false) + ".jsonl", 0);
            continue;
        }
        const Dir memory = p.sub("memory");
        memory.file("notes.md", 3000);
        n = n > 0 ? n - 1 : 0;
        for (std::uint64_t k = 0; k < std::max<std::uint64_t>(n, 1); ++k) {
            std::string body;
            const std::uint64_t lines = 1 + rng.below(30);
            for (std::uint64_t l = 0; l < lines; ++l)
                body += "{\"type\":\"user\",\"cwd\":\"/Users/dev/Projects/" + project + "\",\"message\":\""
                        + hex(rng, 40 + rng.below(300)) + "\"}\n";
            p.text(uuid(rng, false) + ".jsonl", body);
        }
    }
}

void codex(Ctx& c, Rng& rng) {
    const Dir sessions = c.at(".codex/sessions");
    sessions.file("index.json", 500); // a plain file at the first level is skipped by */*
    const std::vector<std::string> months = {"2025/06", "2025/05", "2025/04", "2025/03",
                                             "2025/01", "2024/12", "2024/11"};
    const auto shares = split(c.left(), months.size(), 0.9, rng);
    for (std::size_t i = 0; i < months.size(); ++i) {
        const Dir m = sessions.subPath(months[i]);
        if (i == 0) m.file(".DS_Store", 6148);
        for (std::uint64_t k = 0; k < shares[i]; ++k) {
            const std::string day = (k % 28 < 9 ? "0" : "") + num(k % 28 + 1);
            m.sub(day).file("rollout-" + months[i].substr(0, 4) + "-" + months[i].substr(5) + "-" + day + "T10-"
                                + num(10 + k % 50) + "-00-" + uuid(rng, false) + ".jsonl",
                            drawSize(Mix::text, rng) + rng.below(4) * 4096);
        }
    }
}

// ---- system ----

void tmpFolder(Ctx& c, Rng& rng) {
    const Dir tmp = c.at("tmp");
    const std::uint64_t total = c.left();
    const std::size_t count = static_cast<std::size_t>(std::clamp<std::uint64_t>(total / 40, 8, 120));
    const auto shares = split(total, count, 1.0, rng);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint64_t n = shares[i];
        if (n == 0) continue;
        if (i % 5 == 4 && n == 1) {
            tmp.file("tmp" + letters(rng, 6) + num(i), drawSize(Mix::mixed, rng));
            continue;
        }
        static constexpr std::array kinds = {
            "com.apple.", "go-build",           "npm-",      "TemporaryItems",
            "clang-",     "node-compile-cache", "xcrun_db-", "swift-generated-sources-"};
        const std::string name = std::string(kinds[i % kinds.size()])
                                 + (i % kinds.size() == 0 ? std::string(word(rng)) : num(rng.below(100000))) + num(i);
        const Dir d = tmp.sub(name);
        fillTree(d, n, shape(10, 6, Mix::mixed, {".o", ".tmp", ".json", ".swift", ""}), rng);
        if (i == 0) {
            d.fifo("build.fifo");
            d.file("caf\xe9\xff.tmp", 800); // not UTF-8
            d.file("locked.tmp", 1200);
            ::fchmodat(AT_FDCWD, d.child("locked.tmp").c_str(), 0, 0); // unreadable file: still measured
        }
    }
    tmp.file("lockfile", 0); // an entry of size 0
}

void darwinCache(Ctx& c, Rng& rng) {
    spread(c.at("C"), c.left(),
           {"com.apple.metal/16777235_568", "com.apple.QuickLook.thumbnailcache", "com.apple.DeveloperTools/16.2",
            "clang/ModuleCache", "com.apple.appstoreagent"},
           1.0, shape(14, 6, Mix::mixed, {".data", ".db", ".pcm", ""}), rng);
}

void downloads(Ctx& c, Rng& rng) {
    const Dir d = c.at("Downloads");
    d.sparse("Xcode_16.2.xip", 3ULL << 30, 4, 64 * 1024, rng);
    d.sparse("ubuntu-24.04-live-server-arm64.iso", 6ULL << 30, 8, 128 * 1024, rng);
    d.file("Docker.dmg", 196608);
    d.file("Installer 1.4.2.dmg", 98304);
    d.file("Tool-arm64.pkg", 65536);
    d.file("empty.pkg", 0);
    d.file("report.pdf", 20000);
    d.file("archive.zip", 40000);
    d.file(".partial.dmg", 50000); // hidden
    d.file("OLD.DMG", 30000);      // the patterns are case-sensitive
    fillFlat(d.sub("bundle.dmg"), 3, shape(3, 1, Mix::mixed, {".bin"}), rng);
    d.symlink("Installer 1.4.2.dmg", "latest.dmg");
    d.symlink("gone.pkg", "missing.pkg");
    fillTree(d.sub("photos"), c.left(), shape(20, 3, Mix::binary, {".jpg", ".heic"}), rng);
}

// Folders that no rule looks at; a scan must not wander into them.
void elsewhere(Ctx& c, Rng& rng) {
    const std::uint64_t total = c.left();
    const auto parts = split(total, 4, 0.3, rng);
    for (unsigned r = 0; r < 3; ++r) {
        const Dir repo = c.at("Projects/repo-" + std::string(kWords[r + 10]));
        const std::uint64_t n = parts[0] / 3 + (r == 0 ? parts[0] % 3 : 0);
        fillTree(repo.subPath(".git/objects"), n / 2, shape(8, 16, Mix::tiny, {""}, Naming::hex2, Naming::hexLong),
                 rng);
        fillTree(repo.sub("src"), n - n / 2, shape(12, 6, Mix::text, {".cpp", ".h", ".ts", ".md"}), rng);
    }
    fillTree(c.at("Documents"), parts[1], shape(15, 5, Mix::mixed, {".txt", ".pdf", ".key", ".numbers"}), rng);
    spread(c.at("Library/Application Support"), parts[2], {"Code/User", "com.example.editor", "Slack/IndexedDB"}, 1.0,
           shape(14, 6, Mix::mixed, {".db", ".json", ".log", ""}), rng);
    spread(c.homeDir(), parts[3],
           {"Library/Caches/com.example.notinrules", ".npm/_logs", ".local/share/fonts",
            ".gradle/wrapper/dists/gradle-8.5-bin/unpacked"},
           1.0, shape(14, 6, Mix::mixed, {".cache", ".log", ".ttf", ""}), rng);
}

// ---- driver ----

struct Job {
    const char* name;
    double weight; // share of the file count
    void (*run)(Ctx&, Rng&);
};

const std::vector<Job>& jobs() {
    static const std::vector<Job> all = {
        {"derived-data", 20, derivedData},
        {"device-support", 4, deviceSupport},
        {"archives", 1, archives},
        {"sim-caches", 1, simCaches},
        {"xcode-caches", 0.5, xcodeCaches},
        {"previews", 1, previews},
        {"xctest-devices", 1, xctestDevices},
        {"doc-cache", 0.5, docCache},
        {"sim-devices", 5, simDevices},
        {"swiftpm", 1, swiftpm},
        {"cocoapods", 1, cocoapods},
        {"carthage", 0.5, carthage},
        {"homebrew", 1, homebrew},
        {"npm", 13, npm},
        {"yarn", 3, yarn},
        {"pnpm", 6, pnpm},
        {"bun", 1, bun},
        {"pip", 2, pip},
        {"uv", 2, uv},
        {"cargo", 7, cargo},
        {"go-build", 4, goBuild},
        {"gradle", 6, gradle},
        {"maven", 4, maven},
        {"docker", 0.02, docker},
        {"orbstack", 0.5, orbstack},
        {"ollama", 0.01, ollama},
        {"playwright", 3, playwright},
        {"puppeteer", 1, puppeteer},
        {"electron", 0.2, electron},
        {"chrome", 4, chrome},
        {"arc", 1, arc},
        {"edge", 1, edge},
        {"firefox", 1, firefox},
        {"claude", 0.3, claude},
        {"codex", 0.5, codex},
        {"tmp", 2, tmpFolder},
        {"darwin-cache", 1, darwinCache},
        {"downloads", 0.02, downloads},
        {"elsewhere", 5.5, elsewhere},
    };
    return all;
}

std::uint64_t mixSeed(std::uint64_t seed, std::uint64_t index) {
    Rng r(seed ^ (index * 0x9e3779b97f4a7c15ULL));
    return r.next();
}

// Links between caches, and read rights taken away, once every job has finished writing.
void finish(Ctx& c, Handoff& h) {
    if (!h.brewDownload.empty()) c.at("Downloads").hardLink(h.brewDownload, "brew-copy.dmg");
    for (std::size_t i = 0; i < h.gradleJars.size() && i < h.mavenFolders.size() && i < 30; ++i) {
        const Dir m = c.homeDir().subPath(h.mavenFolders[i].substr(c.home.size() + 1));
        m.hardLink(h.gradleJars[i], "from-gradle-" + num(i) + ".jar");
    }
    std::sort(h.unreadable.begin(), h.unreadable.end());
    for (const auto& path : h.unreadable)
        if (::chmod(path.c_str(), 0) != 0) die("chmod " + path);
}

struct Options {
    std::string out;
    std::uint64_t files = kDefaultFiles;
    std::uint64_t seed = 1;
    unsigned jobs = 2;
};

[[noreturn]] void usage() {
    std::fprintf(stderr,
                 "usage: gen_home OUT_DIR [--files N | --small] [--seed S] [--jobs J]\n"
                 "  makes OUT_DIR/home (use as HOME; TMPDIR is OUT_DIR/home/tmp/); default %llu files\n",
                 static_cast<unsigned long long>(kDefaultFiles));
    std::exit(2);
}

std::uint64_t parseNumber(const char* text) {
    std::uint64_t v = 0;
    std::string_view s(text);
    std::string digits;
    for (char ch : s)
        if (ch != '_' && ch != ',') digits += ch;
    const auto [ptr, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), v);
    if (ec != std::errc() || ptr != digits.data() + digits.size()) usage();
    return v;
}

Options parse(int argc, char** argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        const std::string_view a = argv[i];
        if (a == "--files" && i + 1 < argc) o.files = parseNumber(argv[++i]);
        else if (a == "--small") o.files = kSmallFiles;
        else if (a == "--seed" && i + 1 < argc) o.seed = parseNumber(argv[++i]);
        else if (a == "--jobs" && i + 1 < argc)
            o.jobs = static_cast<unsigned>(std::clamp<std::uint64_t>(parseNumber(argv[++i]), 1, 64));
        else if (!a.empty() && a[0] != '-' && o.out.empty()) o.out = a;
        else usage();
    }
    if (o.out.empty()) usage();
    if (o.files < kMinFiles) {
        std::fprintf(stderr, "gen_home: --files must be at least %llu\n", static_cast<unsigned long long>(kMinFiles));
        std::exit(2);
    }
    return o;
}

std::string humanBytes(std::uint64_t b) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.2f GiB", static_cast<double>(b) / (1ULL << 30));
    return buf;
}

} // namespace

int main(int argc, char** argv) {
    const Options opt = parse(argc, argv);
    if (::mkdir(opt.out.c_str(), 0755) != 0 && errno != EEXIST) die("mkdir " + opt.out);
    char resolved[PATH_MAX];
    if (::realpath(opt.out.c_str(), resolved) == nullptr) die("realpath " + opt.out);
    const std::string home = std::string(resolved) + "/home";
    if (::mkdir(home.c_str(), 0755) != 0) die("mkdir " + home + " (it must not exist yet)");
    ::umask(022);

    Rng payloadRng(opt.seed);
    gPayload.resize(kPayloadBytes);
    for (auto& b : gPayload) b = static_cast<char>(payloadRng.next() >> 56);

    // Budgets in proportion to the weights; what rounding leaves goes to the first job.
    const auto& all = jobs();
    double weightSum = 0;
    for (const auto& j : all) weightSum += j.weight;
    std::vector<std::uint64_t> budgets;
    std::uint64_t given = 0;
    for (const auto& j : all) {
        budgets.push_back(static_cast<std::uint64_t>(static_cast<double>(opt.files) * j.weight / weightSum));
        given += budgets.back();
    }
    budgets[0] += opt.files - given;

    // Largest first, so that two workers finish at about the same time.
    std::vector<std::size_t> order(all.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return all[a].weight > all[b].weight; });

    Handoff handoff;
    std::vector<Stats> results(all.size());
    std::atomic<std::size_t> nextJob{0};
    auto worker = [&] {
        for (std::size_t k; (k = nextJob.fetch_add(1)) < order.size();) {
            const std::size_t i = order[k];
            Ctx ctx{home, {}, &handoff, budgets[i], 0};
            Rng rng(mixSeed(opt.seed, i));
            all[i].run(ctx, rng);
            results[i] = ctx.stats;
        }
    };
    {
        std::vector<std::jthread> threads;
        for (unsigned t = 0; t < opt.jobs; ++t) threads.emplace_back(worker);
    }

    Stats total;
    for (const auto& s : results) total.add(s);
    Ctx last{home, {}, &handoff, 0, 0};
    Rng lastRng(mixSeed(opt.seed, all.size()));
    // Small trees can end up a few files short of the count where a job rounds down.
    if (total.files < opt.files)
        fillFlat(last.at("Documents/extra"), opt.files - total.files, shape(1, 1, Mix::mixed, {".txt"}), lastRng);
    finish(last, handoff);
    total.add(last.stats);
    // Until written back, a file's block count can still grow (extent blocks of the sparse images),
    // and a count taken now would differ from one taken later.
    ::sync();

    std::printf("gen_home: %s: %llu files, %llu folders, %llu hard links, %llu symlinks, %llu bytes written (%s), "
                "%llu more in sparse holes, seed %llu\n",
                home.c_str(), static_cast<unsigned long long>(total.files),
                static_cast<unsigned long long>(total.folders), static_cast<unsigned long long>(total.hardLinks),
                static_cast<unsigned long long>(total.symlinks), static_cast<unsigned long long>(total.bytes),
                humanBytes(total.bytes).c_str(), static_cast<unsigned long long>(total.sparseLogical),
                static_cast<unsigned long long>(opt.seed));
    return 0;
}
