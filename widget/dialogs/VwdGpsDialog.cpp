#include "VwdGpsDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

namespace {

// Wide enough for projected coordinates in metres and for degrees alike.
const double kCoordinateLimit = 1e9;
const int kDecimals = 3;

} // namespace

class VwdGpsDialogPrivate
{
public:
    QCheckBox* enabled = nullptr;
    QCheckBox* visible = nullptr;
    QCheckBox* centered = nullptr;
    QDoubleSpinBox* x = nullptr;
    QDoubleSpinBox* y = nullptr;
    QPushButton* setPosition = nullptr;
    QPushButton* loseFix = nullptr;
    QLabel* status = nullptr;
    QPointF position;
    bool fix = false;
};

VwdGpsDialog::VwdGpsDialog(QWidget* parent)
    : QDialog(parent)
    , _d(std::make_unique<VwdGpsDialogPrivate>())
{
    setObjectName(QStringLiteral("GPS_DIALOG"));
    setWindowTitle(tr("GPS"));

    _d->enabled = new QCheckBox(tr("&Enable GPS"), this);
    _d->enabled->setObjectName(QStringLiteral("GPS_ENABLED"));
    _d->visible = new QCheckBox(tr("&Show on map"), this);
    _d->visible->setObjectName(QStringLiteral("GPS_VISIBLE"));
    _d->centered = new QCheckBox(tr("Ce&ntre map on position"), this);
    _d->centered->setObjectName(QStringLiteral("GPS_CENTERED"));

    auto makeCoordinate = [this](const char* name) {
        auto* box = new QDoubleSpinBox(this);
        box->setObjectName(QString::fromLatin1(name));
        box->setRange(-kCoordinateLimit, kCoordinateLimit);
        box->setDecimals(kDecimals);
        box->setAccelerated(true);
        box->setKeyboardTracking(false);
        return box;
    };
    _d->x = makeCoordinate("GPS_X");
    _d->y = makeCoordinate("GPS_Y");

    _d->setPosition = new QPushButton(tr("Set &position"), this);
    _d->setPosition->setObjectName(QStringLiteral("GPS_SET_POSITION"));
    // Enter in a coordinate field sends the position.
    _d->setPosition->setDefault(true);
    _d->loseFix = new QPushButton(tr("&Lose fix"), this);
    _d->loseFix->setObjectName(QStringLiteral("GPS_LOSE_FIX"));
    _d->loseFix->setAutoDefault(false);
    _d->status = new QLabel(this);
    _d->status->setObjectName(QStringLiteral("GPS_STATUS"));

    auto* positionBox = new QGroupBox(tr("Position"), this);
    auto* form = new QFormLayout;
    form->addRow(tr("&X:"), _d->x);
    form->addRow(tr("&Y:"), _d->y);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(_d->setPosition);
    buttons->addWidget(_d->loseFix);
    buttons->addStretch(1);
    auto* positionLayout = new QVBoxLayout(positionBox);
    positionLayout->addLayout(form);
    positionLayout->addLayout(buttons);
    positionLayout->addWidget(_d->status);

    auto* box = new QDialogButtonBox(QDialogButtonBox::Close, this);
    box->button(QDialogButtonBox::Close)->setAutoDefault(false);
    connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(_d->enabled);
    layout->addWidget(_d->visible);
    layout->addWidget(_d->centered);
    layout->addWidget(positionBox);
    layout->addWidget(box);

    setTabOrder(_d->enabled, _d->visible);
    setTabOrder(_d->visible, _d->centered);
    setTabOrder(_d->centered, _d->x);
    setTabOrder(_d->x, _d->y);
    setTabOrder(_d->y, _d->setPosition);
    setTabOrder(_d->setPosition, _d->loseFix);
    setTabOrder(_d->loseFix, box->button(QDialogButtonBox::Close));

    connect(_d->enabled, &QCheckBox::toggled, this, [this](bool on) {
        _updateState();
        Q_EMIT gpsEnabled(on);
    });
    connect(_d->visible, &QCheckBox::toggled, this, &VwdGpsDialog::gpsVisibleOnMap);
    connect(_d->centered, &QCheckBox::toggled, this, &VwdGpsDialog::gpsCenteredOnMap);
    connect(_d->setPosition, &QPushButton::clicked, this, [this] {
        // A value typed but not yet committed (no Enter, no focus change) counts too.
        _d->x->interpretText();
        _d->y->interpretText();
        setPosition(QPointF(_d->x->value(), _d->y->value()));
    });
    connect(_d->loseFix, &QPushButton::clicked, this, &VwdGpsDialog::loseFix);
    _updateState();
}

VwdGpsDialog::~VwdGpsDialog() = default;

bool VwdGpsDialog::isGpsEnabled() const { return _d->enabled->isChecked(); }
bool VwdGpsDialog::isVisibleOnMap() const { return _d->visible->isChecked(); }
bool VwdGpsDialog::isCenteredOnMap() const { return _d->centered->isChecked(); }
QPointF VwdGpsDialog::position() const { return _d->position; }
bool VwdGpsDialog::hasFix() const { return _d->fix; }

// The check boxes emit once through their toggled() signal, and only on a change.
void VwdGpsDialog::setGpsEnabled(bool enabled) { _d->enabled->setChecked(enabled); }
void VwdGpsDialog::setVisibleOnMap(bool visible) { _d->visible->setChecked(visible); }
void VwdGpsDialog::setCenteredOnMap(bool centered) { _d->centered->setChecked(centered); }

void VwdGpsDialog::setPosition(const QPointF& position)
{
    if (!std::isfinite(position.x()) || !std::isfinite(position.y()) || std::abs(position.x()) > kCoordinateLimit ||
        std::abs(position.y()) > kCoordinateLimit) {
        qWarning("VwdGpsDialog::setPosition: (%g, %g) is no position; it is ignored", position.x(), position.y());
        return;
    }
    _d->x->setValue(position.x());
    _d->y->setValue(position.y());
    // Sent even when unchanged: the same fix again tells the displays the GPS is alive.
    _d->position = QPointF(_d->x->value(), _d->y->value());
    _d->fix = true;
    _updateState();
    Q_EMIT gpsPositionChanged(_d->position, true);
}

void VwdGpsDialog::loseFix()
{
    if (!_d->fix)
        return;
    _d->fix = false;
    _updateState();
    Q_EMIT gpsPositionChanged(_d->position, false);
}

void VwdGpsDialog::_updateState()
{
    const bool on = _d->enabled->isChecked();
    for (QWidget* w : {static_cast<QWidget*>(_d->visible), static_cast<QWidget*>(_d->centered),
                       static_cast<QWidget*>(_d->x), static_cast<QWidget*>(_d->y),
                       static_cast<QWidget*>(_d->setPosition)})
        w->setEnabled(on);
    _d->loseFix->setEnabled(on && _d->fix);
    _d->status->setText(_d->fix ? tr("Fix at %1, %2")
                                      .arg(_d->position.x(), 0, 'f', kDecimals)
                                      .arg(_d->position.y(), 0, 'f', kDecimals)
                                : tr("No fix"));
}
