#pragma once
// A text drawn over a 3D scene in one of six places along the top or bottom edge (a view's
// title, a text overlay): its own camera, unlit, a fixed size in pixels whatever the window's
// size, drawn after the scene so that nothing hides it. Hidden while the text is empty.

#include <velmora_graphic_export.h>

#include <QColor>
#include <QString>
#include <memory>

class SoSeparator;

class VELMORA_GRAPHIC_EXPORT Vg3Annotation
{
public:
    enum AnnotationPosition { TOP_LEFT, TOP_CENTER, TOP_RIGHT, BOTTOM_LEFT, BOTTOM_CENTER, BOTTOM_RIGHT };

    explicit Vg3Annotation(AnnotationPosition position = TOP_LEFT);
    ~Vg3Annotation();

    // Referenced by the annotation for its whole life; hand it to a view as an overlay.
    SoSeparator* getRoot() const;

    // Lines split at '\n'.
    QString getText() const;
    void setText(const QString& text);
    AnnotationPosition getPosition() const;
    // A value outside the enumeration is refused with a warning.
    void setPosition(AnnotationPosition position);
    // Font size in points, 1 to 200; others are refused with a warning.
    int getSize() const;
    void setSize(int points);
    QColor getColor() const;
    // An invalid colour is refused with a warning.
    void setColor(const QColor& color);
    bool isVisible() const;
    void setVisible(bool visible);
    // Visible and with some text: what the user sees.
    bool isShown() const;

private:
    Vg3Annotation(const Vg3Annotation&) = delete;
    Vg3Annotation& operator=(const Vg3Annotation&) = delete;
    void _update();

    std::unique_ptr<class Vg3AnnotationPrivate> const _d;
};
