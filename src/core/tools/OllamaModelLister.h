#pragma once

#include "scan/ScanEntry.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom {

namespace OllamaModelLister {

// One entry per manifest file at any depth below `modelsDir`/manifests, sized by the layers and
// config it names (shared blobs count in full for each model), largest first, equal sizes in the
// walk's order. Nothing when no manifest gives a size above 0, so that the caller falls back to
// measuring the folder. Blobs are never opened.
std::optional<std::vector<ScanEntry>> entries(const std::filesystem::path& modelsDir);

// The total of "layers"[*]."size" and "config"."size" of one manifest; a missing or non-integer size
// adds 0. Nothing when the text is no JSON object.
std::optional<std::int64_t> manifestSize(std::string_view json);

} // namespace OllamaModelLister

namespace OllamaModelRemover {

// The model a manifest stands for, "<model>:<tag>", with the registry and namespace kept unless
// they are the default ones: ".../manifests/registry.ollama.ai/library/llama3/8b" is "llama3:8b",
// ".../registry.ollama.ai/alice/llama3/8b" is "alice/llama3:8b", ".../hf.co/u/m/q4" is "hf.co/u/m:q4".
// Nothing for a path outside "/manifests/".
std::optional<std::string> modelName(const std::filesystem::path& manifest);

// `ollama rm <model>`; true when the tool reported success. Never deletes files itself.
bool remove(const std::string& model);

} // namespace OllamaModelRemover
} // namespace lumabroom
