// Painting the sunburst as the widget does on each frame: lists rebuilt from the model, the frame
// computed, the shapes painted into a 1200 × 760 image. The data is the busiest overview the
// catalogue can give (every rule shown, each with 12 decorations), so the figures are an upper bound.

#include "ChartSample.h"
#include "Morph.h"
#include "Sunburst.h"
#include "SunburstPainter.h"
#include "SunburstWidget.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace lumabroom;

constexpr QSize viewSize(1200, 760);
const QColor background(35, 35, 38);

QImage canvas(double ratio) {
    QImage image(viewSize * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    return image;
}

// One frame between `from` and the sample's route at `progress`.
void paintFrame(QImage& image, const ChartSample& sample, const Route* from, double progress,
                const std::optional<std::string>& hover) {
    const ChartInput input = sample.input();
    const auto to = Sunburst::segments(input);
    const auto origin = from ? Sunburst::segments(input, *from) : std::vector<Segment>{};
    const auto shapes = Morph::frame({.from = origin,
                                      .to = to,
                                      .progress = progress,
                                      .hoverID = hover,
                                      .light = false,
                                      .palette = ChartPalette::hues},
                                     Sunburst::radius(viewSize));
    image.fill(background);
    QPainter painter(&image);
    SunburstPainter::paint(painter, QRectF(QPointF(), viewSize).center(), shapes, false);
}

ChartSample allSelected() {
    ChartSample sample = ChartSample::worst();
    for (const RuleScanResult& r : sample.results)
        for (std::size_t i = 0; i < 2; ++i) sample.selected.insert(r.entries[i].id());
    return sample;
}

void show(SunburstWidget& widget, const ChartSample& sample) {
    widget.setLight(false);
    widget.resize(viewSize);
    widget.setProvider([&sample] { return sample.input(); });
}

void settledOverview(benchmark::State& state) {
    const ChartSample sample = ChartSample::worst();
    QImage image = canvas(double(state.range(0)));
    for (auto _ : state) paintFrame(image, sample, nullptr, 1, std::nullopt);
    state.counters["segments"] = double(Sunburst::segments(sample.input()).size());
}

// A machine as the demo shows it: a few giants, a tail of small rules merged into grey slices.
void settledTypicalOverview(benchmark::State& state) {
    const ChartSample sample = ChartSample::typical();
    QImage image = canvas(double(state.range(0)));
    for (auto _ : state) paintFrame(image, sample, nullptr, 1, std::nullopt);
    state.counters["segments"] = double(Sunburst::segments(sample.input()).size());
}

// The pointer over the biggest category: one glow.
void settledOverviewHovered(benchmark::State& state) {
    const ChartSample sample = ChartSample::worst();
    QImage image = canvas(double(state.range(0)));
    for (auto _ : state) paintFrame(image, sample, nullptr, 1, std::string("cat:packageManager"));
}

// Two entries of every rule selected: a glow under every category, rule and selected decoration.
void settledOverviewAllSelected(benchmark::State& state) {
    const ChartSample sample = allSelected();
    QImage image = canvas(double(state.range(0)));
    for (auto _ : state) paintFrame(image, sample, nullptr, 1, std::nullopt);
}

// Halfway from the overview into the biggest category.
void morphIntoCategory(benchmark::State& state) {
    ChartSample sample = ChartSample::worst();
    sample.route = Route::category(Category::packageManager);
    const Route overview = Route::overview();
    QImage image = canvas(double(state.range(0)));
    for (auto _ : state) paintFrame(image, sample, &overview, 0.5, std::nullopt);
}

// The whole widget, centre label included, through the toolkit's render path, repainting a settled
// frame whose shapes have not changed: what each move of the pointer within one segment costs.
void widgetRepaint(benchmark::State& state) {
    const ChartSample sample = ChartSample::worst();
    SunburstWidget widget;
    show(widget, sample);
    QImage image = canvas(double(state.range(0)));
    for (auto _ : state) {
        image.fill(background);
        widget.render(&image);
    }
}

// The pointer going back and forth between the biggest category and a decoration, one repaint each:
// what a settled frame costs as the hover changes, the picture of the last frame at hand.
void hoverBackAndForth(benchmark::State& state, const ChartSample& sample) {
    SunburstWidget widget;
    show(widget, sample);
    const auto list = Sunburst::segments(sample.input());
    const auto middle = [&](std::string_view prefix) {
        const auto it = std::ranges::find_if(list, [&](const Segment& s) { return s.id.starts_with(prefix); });
        const double angle = (it->start + it->end) / 2;
        const double r = Sunburst::radius(viewSize) * (it->band.inner + it->band.outer) / 2;
        return QRectF(QPointF(), viewSize).center() + QPointF(r * std::cos(angle), r * std::sin(angle));
    };
    const QPointF points[2] = {middle("cat:packageManager"), middle("deco:")};
    QImage image = canvas(double(state.range(0)));
    widget.render(&image);
    int turn = 0;
    for (auto _ : state) {
        const QPointF point = points[turn++ % 2];
        QMouseEvent move(QEvent::MouseMove, point, point, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&widget, &move);
        image.fill(background);
        widget.render(&image);
    }
}

void widgetHoverChange(benchmark::State& state) { hoverBackAndForth(state, ChartSample::worst()); }

// The same over the busiest overview with two entries of every rule selected: the glows of the
// shapes around the one that changed are painted again, their blur kept from the frame before.
void widgetHoverChangeAllSelected(benchmark::State& state) { hoverBackAndForth(state, allSelected()); }

BENCHMARK(settledOverview)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(settledTypicalOverview)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(settledOverviewHovered)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(settledOverviewAllSelected)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(morphIntoCategory)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(widgetRepaint)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(widgetHoverChange)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(widgetHoverChangeAllSelected)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
