#include <Vg3ColorLegend.h>

#include <Vg3OpenInventor.h>
#include <Vg3ScreenOverlay.h>
#include <VugColorScale.h>

#include <KbbStringFormat.h>

#include <Inventor/elements/SoModelMatrixElement.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoFaceSet.h>
#include <Inventor/nodes/SoFont.h>
#include <Inventor/nodes/SoLineSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoMaterialBinding.h>
#include <Inventor/nodes/SoQuadMesh.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTranslation.h>

#include <QSet>

#include <cmath>

namespace {

// The legend is laid out in units of half the window's height (the camera's vertical unit),
// x scaled to match while drawing, so that its proportions never depend on the window.
constexpr float BAR_HEIGHT = 2.0f * Vg3ColorLegend::BAR_HEIGHT_FRACTION;
constexpr float BAR_WIDTH = 0.06f;
constexpr float MARGIN = 0.06f;
constexpr float TICK = 0.025f;
constexpr float BELOW = 0.05f;     // room for the lowest label
constexpr float TITLE_GAP = 0.09f; // from the bar's top to the title's baseline
constexpr float ABOVE = 0.17f;     // room for the title
constexpr float FRAME = 0.012f;    // the background panel beyond the bar
constexpr float TEXT_DROP = 0.015f; // labels' baselines below their ticks, to centre them
constexpr int FONT_SIZE = 12;
constexpr int MAX_LABELS = 11;

SbColor toSbColor(QRgb rgb)
{
    return SbColor(qRed(rgb) / 255.0f, qGreen(rgb) / 255.0f, qBlue(rgb) / 255.0f);
}

SbColor toSbColor(const QColor& c)
{
    return SbColor(float(c.redF()), float(c.greenF()), float(c.blueF()));
}

// 1, 2, 2.5 or 5 times a power of ten, the nearest at or above `rough`.
double niceStep(double rough)
{
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    for (const double m : {1.0, 2.0, 2.5, 5.0, 10.0})
        if (m * power >= rough * (1.0 - 1e-9))
            return m * power;
    return 10.0 * power;
}

// The labels in the variable's format while they stay short and tell the ticks apart;
// otherwise in scientific notation with as few digits as do, so that 1e30 reads "1.0e+30"
// rather than thirty-one digits, and 2e-7 no longer rounds to "0.000".
QStringList readableLabels(const QVector<double>& values, const KbbStringFormat& format)
{
    constexpr int MAX_LENGTH = 14;
    const auto labelled = [&values](const KbbStringFormat& f) {
        QStringList labels;
        for (const double v : values)
            labels.append(f.valueToString(v));
        return labels;
    };
    const auto readable = [](const QStringList& labels) {
        for (const QString& label : labels)
            if (label.size() > MAX_LENGTH)
                return false;
        return QSet<QString>(labels.cbegin(), labels.cend()).size() == labels.size();
    };
    QStringList labels = labelled(format);
    if (readable(labels))
        return labels;
    KbbStringFormat scientific(format);
    scientific.setNotation(KbbStringFormat::SCIENTIFIC);
    for (int digits = 1; digits <= KbbStringFormat::MAX_DIGITS; ++digits) {
        scientific.setDigits(digits);
        labels = labelled(scientific);
        if (readable(labels))
            break;
    }
    return labels;
}

bool isUsable(const VugColorScale& scale)
{
    const double lo = scale.getMin();
    const double hi = scale.getMax();
    if (!std::isfinite(lo) || !std::isfinite(hi) || !(lo < hi))
        return false;
    return scale.isClassed() ? scale.getClassCount() >= 1 : scale.getStops().size() >= 2;
}

} // namespace

class Vg3ColorLegendPrivate
{
public:
    Vg3ScreenOverlay screen{"color_legend_root",
                            [this](SoState* state, const SbVec2s& pixels) { placeLegend(state, pixels); }};
    QColor background;
    QColor foreground;
    int alignment = Vu::RIGHT | Vu::BOTTOM;
    bool visible = true;
    bool usable = false;
    VugColorScale scale;
    QString title;
    std::unique_ptr<KbbStringFormat> format = std::make_unique<KbbStringFormat>();
    bool discrete = false;
    QVector<double> tickValues;
    QStringList tickLabels;

    // Moves the origin to the aligned corner (or edge middle) of the window and makes one
    // unit across as long as one unit up.
    void placeLegend(SoState* state, const SbVec2s& pixels)
    {
        const float x = (alignment & Vu::LEFT) ? -1.0f : (alignment & Vu::RIGHT) ? 1.0f : 0.0f;
        const float y = (alignment & Vu::BOTTOM) ? -1.0f : (alignment & Vu::TOP) ? 1.0f : 0.0f;
        SoModelMatrixElement::translateBy(state, screen.getRoot(), SbVec3f(x, y, 0.0f));
        SoModelMatrixElement::scaleBy(state, screen.getRoot(), SbVec3f(float(pixels[1]) / float(pixels[0]), 1.0f, 1.0f));
    }

    // The bar's height at a value, 0 at the scale's minimum.
    float heightOf(double value) const
    {
        return float((value - scale.getMin()) / (scale.getMax() - scale.getMin())) * BAR_HEIGHT;
    }

    void computeTicks();
    void build();
};

void Vg3ColorLegendPrivate::computeTicks()
{
    tickValues.clear();
    tickLabels.clear();
    const double lo = scale.getMin();
    const double hi = scale.getMax();
    if (scale.isClassed()) {
        const QVector<double>& limits = scale.getClassLimits();
        const int n = discrete ? scale.getClassCount() : limits.size();
        const int every = (n + MAX_LABELS - 1) / MAX_LABELS;
        for (int i = 0; i < n; i += every)
            tickValues.append(limits.at(i));
    } else {
        const double step = niceStep((hi - lo) / 4.0);
        const double eps = step * 1e-9;
        // Counted, not stepped: far from zero (1e21 to 1e21 + 131072, say) adding one to a
        // multiple of the step beyond 2^53 would change nothing.
        const double first = std::ceil((lo - eps) / step);
        const double count = std::floor((hi + eps) / step) - first + 1.0;
        for (int k = 0; std::isfinite(count) && k < std::min(count, 2.0 * MAX_LABELS); ++k) {
            const double v = (first + k) * step;
            if (v >= lo - eps && v <= hi + eps) // the product may round beyond the range
                tickValues.append(std::abs(v) < eps ? 0.0 : v);
        }
        if (tickValues.size() < 2)
            tickValues = {lo, hi};
    }
    tickLabels = readableLabels(tickValues, *format);
}

void Vg3ColorLegendPrivate::build()
{
    SoSeparator* content = screen.getContent();
    content->removeAllChildren();
    if (!usable)
        return;
    const bool right = alignment & Vu::RIGHT;
    const float x0 = right ? -MARGIN - BAR_WIDTH : (alignment & Vu::LEFT) ? MARGIN : -0.5f * BAR_WIDTH;
    const float y0 = (alignment & Vu::BOTTOM) ? MARGIN + BELOW
                     : (alignment & Vu::TOP)  ? -MARGIN - ABOVE - BAR_HEIGHT
                                              : -0.5f * BAR_HEIGHT;
    auto origin = new SoTranslation;
    origin->translation.setValue(x0, y0, 0.0f);
    content->addChild(origin);

    // The panel behind the bar keeps it readable over any scene.
    auto panelColor = new SoBaseColor;
    panelColor->rgb = toSbColor(background);
    content->addChild(panelColor);
    auto panelCoords = new SoCoordinate3;
    const SbVec3f panel[4] = {{-FRAME, -FRAME, 0}, {BAR_WIDTH + FRAME, -FRAME, 0},
                              {BAR_WIDTH + FRAME, BAR_HEIGHT + FRAME, 0}, {-FRAME, BAR_HEIGHT + FRAME, 0}};
    panelCoords->point.setValues(0, 4, panel);
    content->addChild(panelCoords);
    content->addChild(new SoFaceSet);

    auto bar = new SoSeparator;
    content->addChild(bar);
    auto material = new SoMaterial;
    auto binding = new SoMaterialBinding;
    auto barCoords = new SoCoordinate3;
    bar->addChild(material);
    bar->addChild(binding);
    bar->addChild(barCoords);
    if (scale.isClassed()) {
        // Blocks of equal height: narrow classes stay visible.
        const int n = scale.getClassCount();
        const float h = BAR_HEIGHT / n;
        QVector<SbVec3f> points;
        QVector<SbColor> colors;
        for (int i = 0; i < n; ++i) {
            points << SbVec3f(0, i * h, 0) << SbVec3f(BAR_WIDTH, i * h, 0) << SbVec3f(BAR_WIDTH, (i + 1) * h, 0)
                   << SbVec3f(0, (i + 1) * h, 0);
            colors << toSbColor(scale.getClassColors().at(i));
        }
        barCoords->point.setValues(0, points.size(), points.constData());
        material->diffuseColor.setValues(0, colors.size(), colors.constData());
        binding->value = SoMaterialBinding::PER_FACE;
        auto faces = new SoFaceSet;
        faces->numVertices.setNum(n);
        for (int i = 0; i < n; ++i)
            faces->numVertices.set1Value(i, 4);
        bar->addChild(faces);
    } else {
        // One row per stop: colours interpolated between rows as the scale interpolates them.
        const QVector<VugColorScale::Stop>& stops = scale.getStops();
        QVector<SbVec3f> points;
        QVector<SbColor> colors;
        for (const VugColorScale::Stop& s : stops) {
            const float y = heightOf(s.value);
            points << SbVec3f(0, y, 0) << SbVec3f(BAR_WIDTH, y, 0);
            colors << toSbColor(s.color) << toSbColor(s.color);
        }
        barCoords->point.setValues(0, points.size(), points.constData());
        material->diffuseColor.setValues(0, colors.size(), colors.constData());
        binding->value = SoMaterialBinding::PER_VERTEX;
        auto mesh = new SoQuadMesh;
        mesh->verticesPerRow = 2;
        mesh->verticesPerColumn = stops.size();
        bar->addChild(mesh);
    }

    // Frame and ticks in the foreground colour.
    auto lines = new SoSeparator;
    content->addChild(lines);
    auto lineColor = new SoBaseColor;
    lineColor->rgb = toSbColor(foreground);
    lines->addChild(lineColor);
    auto style = new SoDrawStyle;
    style->lineWidth = 1.0f;
    lines->addChild(style);
    QVector<SbVec3f> points = {{0, 0, 0}, {BAR_WIDTH, 0, 0}, {BAR_WIDTH, BAR_HEIGHT, 0}, {0, BAR_HEIGHT, 0}, {0, 0, 0}};
    QVector<int32_t> counts = {5};
    QVector<float> labelHeights;
    const int n = tickValues.size();
    for (int i = 0; i < n; ++i) {
        float y;
        if (scale.isClassed()) {
            const int cls = scale.getClassLimits().indexOf(tickValues.at(i));
            y = (discrete ? cls + 0.5f : float(cls)) * BAR_HEIGHT / scale.getClassCount();
        } else {
            y = heightOf(tickValues.at(i));
        }
        labelHeights.append(y);
        if (discrete)
            continue;
        const float tx = right ? -TICK : BAR_WIDTH + TICK;
        points << SbVec3f(right ? 0.0f : BAR_WIDTH, y, 0) << SbVec3f(tx, y, 0);
        counts << 2;
    }
    auto lineCoords = new SoCoordinate3;
    lineCoords->point.setValues(0, points.size(), points.constData());
    lines->addChild(lineCoords);
    auto lineSet = new SoLineSet;
    lineSet->numVertices.setValues(0, counts.size(), counts.constData());
    lines->addChild(lineSet);

    auto font = new SoFont;
    font->size = float(FONT_SIZE);
    font->name = Vg3OpenInventor::getTextFontName();
    lines->addChild(font);
    // Labels on the side away from the window's edge.
    const float labelX = right ? -1.5f * TICK : BAR_WIDTH + 1.5f * TICK;
    for (int i = 0; i < n; ++i) {
        auto label = new SoSeparator;
        auto at = new SoTranslation;
        at->translation.setValue(labelX, labelHeights.at(i) - TEXT_DROP, 0.0f);
        label->addChild(at);
        auto text = new SoText2;
        text->string = SbString(tickLabels.at(i).toUtf8().constData());
        text->justification = right ? SoText2::RIGHT : SoText2::LEFT;
        label->addChild(text);
        lines->addChild(label);
    }
    if (!title.isEmpty()) {
        auto caption = new SoSeparator;
        caption->setName("legend_title");
        auto at = new SoTranslation;
        at->translation.setValue(right ? BAR_WIDTH : 0.0f, BAR_HEIGHT + TITLE_GAP, 0.0f);
        caption->addChild(at);
        auto text = new SoText2;
        text->string = SbString(title.toUtf8().constData());
        text->justification = right ? SoText2::RIGHT : SoText2::LEFT;
        caption->addChild(text);
        lines->addChild(caption);
    }
}

Vg3ColorLegend::Vg3ColorLegend(const QColor& background, const QColor& foreground, Vu::Position alignment)
    : _d(std::make_unique<Vg3ColorLegendPrivate>())
{
    _d->background = background.isValid() ? background : QColor(Qt::black);
    _d->foreground = foreground.isValid() ? foreground : QColor(Qt::white);
    if (!background.isValid() || !foreground.isValid())
        qWarning("Vg3ColorLegend::Vg3ColorLegend: invalid colour, black on white is used");
    if (Vu::isValidPosition(alignment))
        _d->alignment = alignment;
    else
        qWarning("Vg3ColorLegend::Vg3ColorLegend: %d is not an alignment, the lower right corner is used",
                 int(alignment));

    _rebuild();
}

Vg3ColorLegend::~Vg3ColorLegend() = default;

SoSeparator* Vg3ColorLegend::getRoot() const
{
    return _d->screen.getRoot();
}

void Vg3ColorLegend::setColorScale(const VugColorScale& colorScale, const QString& title,
                                   const KbbStringFormat& format, bool discrete)
{
    _d->usable = isUsable(colorScale);
    if (!_d->usable)
        qWarning("Vg3ColorLegend::setColorScale: the scale of '%s' has no usable range, the legend is hidden",
                 qPrintable(title));
    _d->scale = colorScale;
    _d->title = title;
    *_d->format = format;
    _d->discrete = discrete && colorScale.isClassed();
    _rebuild();
}

bool Vg3ColorLegend::hasColorScale() const
{
    return _d->usable;
}

Vu::Position Vg3ColorLegend::getAlignment() const
{
    return Vu::Position(_d->alignment);
}

void Vg3ColorLegend::setAlignment(Vu::Position alignment)
{
    if (!Vu::isValidPosition(alignment)) {
        qWarning("Vg3ColorLegend::setAlignment: %d is not an alignment, %d is kept", int(alignment), _d->alignment);
        return;
    }
    _d->alignment = alignment;
    _rebuild();
}

bool Vg3ColorLegend::isVisible() const
{
    return _d->visible;
}

void Vg3ColorLegend::setVisible(bool visible)
{
    _d->visible = visible;
    _d->screen.setShown(isShown());
}

bool Vg3ColorLegend::isShown() const
{
    return _d->visible && _d->usable;
}

QColor Vg3ColorLegend::getBackgroundColor() const
{
    return _d->background;
}

QColor Vg3ColorLegend::getForegroundColor() const
{
    return _d->foreground;
}

void Vg3ColorLegend::setColors(const QColor& background, const QColor& foreground)
{
    if (!background.isValid() || !foreground.isValid()) {
        qWarning("Vg3ColorLegend::setColors: invalid colour, %s on %s is kept", qPrintable(_d->foreground.name()),
                 qPrintable(_d->background.name()));
        return;
    }
    _d->background = background;
    _d->foreground = foreground;
    _rebuild();
}

QVector<double> Vg3ColorLegend::getTickValues() const
{
    return _d->tickValues;
}

QStringList Vg3ColorLegend::getTickLabels() const
{
    return _d->tickLabels;
}

void Vg3ColorLegend::_rebuild()
{
    if (_d->usable)
        _d->computeTicks();
    else {
        _d->tickValues.clear();
        _d->tickLabels.clear();
    }
    _d->build();
    _d->screen.setShown(isShown());
}
