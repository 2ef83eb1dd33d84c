#include "DataRow.h"
#include <VwdGpsDialog.h>

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QtTest>
#include <cmath>
#include <limits>
#include <memory>

// The column types of the tables below.
using CheckBoxesSendTheirSignalRow = Row<QByteArray, int, int>;

class TestVwdGpsDialog : public QObject
{
    Q_OBJECT

    std::unique_ptr<VwdGpsDialog> makeDialog(bool gpsOn)
    {
        auto dialog = std::make_unique<VwdGpsDialog>();
        dialog->setGpsEnabled(gpsOn);
        dialog->show();
        dialog->activateWindow();
        return dialog;
    }

    template <class T>
    static T* child(const VwdGpsDialog& dialog, const char* name)
    {
        return dialog.findChild<T*>(QString::fromLatin1(name));
    }

    static void typeInto(QDoubleSpinBox* box, const QString& text)
    {
        box->setFocus();
        QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(box, text);
    }

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void checkBoxesSendTheirSignal_data()
    {
        // mnemonic: 0: a mouse click
        // signal: 0 enabled, 1 visible, 2 centred
        CheckBoxesSendTheirSignalRow::addColumns(); // box, mnemonic, signal
        QTest::newRow("enable by click") << QByteArray("GPS_ENABLED") << 0 << 0;
        QTest::newRow("enable by Alt+E") << QByteArray("GPS_ENABLED") << int(Qt::Key_E) << 0;
        QTest::newRow("show by Alt+S") << QByteArray("GPS_VISIBLE") << int(Qt::Key_S) << 1;
        QTest::newRow("centre by Alt+N") << QByteArray("GPS_CENTERED") << int(Qt::Key_N) << 2;
    }
    void checkBoxesSendTheirSignal()
    {
        const auto [box, mnemonic, signal] = CheckBoxesSendTheirSignalRow::fetch();
        auto dialog = makeDialog(signal != 0); // the other boxes need the GPS on
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
        // Every signal the dialog sends, as "name:argument".
        QStringList sent;
        connect(dialog.get(), &VwdGpsDialog::gpsEnabled, [&](bool on) { sent << QStringLiteral("0:%1").arg(on); });
        connect(dialog.get(), &VwdGpsDialog::gpsVisibleOnMap, [&](bool on) { sent << QStringLiteral("1:%1").arg(on); });
        connect(dialog.get(), &VwdGpsDialog::gpsCenteredOnMap, [&](bool on) { sent << QStringLiteral("2:%1").arg(on); });
        connect(dialog.get(), &VwdGpsDialog::gpsPositionChanged, [&] { sent << QStringLiteral("position"); });
        auto* check = child<QCheckBox>(*dialog, box.constData());
        for (int click = 0; click < 2; ++click) {
            if (mnemonic)
                QTest::keyClick(dialog.get(), Qt::Key(mnemonic), Qt::AltModifier);
            else
                QTest::mouseClick(check, Qt::LeftButton, Qt::NoModifier, QPoint(8, check->height() / 2));
            QTRY_COMPARE(sent.size(), click + 1); // a mnemonic clicks after a short animation
        }
        QCOMPARE(sent, QStringList({QStringLiteral("%1:1").arg(signal), QStringLiteral("%1:0").arg(signal)}));
    }

    void gpsOffDisablesTheOtherControls()
    {
        auto dialog = makeDialog(false);
        QSignalSpy visible(dialog.get(), &VwdGpsDialog::gpsVisibleOnMap);
        QSignalSpy position(dialog.get(), &VwdGpsDialog::gpsPositionChanged);
        QTest::mouseClick(child<QCheckBox>(*dialog, "GPS_VISIBLE"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
        QTest::mouseClick(child<QPushButton>(*dialog, "GPS_SET_POSITION"), Qt::LeftButton);
        QCOMPARE(visible.count() + position.count(), 0);
        QVERIFY(!child<QDoubleSpinBox>(*dialog, "GPS_X")->isEnabled());

        QTest::mouseClick(child<QCheckBox>(*dialog, "GPS_ENABLED"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
        QVERIFY(child<QDoubleSpinBox>(*dialog, "GPS_X")->isEnabled());
        QVERIFY(!child<QPushButton>(*dialog, "GPS_LOSE_FIX")->isEnabled()); // no fix yet
    }

    void typedPositionIsSentAndLost_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("Set position button") << "button";
        QTest::newRow("Enter in the y field") << "enter";
        QTest::newRow("Alt+P") << "mnemonic";
    }
    void typedPositionIsSentAndLost()
    {
        QFETCH(QString, how);
        auto dialog = makeDialog(true);
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
        QSignalSpy position(dialog.get(), &VwdGpsDialog::gpsPositionChanged);
        typeInto(child<QDoubleSpinBox>(*dialog, "GPS_X"), QStringLiteral("651234.5"));
        typeInto(child<QDoubleSpinBox>(*dialog, "GPS_Y"), QStringLiteral("-42.25"));
        if (how == QLatin1String("button"))
            QTest::mouseClick(child<QPushButton>(*dialog, "GPS_SET_POSITION"), Qt::LeftButton);
        else if (how == QLatin1String("enter"))
            QTest::keyClick(child<QDoubleSpinBox>(*dialog, "GPS_Y"), Qt::Key_Return);
        else
            QTest::keyClick(dialog.get(), Qt::Key_P, Qt::AltModifier);

        QTRY_COMPARE(position.count(), 1);
        QCOMPARE(position.last(), (QList<QVariant>{QPointF(651234.5, -42.25), true}));
        QVERIFY(dialog->isVisible()); // Enter sends the position, it does not close the dialog
        QVERIFY(child<QLabel>(*dialog, "GPS_STATUS")->text().contains(QStringLiteral("651234.500")));

        auto* lose = child<QPushButton>(*dialog, "GPS_LOSE_FIX");
        QTest::mouseClick(lose, Qt::LeftButton);
        QCOMPARE(position.last(), (QList<QVariant>{QPointF(651234.5, -42.25), false}));
        QVERIFY(!lose->isEnabled() && !dialog->hasFix());
        dialog->loseFix(); // no fix to lose: nothing sent
        QCOMPARE(position.count(), 2);
    }

    void tabVisitsTheControlsInOrder()
    {
        auto dialog = makeDialog(true);
        dialog->setPosition(QPointF(1, 2)); // so that "Lose fix" takes the focus too
        QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
        child<QCheckBox>(*dialog, "GPS_ENABLED")->setFocus();
        QStringList visited;
        for (int i = 0; i < 6; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QWidget* w = QApplication::focusWidget();
            while (w && !w->objectName().startsWith(QLatin1String("GPS_")))
                w = w->parentWidget();
            visited << (w ? w->objectName() : QStringLiteral("?"));
        }
        QCOMPARE(visited, (QStringList{"GPS_VISIBLE", "GPS_CENTERED", "GPS_X", "GPS_Y", "GPS_SET_POSITION", "GPS_LOSE_FIX"}));
    }

    void refusesImpossiblePositions_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::newRow("not a number") << QPointF(std::nan(""), 0);
        QTest::newRow("infinite") << QPointF(0, std::numeric_limits<double>::infinity());
        QTest::newRow("beyond the coordinate range") << QPointF(1e12, 0);
    }
    void refusesImpossiblePositions()
    {
        QFETCH(QPointF, point);
        auto dialog = makeDialog(true);
        dialog->setPosition(QPointF(10, 20));
        QSignalSpy position(dialog.get(), &VwdGpsDialog::gpsPositionChanged);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^VwdGpsDialog::setPosition: ")));
        dialog->setPosition(point);
        QCOMPARE(position.count(), 0);
        QVERIFY(dialog->hasFix() && dialog->position() == QPointF(10, 20));
    }
};

QTEST_MAIN(TestVwdGpsDialog)
#include "tst_vwdgpsdialog.moc"
