#pragma once

#include "ChartInput.h"
#include "Morph.h"
#include "Segment.h"
#include "Spring.h"
#include "Sunburst.h"
#include "SunburstPainter.h"

#include <QImage>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lumabroom {

// The sunburst: draws the list of the current route, morphs between routes, shows a tooltip on hover
// and the totals in its hole. It reads its data through the provider and changes nothing: a tap is
// handed to the owner as a decision, and the owner calls refresh() once the model has changed.
class SunburstWidget : public QWidget {
    Q_OBJECT
public:
    using Provider = std::function<ChartInput()>;

    explicit SunburstWidget(QWidget* parent = nullptr);

    void setProvider(Provider provider);
    // Follows the palette's window colour until set.
    void setLight(bool light);
    bool isLight() const;

    double morphProgress() const { return progress; }
    const std::optional<std::string>& hoveredID() const { return hoverID; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    // Reads the model again; a change of route starts a morph from the list of the route left.
    void refresh();

signals:
    void tapped(const lumabroom::TapDecision& decision);

protected:
    void paintEvent(QPaintEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void leaveEvent(QEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void focusOutEvent(QFocusEvent*) override;

private:
    ChartInput input() const;
    void hover(QPointF location, const std::vector<Segment>& list);
    void moveKeyboardFocus(int step);
    void paintCenterLabel(QPainter&, const ChartInput&);
    void paintTooltip(QPainter&, const Segment&);

    Provider provider;
    std::optional<Route> shownRoute;
    std::vector<Segment> morphFrom;
    double progress = 1;
    SpringAnimation spring;
    std::optional<std::string> hoverID;
    QPointF hoverLocation;
    std::optional<bool> forcedLight;

    // The picture of the last settled frame, reused while its shapes stay the same: the tooltip
    // follows the pointer on every move, and the chart under it rarely changes.
    struct SettledLayer {
        std::vector<DrawnSegment> shapes;
        QSize size;
        qreal ratio = 0;
        bool light = false;
        QImage image;
    };
    SettledLayer settled;
    SunburstPainter::GlowCache glows;
};

} // namespace lumabroom
