// The 3D-view and graphic preferences as their observers and readers see them: each
// observer hears about its own group only, and stored values that make no sense give the
// default with a warning naming the key.

#include <VuPosition.h>
#include <VupPreferenceRegistry.h>
#include <VupPreferences3DViews.h>
#include <VupPreferencesGraphic.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>

#include "LowerTestSupport.h"

namespace {

class Recorder : public VuoIObserver<VupPreferenceModif>
{
public:
    void update(const VupPreferenceModif& modif) override { keys << modif.getGroup() + QLatin1Char('/') + modif.getKey(); }
    void destroyed(const VuoAObservable<VupPreferenceModif>*) override {}
    QStringList keys;
};

using Getter = std::function<QVariant()>;

} // namespace

Q_DECLARE_METATYPE(Getter)

// The column types of the tables below.
using StoredValuesAreReadOrDefaultedRow = Row<QString, QString, QVariant, Getter, QVariant, bool>;

class TestPreferences3D : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _dir = std::make_unique<QTemporaryDir>();
        QVERIFY(_dir->isValid());
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir->filePath(QStringLiteral("preferences.ini")));
    }

    // Each observer hears its own group only.
    void settersReachObserversOfTheirGroup()
    {
        Recorder views, graphic;
        VupPreferences3DViews::getInstance()->addObserver(&views);
        VupPreferencesGraphic::getInstance()->addObserver(&graphic);
        VupPreferences3DViews::setValue(QStringLiteral("mouseWheelZoomDirection"), true);
        VupPreferencesGraphic::setValue(QStringLiteral("zScale"), 2.5);
        // Other groups, also one whose name starts alike, reach neither.
        VupPreferenceRegistry::getInstance()->setValue(QStringLiteral("map"), QStringLiteral("axesVisible"), 3);
        VupPreferenceRegistry::getInstance()->setValue(QStringLiteral("3dviewsOld"), QStringLiteral("perspective"), 3);
        VupPreferenceRegistry::getInstance()->remove(VupPreferences3DViews::GROUP,
                                                     QStringLiteral("mouseWheelZoomDirection"));
        VupPreferences3DViews::getInstance()->removeObserver(&views);
        VupPreferencesGraphic::getInstance()->removeObserver(&graphic);
        QCOMPARE(views.keys, (QStringList{"3dviews/mouseWheelZoomDirection", "3dviews/mouseWheelZoomDirection"}));
        QCOMPARE(graphic.keys, QStringList{"graphic/zScale"});
        // A removed observer hears nothing more.
        VupPreferences3DViews::setValue(QStringLiteral("perspective"), false);
        QCOMPARE(views.keys.size(), 2);
    }

    void storedValuesAreReadOrDefaulted_data()
    {
        StoredValuesAreReadOrDefaultedRow::addColumns(); // group, key, stored, getter, expected, warns

        const Getter wheel = [] { return QVariant(VupPreferences3DViews::getMouseWheelZoomDirection()); };
        const Getter background = [] { return QVariant(VupPreferences3DViews::getBackgroundColor().name()); };
        const Getter alignment = [] { return QVariant(VupPreferences3DViews::getLegendAlignment()); };
        const Getter seek = [] { return QVariant(VupPreferences3DViews::getSeekDuration()); };
        const Getter perspective = [] { return QVariant(VupPreferences3DViews::isPerspective()); };
        const Getter pointSize = [] { return QVariant(double(VupPreferencesGraphic::getPointSize())); };
        const Getter zScale = [] { return QVariant(double(VupPreferencesGraphic::getZScale())); };
        const Getter zAuto = [] { return QVariant(VupPreferencesGraphic::isZScaleAutomatic()); };
        const Getter transparency = [] { return QVariant(double(VupPreferencesGraphic::getSurfaceTransparency())); };
        const Getter colorScale = [] { return QVariant(VupPreferencesGraphic::getColorScale()); };
        const QString v = QStringLiteral("3dviews");
        const QString g = QStringLiteral("graphic");

        QTest::newRow("wheel inverted") << v << "mouseWheelZoomDirection" << QVariant("true") << wheel << QVariant(true) << false;
        QTest::newRow("wheel not a switch") << v << "mouseWheelZoomDirection" << QVariant("sideways") << wheel << QVariant(false) << true;
        QTest::newRow("background by name") << v << "backgroundColor" << QVariant("#102030") << background << QVariant("#102030") << false;
        QTest::newRow("background not a colour") << v << "backgroundColor" << QVariant("dusk") << background << QVariant("#1e2329") << true;
        QTest::newRow("legend top left") << v << "legendAlignment" << QVariant(Vu::TOP | Vu::LEFT) << alignment << QVariant(33) << false;
        QTest::newRow("legend left and right") << v << "legendAlignment" << QVariant(Vu::LEFT | Vu::RIGHT | Vu::TOP) << alignment << QVariant(12) << true;
        QTest::newRow("legend unknown bit") << v << "legendAlignment" << QVariant(0x4c) << alignment << QVariant(12) << true;
        QTest::newRow("seek of two seconds") << v << "seekDuration" << QVariant("2") << seek << QVariant(2.0) << false;
        QTest::newRow("seek negative") << v << "seekDuration" << QVariant("-1") << seek << QVariant(0.5) << true;
        QTest::newRow("orthographic") << v << "perspective" << QVariant("false") << perspective << QVariant(false) << false;
        QTest::newRow("point size not a number") << g << "pointSize" << QVariant("large") << pointSize << QVariant(4.0) << true;
        QTest::newRow("z scale nan") << g << "zScale" << QVariant("nan") << zScale << QVariant(1.0) << true;
        QTest::newRow("z scale automatic") << g << "zScaleAutomatic" << QVariant("1") << zAuto << QVariant(true) << false;
        QTest::newRow("transparency above one") << g << "surfaceTransparency" << QVariant("1.5") << transparency << QVariant(0.0) << true;
        QTest::newRow("colour scale named") << g << "colorScale" << QVariant("viridis") << colorScale << QVariant("viridis") << false;
        QTest::newRow("colour scale blank") << g << "colorScale" << QVariant("  ") << colorScale << QVariant("rainbow") << true;
    }
    void storedValuesAreReadOrDefaulted()
    {
        const auto [group, key, stored, getter, expected, warns] = StoredValuesAreReadOrDefaultedRow::fetch();
        VupPreferenceRegistry::getInstance()->setValue(group, key, stored);
        if (warns)
            expectWarning(QRegularExpression::escape(group + QLatin1Char('/') + key));
        QCOMPARE(getter(), expected);
    }

    // Each test has its own storage file (init), so what an earlier one stored (an
    // orthographic view) is not read here: the defaults show, a perspective view with light
    // writing on a dark background and the legend in the bottom right corner.
    void defaultsWhileNothingIsStored()
    {
        QVERIFY(VupPreferences3DViews::isPerspective());
        QVERIFY(VupPreferences3DViews::getBackgroundColor().lightness() < 64);
        QVERIFY(VupPreferences3DViews::getForegroundColor().lightness() > 192);
        QCOMPARE(VupPreferences3DViews::getLegendAlignment(), int(Vu::RIGHT | Vu::BOTTOM));
    }

private:
    std::unique_ptr<QTemporaryDir> _dir;
};

QTEST_GUILESS_MAIN(TestPreferences3D)
#include "tst_preferences3d.moc"
