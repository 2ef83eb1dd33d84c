#include "DemoMapData.h"

#include "DemoSampleProject.h"

#include <KbbDebug.h>
#include <KbbGlobal.h>
#include <KbcProgress.h>
#include <KbeError.h>
#include <VsdCsv.h>
#include <VsdCsvLines.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsdPointSetFile.h>
#include <VsdPolygonSet.h>
#include <VsmModelScene.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VugDatasetStore.h>
#include <VugScene.h>
#include <VugSceneStore.h>
#include <VusFileUtils.h>
#include <VwdProgressDialog.h>
#include <VwwWindowRegistry.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

#include <cmath>
#include <functional>
#include <memory>

const QString DemoMapData::LARGE_SET_KEY = QStringLiteral("generated-points");
const QString DemoMapData::SAMPLES_KEY = QStringLiteral("samples");
const QString DemoMapData::GRID_KEY = QStringLiteral("thickness-grid");

namespace {

const QString& kSamples = DemoMapData::SAMPLES_KEY;
const QString kBoundary = QStringLiteral("boundary");
const QString& kGrid = DemoMapData::GRID_KEY;
const QString kLargeItem = QStringLiteral("generated-points");
const QString kCountStyle = QStringLiteral("count");

QString tr(const char* text)
{
    return QCoreApplication::translate("DemoMapData", text);
}

// A number of a CSV line, read as every CSV file of a project is (VsdCsv); a coordinate
// must be a finite value.
double number(const VsdCsvLines& lines, const QByteArray& field, bool coordinate)
{
    double value = 0;
    if (!VsdCsv::parseNumber(field, value))
        throw KbeError(lines.problem(tr("'%1' is not a number").arg(QString::fromUtf8(field.left(40)))));
    if (coordinate && KbbGlobal::isUndefined(value))
        throw KbeError(lines.problem(tr("'%1' is not a finite coordinate").arg(QString::fromUtf8(field.left(40)))));
    return value;
}

// "x,y" then one vertex per line: one ring.
VsdPolygonSet readBoundary(const QString& path, KbcProgress* progress)
{
    QFile file(path);
    VusFileUtils::openForReading(file);
    VsdCsvLines lines(file, path, progress);
    lines.next(); // the header
    QPolygonF ring;
    while (lines.next()) {
        if (lines.isBlank())
            continue;
        const QVector<QByteArray> fields = lines.fields();
        if (fields.size() != 2)
            throw KbeError(lines.problem(tr("two fields are expected")));
        ring.append(QPointF(number(lines, fields.at(0), true), number(lines, fields.at(1), true)));
    }
    VsdPolygonSet set;
    if (ring.size() < 3 || !set.append(ring))
        throw KbeError(tr("'%1' holds no polygon.").arg(QDir::toNativeSeparators(path)));
    return set;
}

// "# origin X Y, cell DX DY, NX x NY nodes, ..." then NY rows of NX values; a node without
// a value is a hole.
VsdGrid readGrid(const QString& path, KbcProgress* progress)
{
    QFile file(path);
    VusFileUtils::openForReading(file);
    VsdCsvLines lines(file, path, progress);
    static const QRegularExpression header(
        QStringLiteral("^# origin (\\S+) (\\S+), cell (\\S+) (\\S+), (\\d+) x (\\d+) nodes"));
    const QRegularExpressionMatch m =
        header.match(lines.next() ? QString::fromUtf8(lines.begin(), int(lines.end() - lines.begin())) : QString());
    if (!m.hasMatch())
        throw KbeError(lines.problem(tr("the grid header is missing")));
    const int nx = m.captured(5).toInt();
    const int ny = m.captured(6).toInt();
    if (nx < 1 || ny < 1 || qint64(nx) * ny > 4000000)
        throw KbeError(lines.problem(tr("%1 x %2 nodes is not a grid this demo reads").arg(nx).arg(ny)));
    const auto headerNumber = [&lines, &m](int n) { return number(lines, m.captured(n).toUtf8(), true); };
    VsdGrid grid(QPointF(headerNumber(1), headerNumber(2)), headerNumber(3), headerNumber(4), nx, ny);
    if (grid.isEmpty())
        throw KbeError(lines.problem(tr("the cell size must be positive")));
    QVector<double> values;
    values.reserve(nx * ny);
    for (int j = 0; j < ny; ++j) {
        if (!lines.next())
            throw KbeError(lines.problem(tr("%1 rows are expected").arg(ny)));
        const QVector<QByteArray> fields = lines.fields();
        if (fields.size() != nx)
            throw KbeError(lines.problem(tr("%1 values are expected").arg(nx)));
        for (const QByteArray& field : fields)
            values.append(number(lines, field, false));
    }
    grid.setValues(values);
    return grid;
}

} // namespace

DemoMapData* DemoMapData::getInstance()
{
    static DemoMapData* instance = [] {
        auto* data = new DemoMapData;
        VssProjectCollection::getInstance()->addObserver(data);
        return data;
    }();
    return instance;
}

DemoMapData::DemoMapData() = default;

DemoMapData::~DemoMapData()
{
    _release();
}

bool DemoMapData::_attach()
{
    VssProject* current = VssProjectCollection::getInstance()->getCurrentProject();
    if (current == _project)
        return _project != nullptr;
    _release();
    _project = current;
    if (!_project)
        return false;
    _datasets = std::make_unique<VugDatasetStore>(*_project);
    try {
        _datasets->load();
    } catch (const KbeError& e) {
        KbbDebug::printWarning(e.getMessage()); // the readable sets are in
    }
    _importSampleFiles();
    return true;
}

void DemoMapData::_importSampleFiles()
{
    const QDir data(QDir(_project->getFolder()).filePath(QStringLiteral("data")));
    // Point sets come back from the database; the other kinds live in memory only. Each
    // file is read on a worker thread (a large one shows its progress and can be
    // cancelled), and what it gives is stored here.
    using Store = std::function<void()>;
    struct Import {
        QString key;
        QString file;
        std::function<Store(const QString&, KbcProgress&)> read;
    };
    const QList<Import> imports = {
        {kSamples, QStringLiteral("samples.csv"),
         [this](const QString& path, KbcProgress& progress) -> Store {
             auto set = std::make_shared<VsdPointSet>(VsdPointSetFile::read(path, &progress));
             return [this, set] { _datasets->setPointSet(kSamples, *set); };
         }},
        {kBoundary, QStringLiteral("boundary.csv"),
         [this](const QString& path, KbcProgress& progress) -> Store {
             auto set = std::make_shared<VsdPolygonSet>(readBoundary(path, &progress));
             return [this, set] { _datasets->setPolygonSet(kBoundary, *set); };
         }},
        {kGrid, QStringLiteral("thickness-grid.csv"),
         [this](const QString& path, KbcProgress& progress) -> Store {
             auto grid = std::make_shared<VsdGrid>(readGrid(path, &progress));
             return [this, grid] { _datasets->setGrid(kGrid, *grid); };
         }},
    };
    for (const Import& import : imports) {
        const QString path = data.filePath(import.file);
        if (_datasets->contains(import.key) || !QFile::exists(path))
            continue;
        try {
            Store store;
            if (!VwdProgressDialog::run(VwwWindowRegistry::getMainWindow(), tr("Reading '%1'").arg(import.file),
                                        [&](KbcProgress& progress) { store = import.read(path, progress); })) {
                KbbDebug::printWarning(tr("Reading '%1' was cancelled: it is left out until the project opens again.")
                                           .arg(QDir::toNativeSeparators(path)));
                continue;
            }
            store();
        } catch (const KbeError& e) {
            KbbDebug::printWarning(e.getMessage());
        }
    }
}

void DemoMapData::_buildScene(VugScene& scene) const
{
    const VsmScene* description = _project->getModelScene().getScene(scene.getId());
    if (!description)
        return;
    // The sample's item names; drawn with the grid lowest and the samples on top.
    const struct {
        const char* name;
        VugSceneItem item;
    } known[] = {
        {"Thickness grid", VugSceneItem(kGrid, tr("Thickness grid"), VugERendering::RASTER, kGrid)},
        {"Boundary", VugSceneItem(kBoundary, tr("Boundary"), VugERendering::POLYGONS, kBoundary)},
        {"Samples (thickness)",
         VugSceneItem(kSamples, tr("Samples (thickness)"), VugERendering::POINT_SYMBOLS, kSamples,
                      QStringLiteral("thickness"))},
    };
    for (const auto& entry : known)
        if (description->items.contains(QLatin1String(entry.name)))
            scene.appendItem(entry.item);
}

VugDatasetStore* DemoMapData::getDatasets()
{
    return _attach() ? _datasets.get() : nullptr;
}

VugScene* DemoMapData::getScene(int sceneId)
{
    if (!_attach() || !_project->getModelScene().getScene(sceneId))
        return nullptr;
    if (VugScene* scene = _scenes.value(sceneId))
        return scene;
    auto* scene = new VugScene(sceneId, this);
    QString problem;
    if (!VugSceneStore::load(*_project, *scene, &problem))
        _buildScene(*scene);
    else if (!problem.isEmpty())
        KbbDebug::printWarning(tr("The map '%1': %2").arg(_project->getModelScene().getScene(sceneId)->name, problem));
    // A generated set is made again rather than read back.
    const int large = scene->findRank(kLargeItem);
    if (large >= 0 && !_datasets->contains(LARGE_SET_KEY)) {
        const int count = scene->item(large)->getStyle().value(kCountStyle).toInt();
        _datasets->setPointSet(LARGE_SET_KEY, VsdPointSet::generate(count, 20261121, DemoSampleProject::fieldExtent()),
                               VugDatasetStore::Storage::IN_MEMORY);
    }
    _scenes.insert(sceneId, scene);
    return scene;
}

bool DemoMapData::addLargePointSet(int sceneId, int count, QString* message)
{
    VugScene* scene = getScene(sceneId);
    if (!scene) {
        if (message)
            *message = tr("There is no map to add the points to.");
        return false;
    }
    VsdPointSet set = VsdPointSet::generate(count, 20261121, DemoSampleProject::fieldExtent());
    if (set.size() != count || !_datasets->setPointSet(LARGE_SET_KEY, set, VugDatasetStore::Storage::IN_MEMORY)) {
        if (message)
            *message = tr("%L1 points cannot be generated.").arg(count);
        return false;
    }
    VugSceneItem item(kLargeItem, tr("Generated points (%L1)").arg(count), VugERendering::POINTS, LARGE_SET_KEY,
                      QStringLiteral("Thickness"));
    item.setStyle({{kCountStyle, count}});
    const int rank = scene->findRank(kLargeItem);
    if (rank < 0)
        return scene->appendItem(item);
    // The layers of the set follow the store: only the name and the count change here.
    scene->renameItem(rank, item.getName());
    scene->setItemStyle(rank, item.getStyle());
    return true;
}

void DemoMapData::removeLargePointSet(int sceneId)
{
    VugScene* scene = getScene(sceneId);
    if (!scene)
        return;
    scene->removeItem(scene->findRank(kLargeItem));
    // Another map may still draw it.
    for (const VugScene* other : qAsConst(_scenes))
        if (other->findRank(kLargeItem) >= 0)
            return;
    _datasets->remove(LARGE_SET_KEY);
}

bool DemoMapData::hasLargePointSet(int sceneId)
{
    const VugScene* scene = getScene(sceneId);
    return scene && scene->findRank(kLargeItem) >= 0;
}

bool DemoMapData::addPointFile(int sceneId, const QString& path, QString* message)
{
    VugScene* scene = getScene(sceneId);
    if (!scene) {
        if (message)
            *message = tr("There is no map to add the points to.");
        return false;
    }
    VsdPointSet set;
    try {
        if (!VwdProgressDialog::run(VwwWindowRegistry::getMainWindow(),
                                    tr("Reading '%1'").arg(QFileInfo(path).fileName()),
                                    [&](KbcProgress& progress) { set = VsdPointSetFile::read(path, &progress); })) {
            if (message)
                *message = tr("Reading '%1' was cancelled.").arg(QDir::toNativeSeparators(path));
            return false;
        }
    } catch (const KbeError& e) {
        if (message)
            *message = e.getMessage();
        return false;
    }
    const QString name = QFileInfo(path).completeBaseName();
    const QString id = scene->uniqueItemId(name.left(VugDatasetStore::MAX_KEY_LENGTH - 8));
    const QString key = QStringLiteral("dropped-") + id;
    if (!_datasets->setPointSet(key, set)) {
        if (message)
            *message = tr("'%1' cannot be added to the project.").arg(QDir::toNativeSeparators(path));
        return false;
    }
    return scene->appendItem(VugSceneItem(id, name.isEmpty() ? id : name, VugERendering::POINT_SYMBOLS, key,
                                          set.variableNames().value(0)));
}

bool DemoMapData::save(QString* message)
{
    if (!_project)
        return true;
    QStringList problems;
    for (const VugScene* scene : qAsConst(_scenes)) {
        try {
            VugSceneStore::save(*_project, *scene);
        } catch (const KbeError& e) {
            problems << e.getMessage();
        }
    }
    try {
        _datasets->save();
    } catch (const KbeError& e) {
        problems << e.getMessage();
    }
    if (message)
        *message = problems.join(QLatin1Char('\n'));
    return problems.isEmpty();
}

void DemoMapData::saveInProject()
{
    QString message;
    if (!save(&message))
        throw KbeError(message);
}

bool DemoMapData::isReadyToClose()
{
    // What cannot be written is reported; the files written before stay whole.
    QString message;
    if (!save(&message))
        KbbDebug::printError(message);
    return true;
}

void DemoMapData::projectAboutToClose()
{
    _release();
}

void DemoMapData::projectOpened(VssProject&)
{
    // Read when a display first asks.
}

void DemoMapData::_release()
{
    if (!_project)
        return;
    emit aboutToRelease();
    qDeleteAll(_scenes);
    _scenes.clear();
    _datasets.reset();
    _project = nullptr;
}
