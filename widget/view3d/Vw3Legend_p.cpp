#include "Vw3Legend_p.h"

#include <SoRef.h>
#include <Vg3ColorLegend.h>
#include <VuPosition.h>

#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>

class Vw3LegendPrivate
{
public:
    std::unique_ptr<Vg3ColorLegend> legend;
    SoRef<SoSeparator> root;
    SoSwitch* visibility = nullptr;
    QString title;
    bool available = false;
    bool enabled = true;
};

Vw3Legend_p::Vw3Legend_p(const QColor& background, const QColor& foreground, int alignment)
    : _d(new Vw3LegendPrivate)
{
    if (!Vu::isValidPosition(alignment)) {
        qWarning("Vw3Legend_p::Vw3Legend_p: %d is not a corner; the lower right one is used", alignment);
        alignment = Vu::RIGHT | Vu::BOTTOM;
    }
    _d->legend.reset(new Vg3ColorLegend(background, foreground, Vu::Position(alignment)));
    _d->root = new SoSeparator;
    _d->root->setName("vw3legend_root");
    _d->visibility = new SoSwitch;
    _d->visibility->setName("vw3legend_switch");
    _d->visibility->addChild(_d->legend->getRoot());
    _d->root->addChild(_d->visibility);
    _updateSwitch();
}

Vw3Legend_p::~Vw3Legend_p() = default;

SoSeparator* Vw3Legend_p::getRoot() const { return _d->root; }
Vg3ColorLegend* Vw3Legend_p::getColorLegend() const { return _d->legend.get(); }

void Vw3Legend_p::setLegend(const VugColorScale& scale, const QString& title, const KbbStringFormat& format,
                            bool discrete)
{
    _d->legend->setColorScale(scale, title, format, discrete);
    _d->title = title;
    _d->available = _d->legend->hasColorScale();
    _updateSwitch();
}

const QString& Vw3Legend_p::getTitle() const { return _d->title; }

void Vw3Legend_p::invalidate()
{
    _d->available = false;
    _d->title.clear();
    _updateSwitch();
}

void Vw3Legend_p::setColors(const QColor& background, const QColor& foreground)
{
    _d->legend->setColors(background, foreground);
}

void Vw3Legend_p::setAlignment(int alignment)
{
    if (!Vu::isValidPosition(alignment)) {
        qWarning("Vw3Legend_p::setAlignment: %d is not one horizontal and one vertical position", alignment);
        return;
    }
    _d->legend->setAlignment(Vu::Position(alignment));
}

int Vw3Legend_p::getAlignment() const { return int(_d->legend->getAlignment()); }

void Vw3Legend_p::setAvailable(bool available)
{
    // Nothing to show without a usable scale.
    _d->available = available && _d->legend->hasColorScale();
    _updateSwitch();
}

bool Vw3Legend_p::isAvailable() const { return _d->available; }

void Vw3Legend_p::setEnabled(bool enabled)
{
    _d->enabled = enabled;
    _updateSwitch();
}

bool Vw3Legend_p::isEnabled() const { return _d->enabled; }
bool Vw3Legend_p::isShown() const { return _d->available && _d->enabled; }

void Vw3Legend_p::_updateSwitch()
{
    const int which = isShown() ? 0 : SO_SWITCH_NONE;
    if (_d->visibility->whichChild.getValue() != which)
        _d->visibility->whichChild = which;
    _d->legend->setVisible(isShown());
}
