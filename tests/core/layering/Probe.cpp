// Compiled against one library's include roots with PROBE naming a header.
#include PROBE
