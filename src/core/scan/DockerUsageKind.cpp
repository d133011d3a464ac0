#include "scan/DockerUsageKind.h"

#include "scan/RawValue.h"
#include "text/Localization.h"

namespace lumabroom {

std::string_view rawValue(DockerUsageKind k) {
    switch (k) {
    case DockerUsageKind::images: return "images";
    case DockerUsageKind::containers: return "containers";
    case DockerUsageKind::volumes: return "volumes";
    case DockerUsageKind::buildCache: return "buildCache";
    }
    return "";
}

std::optional<DockerUsageKind> dockerUsageKindFromRaw(std::string_view raw) {
    return fromRaw(allDockerUsageKinds, raw);
}

std::string_view displayKey(DockerUsageKind k) {
    switch (k) {
    case DockerUsageKind::images: return "镜像";
    case DockerUsageKind::containers: return "容器";
    case DockerUsageKind::volumes: return "数据卷";
    case DockerUsageKind::buildCache: return "构建缓存";
    }
    return "";
}

std::string displayName(DockerUsageKind kind) { return Localization::text(displayKey(kind)); }

std::optional<DockerUsageKind> dockerUsageKindFromDfType(std::string_view type) {
    if (type == "Images") return DockerUsageKind::images;
    if (type == "Containers") return DockerUsageKind::containers;
    if (type == "Local Volumes") return DockerUsageKind::volumes;
    if (type == "Build Cache") return DockerUsageKind::buildCache;
    return std::nullopt;
}

} // namespace lumabroom
