#include <Vg3Annotation.h>

#include <Vg3OpenInventor.h>
#include <Vg3ScreenOverlay.h>

#include <Inventor/elements/SoModelMatrixElement.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoFont.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoText2.h>

namespace {

// Pixels between the text and the window's edges.
constexpr float MARGIN = 8.0f;

} // namespace

class Vg3AnnotationPrivate
{
public:
    // The text's anchor is placed in pixels from the edge.
    void placeText(SoState* state, const SbVec2s& pixels)
    {
        const float sx = 2.0f / pixels[0];
        const float sy = 2.0f / pixels[1];
        const int lines = text->string.getNum();
        const float lineHeight = float(size) * text->spacing.getValue();
        float x = 0.0f;
        switch (position) {
        case Vg3Annotation::TOP_LEFT:
        case Vg3Annotation::BOTTOM_LEFT:
            x = -1.0f + MARGIN * sx;
            break;
        case Vg3Annotation::TOP_RIGHT:
        case Vg3Annotation::BOTTOM_RIGHT:
            x = 1.0f - MARGIN * sx;
            break;
        default:
            break;
        }
        const bool top = position <= Vg3Annotation::TOP_RIGHT;
        // The anchor is the first line's baseline; the lines go down from there.
        const float y = top ? 1.0f - (MARGIN + float(size)) * sy
                            : -1.0f + (MARGIN + 0.25f * float(size) + (lines - 1) * lineHeight) * sy;
        SoModelMatrixElement::translateBy(state, screen.getRoot(), SbVec3f(x, y, 0.0f));
    }

    Vg3ScreenOverlay screen{"annotation_root",
                            [this](SoState* state, const SbVec2s& pixels) { placeText(state, pixels); }};
    SoBaseColor* color = nullptr;
    SoFont* font = nullptr;
    SoText2* text = nullptr;
    QString string;
    Vg3Annotation::AnnotationPosition position = Vg3Annotation::TOP_LEFT;
    int size = 12;
    QColor qcolor = Qt::white;
    bool visible = true;
};

Vg3Annotation::Vg3Annotation(AnnotationPosition position)
    : _d(std::make_unique<Vg3AnnotationPrivate>())
{
    SoSeparator* content = _d->screen.getContent();
    _d->color = new SoBaseColor;
    content->addChild(_d->color);
    _d->font = new SoFont;
    _d->font->name = Vg3OpenInventor::getTextFontName();
    content->addChild(_d->font);
    _d->text = new SoText2;
    content->addChild(_d->text);

    if (position < TOP_LEFT || position > BOTTOM_RIGHT)
        qWarning("Vg3Annotation::Vg3Annotation: %d is not a position, TOP_LEFT is used", int(position));
    else
        _d->position = position;
    _update();
}

Vg3Annotation::~Vg3Annotation() = default;

SoSeparator* Vg3Annotation::getRoot() const
{
    return _d->screen.getRoot();
}
QString Vg3Annotation::getText() const
{
    return _d->string;
}

void Vg3Annotation::setText(const QString& text)
{
    _d->string = text;
    _update();
}

Vg3Annotation::AnnotationPosition Vg3Annotation::getPosition() const
{
    return _d->position;
}

void Vg3Annotation::setPosition(AnnotationPosition position)
{
    if (position < TOP_LEFT || position > BOTTOM_RIGHT) {
        qWarning("Vg3Annotation::setPosition: %d is not a position, the text stays where it is", int(position));
        return;
    }
    _d->position = position;
    _update();
}

int Vg3Annotation::getSize() const
{
    return _d->size;
}

void Vg3Annotation::setSize(int points)
{
    if (points < 1 || points > 200) {
        qWarning("Vg3Annotation::setSize: %d is not a font size (1 to 200 points), %d is kept", points, _d->size);
        return;
    }
    _d->size = points;
    _update();
}

QColor Vg3Annotation::getColor() const
{
    return _d->qcolor;
}

void Vg3Annotation::setColor(const QColor& color)
{
    if (!color.isValid()) {
        qWarning("Vg3Annotation::setColor: invalid colour, %s is kept", qPrintable(_d->qcolor.name()));
        return;
    }
    _d->qcolor = color;
    _update();
}

bool Vg3Annotation::isVisible() const
{
    return _d->visible;
}

void Vg3Annotation::setVisible(bool visible)
{
    _d->visible = visible;
    _update();
}

bool Vg3Annotation::isShown() const
{
    return _d->visible && !_d->string.isEmpty();
}

void Vg3Annotation::_update()
{
    const QStringList lines = _d->string.split(QLatin1Char('\n'));
    _d->text->string.setNum(lines.size());
    for (int i = 0; i < lines.size(); ++i)
        _d->text->string.set1Value(i, SbString(lines.at(i).toUtf8().constData()));
    switch (_d->position) {
    case TOP_LEFT:
    case BOTTOM_LEFT:
        _d->text->justification = SoText2::LEFT;
        break;
    case TOP_RIGHT:
    case BOTTOM_RIGHT:
        _d->text->justification = SoText2::RIGHT;
        break;
    default:
        _d->text->justification = SoText2::CENTER;
        break;
    }
    _d->font->size = float(_d->size);
    _d->color->rgb.setValue(float(_d->qcolor.redF()), float(_d->qcolor.greenF()), float(_d->qcolor.blueF()));
    _d->screen.setShown(isShown());
}
