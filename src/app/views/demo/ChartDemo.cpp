// The chart by itself over a synthetic model. Clicks, hover, Escape and the morph behave as in the
// window. Options: --light, --colour-blind, --route overview|category:RAW|rule:ID, --select,
// (or category:biggest, rule:biggest), --busy, --size WxH, --hover X,Y, --screenshot FILE (saves the window once drawn, then quits).

#include "ChartSample.h"
#include "SunburstWidget.h"

#include <QApplication>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

using namespace lumabroom;

// The window's background, top to bottom, as the application draws it.
class Backdrop : public QWidget {
public:
    explicit Backdrop(bool light) : light(light) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        QLinearGradient g(0, 0, 0, height());
        g.setColorAt(0, light ? QColor::fromRgbF(0.94f, 0.96f, 0.985f) : QColor::fromRgbF(0.137f, 0.137f, 0.149f));
        g.setColorAt(1, light ? QColor::fromRgbF(0.86f, 0.895f, 0.95f) : QColor::fromRgbF(0.086f, 0.086f, 0.094f));
        p.fillRect(rect(), g);
    }

private:
    bool light;
};

std::optional<Route> parseRoute(const std::string& text, const ChartSample& sample) {
    if (text == "overview") return Route::overview();
    // The largest category, and the largest rule in it.
    const auto groups = visibleGroups(sample.results);
    const auto biggest = std::ranges::max_element(groups, {}, SunburstPalette::groupTotal);
    if (text == "category:biggest" && biggest != groups.end()) return Route::category(biggest->category);
    if (text == "rule:biggest" && biggest != groups.end()) return Route::rule(biggest->results.front()->id());
    if (text.starts_with("category:")) {
        if (const auto c = categoryFromRaw(text.substr(9))) return Route::category(*c);
        return std::nullopt;
    }
    if (text.starts_with("rule:")) return Route::rule(text.substr(5));
    return std::nullopt;
}

// A few entries of the biggest rules, so that selected segments show.
void selectSome(ChartSample& sample) {
    const auto groups = visibleGroups(sample.results);
    for (const VisibleGroup& group : groups) {
        const RuleScanResult& biggest = *group.results.front();
        for (std::size_t i = 0; i < biggest.entries.size() && i < 2; ++i) sample.selected.insert(biggest.entries[i].id());
    }
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    bool light = false;
    ChartPalette palette = ChartPalette::hues;
    ChartSample sample = ChartSample::typical();
    QSize size(900, 640);
    std::optional<QPointF> hoverAt;
    QString screenshot;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if (arg == "--light") light = true;
        else if (arg == "--colour-blind") palette = ChartPalette::colorBlindSafe;
        else if (arg == "--select") selectSome(sample);
        else if (arg == "--worst") sample = ChartSample::worst();
        else if (arg == "--busy") sample.isBusy = true;
        else if (arg == "--route" && hasValue) {
            const auto route = parseRoute(argv[++i], sample);
            if (!route) {
                std::fprintf(stderr, "unknown route %s\n", argv[i]);
                return 2;
            }
            sample.route = *route;
        } else if (arg == "--size" && hasValue) {
            const QStringList parts = QString(argv[++i]).split('x');
            if (parts.size() == 2) size = QSize(parts[0].toInt(), parts[1].toInt());
        } else if (arg == "--hover" && hasValue) {
            const QStringList parts = QString(argv[++i]).split(',');
            if (parts.size() == 2) hoverAt = QPointF(parts[0].toDouble(), parts[1].toDouble());
        } else if (arg == "--screenshot" && hasValue) {
            screenshot = argv[++i];
        } else {
            std::fprintf(stderr, "unknown option %s\n", arg.c_str());
            return 2;
        }
    }

    Backdrop window(light);
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* chart = new SunburstWidget(&window);
    layout->addWidget(chart);
    chart->setLight(light);
    chart->setProvider([&sample, palette] { return sample.input(palette); });
    QObject::connect(chart, &SunburstWidget::tapped, chart, [&sample, chart](const TapDecision& decision) {
        sample.apply(decision);
        chart->refresh();
    });
    window.resize(size);
    window.setWindowTitle("lumabroom chart");
    window.show();
    chart->setFocus();

    if (hoverAt) {
        QTimer::singleShot(100, chart, [chart, at = *hoverAt] {
            QMouseEvent move(QEvent::MouseMove, at, chart->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(chart, &move);
        });
    }
    if (!screenshot.isEmpty()) {
        QTimer::singleShot(400, &window, [&window, screenshot] {
            const bool saved = window.grab().save(screenshot);
            QApplication::exit(saved ? 0 : 1);
        });
    }
    return app.exec();
}
