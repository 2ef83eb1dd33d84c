#include "VwhStyleSheetDialog.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

class VwhStyleSheetDialogPrivate
{
public:
    QPointer<QWidget> target;
    QString kept;
    QPlainTextEdit* currentEdit = nullptr;
    QPlainTextEdit* keptEdit = nullptr;
};

namespace {

QPlainTextEdit* makeEditor(const QString& objectName, const QString& text, bool readOnly)
{
    auto* edit = new QPlainTextEdit;
    edit->setObjectName(objectName);
    edit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit->setPlainText(text);
    edit->setReadOnly(readOnly);
    return edit;
}

QWidget* titled(const QString& title, QWidget* content)
{
    auto* box = new QWidget;
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(title));
    layout->addWidget(content);
    return box;
}

} // namespace

VwhStyleSheetDialog::VwhStyleSheetDialog(QWidget* target, const QString& keptStyleSheet, QWidget* parent)
    : QDialog(parent)
    , _d(new VwhStyleSheetDialogPrivate)
{
    _d->target = target;
    _d->kept = keptStyleSheet;

    const QString name = target ? QStringLiteral("%1 \"%2\"")
                                      .arg(QString::fromLatin1(target->metaObject()->className()), target->objectName())
                                : QString();
    setWindowTitle(tr("Style sheet of %1").arg(name));

    _d->currentEdit = makeEditor(QStringLiteral("currentEdit"), target ? target->styleSheet() : QString(), false);
    _d->keptEdit = makeEditor(QStringLiteral("keptEdit"), keptStyleSheet, true);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(titled(tr("Current (editable)"), _d->currentEdit));
    splitter->addWidget(titled(tr("Kept"), _d->keptEdit));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Apply | QDialogButtonBox::RestoreDefaults
                                         | QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::RestoreDefaults)->setText(tr("Restore kept"));
    connect(buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this, &VwhStyleSheetDialog::apply);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
            &VwhStyleSheetDialog::restore);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return), this);
    connect(shortcut, &QShortcut::activated, this, &VwhStyleSheetDialog::apply);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(splitter);
    layout->addWidget(buttons);
    resize(800, 500);

    // The dialog has no parent of the widget's (it would inherit the sheet under edit),
    // so it follows the widget's life by hand.
    if (target)
        connect(target, &QObject::destroyed, this, &QObject::deleteLater);
}

VwhStyleSheetDialog::~VwhStyleSheetDialog() = default;

QWidget* VwhStyleSheetDialog::target() const { return _d->target; }

QString VwhStyleSheetDialog::editedStyleSheet() const { return _d->currentEdit->toPlainText(); }

const QString& VwhStyleSheetDialog::keptStyleSheet() const { return _d->kept; }

void VwhStyleSheetDialog::setEditedStyleSheet(const QString& styleSheet)
{
    _d->currentEdit->setPlainText(styleSheet);
}

void VwhStyleSheetDialog::apply()
{
    if (_d->target)
        _d->target->setStyleSheet(editedStyleSheet());
}

void VwhStyleSheetDialog::restore()
{
    _d->currentEdit->setPlainText(_d->kept);
    if (_d->target)
        _d->target->setStyleSheet(_d->kept);
}
