#include "tools/DockerPruner.h"

#include "text/Localization.h"
#include "tools/DockerCLI.h"

namespace lumabroom {

namespace {

constexpr double kTimeoutSeconds = 300;

std::vector<std::string> arguments(DockerPruneTarget target) {
    switch (target) {
    case DockerPruneTarget::buildCache: return {"builder", "prune", "-f"};
    case DockerPruneTarget::images: return {"image", "prune", "-af"};
    case DockerPruneTarget::containers: return {"container", "prune", "-f"};
    case DockerPruneTarget::volumes: return {"volume", "prune", "-af"};
    }
    return {};
}

std::string_view trimmed(std::string_view text) {
    auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

std::string_view rawValue(DockerPruneTarget target) {
    switch (target) {
    case DockerPruneTarget::buildCache: return "build-cache";
    case DockerPruneTarget::images: return "images";
    case DockerPruneTarget::containers: return "containers";
    case DockerPruneTarget::volumes: return "volumes";
    }
    return "";
}

std::optional<DockerPruneTarget> dockerPruneTargetFromRaw(std::string_view raw) {
    for (auto target : allDockerPruneTargets)
        if (rawValue(target) == raw) return target;
    return std::nullopt;
}

std::string_view titleKey(DockerPruneTarget target) {
    switch (target) {
    case DockerPruneTarget::buildCache: return "构建缓存";
    case DockerPruneTarget::images: return "未使用镜像";
    case DockerPruneTarget::containers: return "已停止容器";
    case DockerPruneTarget::volumes: return "未使用数据卷";
    }
    return "";
}

std::string_view detailKey(DockerPruneTarget target) {
    switch (target) {
    case DockerPruneTarget::buildCache: return "docker builder prune,下次构建时重新生成";
    case DockerPruneTarget::images: return "删除未被任何容器引用的镜像,需要时重新拉取";
    case DockerPruneTarget::containers: return "删除所有已退出的容器";
    case DockerPruneTarget::volumes: return "删除未被容器挂载的数据卷,卷内数据(如数据库)永久丢失";
    }
    return "";
}

std::string title(DockerPruneTarget target) { return Localization::text(titleKey(target)); }
std::string detail(DockerPruneTarget target) { return Localization::text(detailKey(target)); }

DockerUsageKind usageKind(DockerPruneTarget target) {
    switch (target) {
    case DockerPruneTarget::buildCache: return DockerUsageKind::buildCache;
    case DockerPruneTarget::images: return DockerUsageKind::images;
    case DockerPruneTarget::containers: return DockerUsageKind::containers;
    case DockerPruneTarget::volumes: return DockerUsageKind::volumes;
    }
    return DockerUsageKind::images;
}

bool isDestructive(DockerPruneTarget target) { return target == DockerPruneTarget::volumes; }

namespace DockerPruner {

std::string reclaimedSpace(std::string_view output) {
    while (!output.empty()) {
        auto start = output.rfind('\n', output.size() - 1);
        std::string_view line = start == std::string_view::npos ? output : output.substr(start + 1);
        output = start == std::string_view::npos ? std::string_view{} : output.substr(0, start);
        if (line.find("reclaimed space:") == std::string_view::npos) continue;
        // Past the last colon that has something behind it.
        std::string_view rest = line;
        while (!rest.empty() && rest.back() == ':') rest.remove_suffix(1);
        return std::string(trimmed(rest.substr(rest.rfind(':') + 1)));
    }
    return "0B";
}

std::optional<std::string> prune(DockerPruneTarget target) {
    auto output = DockerCLI::run(arguments(target), kTimeoutSeconds);
    if (!output) return std::nullopt;
    return reclaimedSpace(*output);
}

} // namespace DockerPruner
} // namespace lumabroom
