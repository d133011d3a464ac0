#pragma once

#include "scan/DockerUsageKind.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom {

// The classes of unused things that docker can prune, in the order of the card's rows.
enum class DockerPruneTarget { buildCache, images, containers, volumes };

inline constexpr std::array allDockerPruneTargets{DockerPruneTarget::buildCache, DockerPruneTarget::images,
                                                  DockerPruneTarget::containers, DockerPruneTarget::volumes};

std::string_view rawValue(DockerPruneTarget); // also the target's id: "build-cache", "images", …
std::optional<DockerPruneTarget> dockerPruneTargetFromRaw(std::string_view);
std::string_view titleKey(DockerPruneTarget);
std::string_view detailKey(DockerPruneTarget);
// Localized on each call.
std::string title(DockerPruneTarget);
std::string detail(DockerPruneTarget);
// The usage row that shows what the target would free.
DockerUsageKind usageKind(DockerPruneTarget);
// Only pruning volumes loses data that can't be fetched or built again.
bool isDestructive(DockerPruneTarget);

namespace DockerPruner {

// Prunes the whole class through docker; gives the freed space as docker printed it ("1.2GB"), "0B"
// when it printed none, and nothing when docker can't be asked or fails.
std::optional<std::string> prune(DockerPruneTarget target);

// The last "reclaimed space:" line of a prune's output, past its last colon; "0B" without one.
std::string reclaimedSpace(std::string_view output);

} // namespace DockerPruner
} // namespace lumabroom
