#pragma once

#include <iosfwd>

namespace lumabroom::ModelsMode {

// `--models`: the Ollama models of "~/.ollama/models" from their manifests, largest first. With
// `json`, one line {"models": [{"name", "path", "size"}]}.
int run(bool json, std::ostream& out);

} // namespace lumabroom::ModelsMode
