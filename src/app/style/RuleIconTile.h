#pragma once

#include "Theme.h"
#include "scan/CleanRule.h"

#include <QWidget>

#include <string_view>

class QPainter;

namespace lumabroom {

// A rule's picture: the tool's logo, or a blue tile with the rule's symbol.
class RuleIconTile : public QWidget {
public:
    RuleIconTile(CleanRule rule, int size, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {size_, size_}; }

    static void paint(QPainter&, const QRectF& square, const CleanRule&, const Theme&);
    // The tile of a rule without a logo: every tile is blue, whatever the rule's colour.
    static void paintFallback(QPainter&, const QRectF& square, std::string_view symbol);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    CleanRule rule_;
    int size_;
};

} // namespace lumabroom
