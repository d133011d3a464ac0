#include "NebulaBackground.h"

#include <QPainter>

namespace lumabroom::NebulaBackground {

void paint(QPainter& painter, const QRectF& rect, const Theme& theme) {
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, theme.bgTop);
    gradient.setColorAt(1, theme.bgBottom);
    painter.fillRect(rect, gradient);
}

} // namespace lumabroom::NebulaBackground
