#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace lumabroom {

enum class DockerUsageKind { images, containers, volumes, buildCache };

inline constexpr std::array allDockerUsageKinds{DockerUsageKind::images, DockerUsageKind::containers,
                                                DockerUsageKind::volumes, DockerUsageKind::buildCache};

std::string_view rawValue(DockerUsageKind);
std::optional<DockerUsageKind> dockerUsageKindFromRaw(std::string_view);

// The localization key of the display name, and the name looked up in the current language.
std::string_view displayKey(DockerUsageKind);
std::string displayName(DockerUsageKind);

// Exact match with the type column of `docker system df`; anything else is no kind.
std::optional<DockerUsageKind> dockerUsageKindFromDfType(std::string_view type);

} // namespace lumabroom
