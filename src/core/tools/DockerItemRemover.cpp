#include "tools/DockerItemRemover.h"

#include "tools/DockerCLI.h"

namespace lumabroom::DockerItemRemover {

namespace {
constexpr double kTimeoutSeconds = 120;
}

bool remove(const DockerItem& item) {
    std::vector<std::string> arguments;
    switch (item.kind) {
    case DockerItem::Kind::image: arguments = {"rmi", item.ref}; break;
    case DockerItem::Kind::container: arguments = {"rm", item.ref}; break;
    case DockerItem::Kind::volume: arguments = {"volume", "rm", item.ref}; break;
    }
    return DockerCLI::run(arguments, kTimeoutSeconds).has_value();
}

} // namespace lumabroom::DockerItemRemover
