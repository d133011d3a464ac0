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
        for (std::size_t i = 0; i < biggest.entries.size() && i < 2; ++i)
            sample.selected.insert(biggest.entries[i].id());
    }
}

// What the command line asks for.
struct Options {
    bool light = false;
    ChartPalette palette = ChartPalette::hues;
    ChartSample sample = ChartSample::typical();
    QSize size{900, 640};
    std::optional<QPointF> hoverAt;
    QString screenshot;
};

// The options, or nothing after saying what is wrong with them.
std::optional<Options> parseOptions(int argc, char** argv) {
    Options o;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        const bool hasValue = i + 1 < argc;
        if (arg == "--light") o.light = true;
        else if (arg == "--colour-blind") o.palette = ChartPalette::colorBlindSafe;
        else if (arg == "--select") selectSome(o.sample);
        else if (arg == "--worst") o.sample = ChartSample::worst();
        else if (arg == "--busy") o.sample.isBusy = true;
        else if (arg == "--route" && hasValue) {
            const auto route = parseRoute(argv[++i], o.sample);
            if (!route) {
                std::fprintf(stderr, "unknown route %s\n", argv[i]);
                return std::nullopt;
            }
            o.sample.route = *route;
        } else if (arg == "--size" && hasValue) {
            const QStringList parts = QString(argv[++i]).split('x');
            if (parts.size() == 2) o.size = QSize(parts[0].toInt(), parts[1].toInt());
        } else if (arg == "--hover" && hasValue) {
            const QStringList parts = QString(argv[++i]).split(',');
            if (parts.size() == 2) o.hoverAt = QPointF(parts[0].toDouble(), parts[1].toDouble());
        } else if (arg == "--screenshot" && hasValue) {
            o.screenshot = argv[++i];
        } else {
            std::fprintf(stderr, "unknown option %s\n", arg.c_str());
            return std::nullopt;
        }
    }
    return o;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    auto options = parseOptions(argc, argv);
    if (!options) return 2;
    ChartSample& sample = options->sample;

    Backdrop window(options->light);
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* chart = new SunburstWidget(&window);
    layout->addWidget(chart);
    chart->setLight(options->light);
    chart->setProvider([&sample, palette = options->palette] { return sample.input(palette); });
    QObject::connect(chart, &SunburstWidget::tapped, chart, [&sample, chart](const TapDecision& decision) {
        sample.apply(decision);
        chart->refresh();
    });
    window.resize(options->size);
    window.setWindowTitle("lumabroom chart");
    window.show();
    chart->setFocus();

    if (options->hoverAt) {
        QTimer::singleShot(100, chart, [chart, at = *options->hoverAt] {
            QMouseEvent move(QEvent::MouseMove, at, chart->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(chart, &move);
        });
    }
    if (!options->screenshot.isEmpty()) {
        QTimer::singleShot(400, &window, [&window, screenshot = options->screenshot] {
            const bool saved = window.grab().save(screenshot);
            QApplication::exit(saved ? 0 : 1);
        });
    }
    return app.exec();
}
