#pragma once

#include <filesystem>
#include <vector>

namespace lumabroom::TempFolders {

// Of the entries found in the user's temporary folder, those fit to offer for removal, in their
// order. None when the temporary folder is the home folder or one of its ancestors. Where the
// folder is shared by all users, an entry must also belong to the user, hold no socket or FIFO
// near its top (where runtime folders keep them), and not be in use by a running process of the
// user: a file open in it, its working folder or its program. The processes are looked at once per
// call.
std::vector<std::filesystem::path> offered(std::vector<std::filesystem::path> entries);

} // namespace lumabroom::TempFolders
