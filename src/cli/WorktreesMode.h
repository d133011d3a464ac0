#pragma once

#include "Output.h"

#include "agents/WorktreeInfo.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace lumabroom::WorktreesMode {

// `--worktrees`: the git worktrees that coding agents left behind. With `json`, one line per report,
// {"report": k, "worktrees": [...]} in display order, where report k holds k measured worktrees,
// then {"done": true}. Else a table, redrawn per report on a terminal and printed once otherwise.
int run(bool json, std::ostream& out);

Output::Json jsonReport(std::size_t report, const std::vector<WorktreeInfo>& worktrees);
// The table of one report; paths under `home` are shortened to "~".
std::string table(const std::vector<WorktreeInfo>& worktrees, const std::string& home);

} // namespace lumabroom::WorktreesMode
