#pragma once

#include "Theme.h"

#include <QWidget>

class QPainter;

namespace lumabroom {

// The application's logo: an open ring with three motes flying out of its gap, in the accent.
class BrandMark : public QWidget {
public:
    explicit BrandMark(int size, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {size_, size_}; }
    static void paint(QPainter&, const QRectF& square, const Theme&);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    int size_;
};

} // namespace lumabroom
