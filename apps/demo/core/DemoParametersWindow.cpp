#include "DemoParametersWindow.h"

#include <KbbGlobal.h>
#include <KbbUserStringFormats.h>
#include <VpaItemDef.h>
#include <VwaComboBox.h>
#include <VwaDouble.h>
#include <VwaInteger.h>
#include <VwhStylesheet.h>

#include <QAction>
#include <QGridLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QSplitter>

namespace {

enum Row { LENGTH, VARIANCE, AZIMUTH, COUNT, METHOD, VARIABLE };
enum Column { NORMAL, EMBEDDED, READ_ONLY, AUTOMATIC, RESET, LOCKED };

QString rowTitle(int row)
{
    switch (row) {
    case LENGTH: return DemoParametersWindow::tr("Range (0 to 100)");
    case VARIANCE: return DemoParametersWindow::tr("Nugget (may be undefined)");
    case AZIMUTH: return DemoParametersWindow::tr("Azimuth (wraps, step 5)");
    case COUNT: return DemoParametersWindow::tr("Samples (1 to 500)");
    case METHOD: return DemoParametersWindow::tr("Method");
    case VARIABLE: return DemoParametersWindow::tr("Variable (type a new one)");
    }
    return {};
}

QString columnTitle(int column)
{
    switch (column) {
    case NORMAL: return DemoParametersWindow::tr("Normal");
    case EMBEDDED: return DemoParametersWindow::tr("Embedded");
    case READ_ONLY: return DemoParametersWindow::tr("Read-only");
    case AUTOMATIC: return DemoParametersWindow::tr("Automatic (toggle)");
    case RESET: return DemoParametersWindow::tr("Automatic (reset)");
    case LOCKED: return DemoParametersWindow::tr("Locked");
    }
    return {};
}

VwaDouble* makeDouble(int row)
{
    auto* e = new VwaDouble;
    switch (row) {
    case LENGTH:
        e->setDisplayFormat(KbbUserStringFormats::getStringFormat(KbuEUnitClass::LENGTH));
        e->setMinimum(0.0);
        e->setMaximum(100.0);
        e->setValue(12.5);
        e->setAutoValue(25.0);
        break;
    case VARIANCE:
        // A variance of lengths: the square of the length unit.
        e->setDisplayFormat(KbbUserStringFormats::getStringFormat(KbuEUnitClass::LENGTH), 2);
        e->setMinimum(0.0);
        e->setMaximum(1.0e6);
        e->setUndefineEnabled(true);
        e->setValue(KbbGlobal::D_FFFF);
        e->setAutoValue(0.5);
        break;
    case AZIMUTH:
        e->setDisplayFormat(KbbUserStringFormats::getStringFormat(KbuEUnitClass::ANGLE));
        e->setMinimum(0.0);
        e->setMaximum(355.0);
        e->setWrapping(true);
        e->setStep(5.0);
        e->setValue(45.0);
        e->setAutoValue(90.0);
        break;
    }
    e->setMinimumDefined(true);
    e->setMaximumDefined(true);
    return e;
}

VwaInteger* makeInteger()
{
    auto* e = new VwaInteger;
    e->setSuffix(DemoParametersWindow::tr(" samples"));
    // The automatic value first: a bound that moves it switches the automatic button off.
    e->setAutoValue(8);
    e->setValue(12);
    e->setMinimum(1);
    e->setMaximum(500);
    e->setMinimumDefined(true);
    e->setMaximumDefined(true);
    return e;
}

VwaComboBox* makeCombo(int row)
{
    auto* e = new VwaComboBox;
    if (row == METHOD) {
        e->addItem(VpaItemDef(1, DemoParametersWindow::tr("Ordinary kriging")));
        e->addItem(VpaItemDef(2, DemoParametersWindow::tr("Simple kriging")));
        e->addItem(VpaItemDef(3, DemoParametersWindow::tr("Universal kriging")));
        e->addItem(VpaItemDef(4, DemoParametersWindow::tr("Cokriging"), false,
                              DemoParametersWindow::tr("Needs a secondary variable")));
        e->addSeparator();
        e->addItem(VpaItemDef(5, DemoParametersWindow::tr("Inverse distance")));
        e->setCurrentKey(1);
        e->setAutoValue(2);
    } else {
        e->addItems({DemoParametersWindow::tr("Porosity"), DemoParametersWindow::tr("Thickness"),
                     DemoParametersWindow::tr("Net to gross")});
        e->setEditable(true);
        e->setNewItemAccepted(true);
        e->setCurrentIndex(0);
        e->setAutoValue(DemoParametersWindow::tr("Thickness"));
    }
    return e;
}

} // namespace

DemoParametersWindow::DemoParametersWindow(QWidget* parent)
    : VwwAWindow(VwwEWindowType::TASK, tr("Parameters"), Vua::Resource::HelpId(QStringLiteral("parameters")), DOCKED,
                 QSize(1100, 600), Vua::Resource::iconSpreadsheet(), parent)
{
    auto* form = new QWidget;
    form->setObjectName(QStringLiteral("parametersForm"));
    {
        using namespace Vwh::Stylesheet;
        Stream sheet;
        sheet.add(QStringLiteral("QLabel#columnHeader"), {fgColor(blueHv), QStringLiteral("font-weight: bold")});
        sheet.add(QStringLiteral("QLabel#rowHeader"), {fgColor(grayHv)});
        form->setStyleSheet(sheet.getStyleSheet());
    }
    auto* grid = new QGridLayout(form);
    for (int c = 0; c < columns().size(); ++c) {
        auto* header = new QLabel(columnTitle(c));
        header->setObjectName(QStringLiteral("columnHeader"));
        grid->addWidget(header, 0, c + 1);
    }
    for (int r = 0; r < rows().size(); ++r) {
        auto* header = new QLabel(rowTitle(r));
        header->setObjectName(QStringLiteral("rowHeader"));
        grid->addWidget(header, r + 1, 0);
        for (int c = 0; c < columns().size(); ++c) {
            VwaAWidget* e = _makeEditor(r, c);
            if (c == NORMAL)
                header->setBuddy(e);
            grid->addWidget(e, r + 1, c + 1);
        }
    }
    grid->setRowStretch(rows().size() + 1, 1);

    auto* scroll = new QScrollArea;
    scroll->setWidget(form);
    scroll->setWidgetResizable(true);

    _logView = new QPlainTextEdit;
    _logView->setObjectName(QStringLiteral("signalLog"));
    _logView->setReadOnly(true);
    _logView->setPlaceholderText(tr("The signals the editors send are listed here."));
    _logView->setMaximumBlockCount(500);

    auto* splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(scroll);
    splitter->addWidget(_logView);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    setMainView(splitter);

    auto* bounds = new QAction(tr("Bounds"), this);
    bounds->setToolTip(tr("Keep the numbers within their bounds"));
    bounds->setCheckable(true);
    bounds->setChecked(true);
    connect(bounds, &QAction::toggled, this, &DemoParametersWindow::_setBoundsDefined);
    auto* undefined = new QAction(tr("Undefined nugget"), this);
    undefined->setToolTip(tr("Let the nugget be left empty"));
    undefined->setCheckable(true);
    undefined->setChecked(true);
    connect(undefined, &QAction::toggled, this, &DemoParametersWindow::_setUndefineEnabled);
    auto* clear = new QAction(tr("Clear Log"), this);
    connect(clear, &QAction::triggered, _logView, &QPlainTextEdit::clear);
    addToolbarActions(MAIN_TOOLBAR, {bounds, undefined, clear});
    addToolbarSeparator(MAIN_TOOLBAR);
    addToolbarAction(MAIN_TOOLBAR, Vwh::Stylesheet::createStyleSheetAction(form));
}

DemoParametersWindow::~DemoParametersWindow() = default;

QString DemoParametersWindow::classId()
{
    return QStringLiteral("Parameters");
}

QString DemoParametersWindow::getClassID() const
{
    return classId();
}

const QStringList& DemoParametersWindow::rows()
{
    static const QStringList names{QStringLiteral("length"), QStringLiteral("variance"), QStringLiteral("azimuth"),
                                   QStringLiteral("count"),  QStringLiteral("method"),   QStringLiteral("variable")};
    return names;
}

const QStringList& DemoParametersWindow::columns()
{
    static const QStringList names{QStringLiteral("normal"),    QStringLiteral("embedded"), QStringLiteral("readOnly"),
                                   QStringLiteral("automatic"), QStringLiteral("reset"),    QStringLiteral("locked")};
    return names;
}

VwaAWidget* DemoParametersWindow::editor(const QString& row, const QString& column) const
{
    return findChild<VwaAWidget*>(row + QLatin1Char('.') + column);
}

QPlainTextEdit* DemoParametersWindow::log() const
{
    return _logView;
}

VwaAWidget* DemoParametersWindow::_makeEditor(int row, int column)
{
    VwaAWidget* e = nullptr;
    if (row == COUNT)
        e = makeInteger();
    else if (row == METHOD || row == VARIABLE)
        e = makeCombo(row);
    else
        e = makeDouble(row);
    e->setObjectName(rows().at(row) + QLatin1Char('.') + columns().at(column));
    if (auto* d = qobject_cast<VwaDouble*>(e))
        _doubles << d;

    switch (column) {
    case EMBEDDED:
        e->setWidgetStyle(VwaAWidget::EMBEDDED);
        break;
    case READ_ONLY:
        e->setReadOnly(true);
        break;
    case AUTOMATIC:
        e->setAutomaticMode(VwaAWidget::AUTO_SET_STATE);
        e->setAutomatic(true);
        break;
    case RESET:
        e->setAutomaticMode(VwaAWidget::AUTO_SET_VALUE);
        break;
    case LOCKED:
        e->setLockValueAvailable(true);
        e->setValueLocked(true);
        break;
    }
    _watch(e);
    return e;
}

void DemoParametersWindow::_watch(VwaAWidget* e)
{
    connect(e, &VwaAWidget::automaticToggled, this,
            [this, e](bool on) { _log(e, tr("automaticToggled(%1)").arg(on ? tr("true") : tr("false"))); });
    connect(e, &VwaAWidget::lockValueToggled, this,
            [this, e](bool on) { _log(e, tr("lockValueToggled(%1)").arg(on ? tr("true") : tr("false"))); });
    if (auto* d = qobject_cast<VwaDouble*>(e)) {
        connect(d, &VwaDouble::valueChanged, this, [this, d](double v) {
            _log(d, tr("valueChanged(%1) shown as \"%2\"").arg(v == KbbGlobal::D_FFFF ? tr("undefined") : QString::number(v, 'g', 17), d->text()));
        });
        connect(d, &VwaDouble::valueChangedByEnter, this, [this, d] { _log(d, tr("valueChangedByEnter()")); });
    } else if (auto* i = qobject_cast<VwaInteger*>(e)) {
        connect(i, &VwaInteger::valueChanged, this, [this, i](int v) {
            _log(i, tr("valueChanged(%1) shown as \"%2\"").arg(v == KbbGlobal::I_FFFF ? tr("undefined") : QString::number(v), i->text()));
        });
        connect(i, &VwaInteger::valueChangedByEnter, this, [this, i] { _log(i, tr("valueChangedByEnter()")); });
    } else if (auto* c = qobject_cast<VwaComboBox*>(e)) {
        connect(c, &VwaComboBox::currentIndexChanged, this,
                [this, c](int index) { _log(c, tr("currentIndexChanged(%1)").arg(index)); });
        connect(c, &VwaComboBox::currentKeyChanged, this, [this, c](const QVariant& key) {
            _log(c, tr("currentKeyChanged(%1) \"%2\"").arg(key.toString(), c->getCurrentLabel()));
        });
    }
}

void DemoParametersWindow::_log(const VwaAWidget* e, const QString& what)
{
    _logView->appendPlainText(e->objectName() + QStringLiteral(": ") + what);
}

void DemoParametersWindow::_setBoundsDefined(bool defined)
{
    for (VwaDouble* d : qAsConst(_doubles)) {
        d->setMinimumDefined(defined);
        d->setMaximumDefined(defined);
    }
    for (VwaInteger* i : findChildren<VwaInteger*>()) {
        i->setMinimumDefined(defined);
        i->setMaximumDefined(defined);
    }
}

void DemoParametersWindow::_setUndefineEnabled(bool enabled)
{
    for (VwaDouble* d : qAsConst(_doubles))
        if (d->objectName().startsWith(rows().at(VARIANCE)))
            d->setUndefineEnabled(enabled);
}
