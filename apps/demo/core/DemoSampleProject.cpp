#include "DemoSampleProject.h"

#include <KbeError.h>
#include <VsmModelScene.h>
#include <VssProject.h>

#include <QCoreApplication>
#include <QDir>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTextStream>
#include <QtMath>

namespace {

// A smooth field with a trend and two bumps, so that maps of it look like geology.
double thickness(double x, double y)
{
    const double bump1 = 25.0 * qExp(-((x - 300) * (x - 300) + (y - 650) * (y - 650)) / 40000.0);
    const double bump2 = 18.0 * qExp(-((x - 750) * (x - 750) + (y - 300) * (y - 300)) / 60000.0);
    return 10.0 + 0.01 * x + bump1 + bump2;
}

void writeFile(const QString& path, const QString& content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text) || file.write(content.toUtf8()) < 0 || !file.commit())
        throw KbeError(QCoreApplication::translate("DemoSampleProject", "'%1' cannot be written: %2")
                           .arg(QDir::toNativeSeparators(path), file.errorString()));
}

} // namespace

namespace {
// Where the field lies: off the Norwegian coast, west of the zone's central meridian, so
// that the map's north differs a little from the grid's.
constexpr double X0 = 431000.0;
constexpr double Y0 = 6541000.0;
} // namespace

QRectF DemoSampleProject::fieldExtent()
{
    return QRectF(X0, Y0, 1000.0, 1000.0);
}

QString DemoSampleProject::coordSystemText()
{
    return QStringLiteral("EPSG:32631");
}

QString DemoSampleProject::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/sample-project");
}

void DemoSampleProject::writeData(const QString& projectFolder, int samples)
{
    const QDir data(QDir(projectFolder).filePath(QStringLiteral("data")));
    QDir().mkpath(data.path());

    QRandomGenerator random(20261121);
    QString points;
    QTextStream out(&points);
    out << "x,y,z,thickness,porosity,facies\n";
    for (int i = 0; i < samples; ++i) {
        const double x = random.bounded(1000.0);
        const double y = random.bounded(1000.0);
        const double t = thickness(x, y) + random.bounded(2.0) - 1.0;
        const double porosity = 0.08 + 0.004 * t + random.bounded(0.02);
        // Facies: 1 channel, 0 shale.
        out << QString::number(X0 + x, 'f', 2) << ',' << QString::number(Y0 + y, 'f', 2) << ','
            << QString::number(-1200.0 - t, 'f', 2) << ',' << QString::number(t, 'f', 3) << ','
            << QString::number(porosity, 'f', 4) << ',' << (t > 22 ? 1 : 0) << '\n';
    }
    writeFile(data.filePath(QStringLiteral("samples.csv")), points);

    QString boundary = QStringLiteral("x,y\n");
    for (int i = 0; i < 24; ++i) {
        const double a = 2 * M_PI * i / 24;
        const double r = 470 + 30 * qSin(3 * a);
        boundary += QStringLiteral("%1,%2\n")
                        .arg(X0 + 500 + r * qCos(a), 0, 'f', 2)
                        .arg(Y0 + 500 + r * qSin(a), 0, 'f', 2);
    }
    writeFile(data.filePath(QStringLiteral("boundary.csv")), boundary);

    QString grid = QStringLiteral("# origin %1 %2, cell 20 20, 51 x 51 nodes, thickness\n").arg(X0, 0, 'f', 0).arg(Y0, 0, 'f', 0);
    for (int j = 0; j <= 50; ++j) {
        QStringList row;
        for (int i = 0; i <= 50; ++i)
            row.append(QString::number(thickness(20.0 * i, 20.0 * j), 'f', 3));
        grid += row.join(QLatin1Char(',')) + QLatin1Char('\n');
    }
    writeFile(data.filePath(QStringLiteral("thickness-grid.csv")), grid);
}

bool DemoSampleProject::ensure(const QString& folder, QString* message)
{
    if (VssProject::isProjectFolder(folder))
        return true;
    try {
        std::unique_ptr<VssProject> project =
            VssProject::create(folder, QCoreApplication::translate("DemoSampleProject", "Sample field"));
        project->setCoordSystemText(coordSystemText());
        writeData(folder, 2000);
        VsmModelScene& scenes = project->getModelScene();
        const QStringList mapItems{QStringLiteral("Samples (thickness)"), QStringLiteral("Boundary"),
                                   QStringLiteral("Thickness grid")};
        scenes.createScene(QCoreApplication::translate("DemoSampleProject", "Field map"), VsmModelScene::SCENE_2D, mapItems);
        scenes.createScene(QCoreApplication::translate("DemoSampleProject", "Field in 3D"), VsmModelScene::SCENE_3D,
                           {QStringLiteral("Samples (porosity)"), QStringLiteral("Thickness surface")});
        scenes.createScene(QCoreApplication::translate("DemoSampleProject", "Section A-A'"), VsmModelScene::SCENE_SECTION,
                           {QStringLiteral("Samples near the section"), QStringLiteral("Thickness profile")});
        project->save();
    } catch (const KbeError& e) {
        if (message)
            *message = e.getMessage();
        return false;
    }
    return true;
}
