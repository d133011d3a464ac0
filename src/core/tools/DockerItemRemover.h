#pragma once

#include "tools/DockerInventoryLister.h"

namespace lumabroom::DockerItemRemover {

// Removes one item through docker, without force: what docker refuses stays. True when docker
// reported success.
bool remove(const DockerItem& item);

} // namespace lumabroom::DockerItemRemover
