#pragma once

#include "Theme.h"

class QPainter;

namespace lumabroom::NebulaBackground {

// The window's background: from bgTop at the top to bgBottom at the bottom.
void paint(QPainter&, const QRectF& rect, const Theme&);

} // namespace lumabroom::NebulaBackground
