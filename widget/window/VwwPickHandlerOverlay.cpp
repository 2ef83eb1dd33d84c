#include "VwwPickHandlerOverlay.h"

#include <Vg3Annotation.h>

#include <Inventor/nodes/SoSeparator.h>

VwwPickHandlerOverlay::VwwPickHandlerOverlay()
    : _annotation(new Vg3Annotation(Vg3Annotation::TOP_LEFT))
{
    _annotation->getRoot()->setName("pick_handler_help");
}

VwwPickHandlerOverlay::~VwwPickHandlerOverlay() = default;

SoNode* VwwPickHandlerOverlay::getRoot() const
{
    return _annotation->getRoot();
}

void VwwPickHandlerOverlay::showHelp(const QString& title, const QString& text)
{
    QStringList lines;
    if (!title.isEmpty())
        lines << title;
    if (!text.isEmpty())
        lines << text.trimmed();
    _annotation->setText(lines.join(QLatin1Char('\n')));
}

QString VwwPickHandlerOverlay::getShownText() const
{
    return _annotation->isShown() ? _annotation->getText() : QString();
}
