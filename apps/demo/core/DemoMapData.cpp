#include "DemoMapData.h"

#include "DemoSampleProject.h"

#include <KbbDebug.h>
#include <KbeError.h>
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

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

#include <cmath>
#include <functional>

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

QString fileProblem(const QString& path, int line, const QString& what)
{
    return tr("'%1', line %2: %3").arg(QDir::toNativeSeparators(path)).arg(line).arg(what);
}

QStringList readLines(const QString& path)
{
    QFile file(path);
    VusFileUtils::openForReading(file, QIODevice::Text);
    if (file.size() > 64 * 1024 * 1024)
        throw KbeError(tr("'%1' is too large for a sample file.").arg(QDir::toNativeSeparators(path)));
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

double number(const QString& field, const QString& path, int line)
{
    bool ok = false;
    const double value = field.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value))
        throw KbeError(fileProblem(path, line, tr("'%1' is not a number").arg(field.trimmed().left(40))));
    return value;
}

// "x,y" then one vertex per line: one ring.
VsdPolygonSet readBoundary(const QString& path)
{
    const QStringList lines = readLines(path);
    QPolygonF ring;
    for (int i = 1; i < lines.size(); ++i) {
        if (lines.at(i).trimmed().isEmpty())
            continue;
        const QStringList fields = lines.at(i).split(QLatin1Char(','));
        if (fields.size() != 2)
            throw KbeError(fileProblem(path, i + 1, tr("two fields are expected")));
        ring.append(QPointF(number(fields.at(0), path, i + 1), number(fields.at(1), path, i + 1)));
    }
    VsdPolygonSet set;
    if (ring.size() < 3 || !set.append(ring))
        throw KbeError(tr("'%1' holds no polygon.").arg(QDir::toNativeSeparators(path)));
    return set;
}

// "# origin X Y, cell DX DY, NX x NY nodes, ..." then NY rows of NX values.
VsdGrid readGrid(const QString& path)
{
    const QStringList lines = readLines(path);
    static const QRegularExpression header(
        QStringLiteral("^# origin (\\S+) (\\S+), cell (\\S+) (\\S+), (\\d+) x (\\d+) nodes"));
    const QRegularExpressionMatch m = header.match(lines.value(0));
    if (!m.hasMatch())
        throw KbeError(fileProblem(path, 1, tr("the grid header is missing")));
    const int nx = m.captured(5).toInt();
    const int ny = m.captured(6).toInt();
    if (nx < 1 || ny < 1 || qint64(nx) * ny > 4000000)
        throw KbeError(fileProblem(path, 1, tr("%1 x %2 nodes is not a grid this demo reads").arg(nx).arg(ny)));
    VsdGrid grid(QPointF(number(m.captured(1), path, 1), number(m.captured(2), path, 1)),
                 number(m.captured(3), path, 1), number(m.captured(4), path, 1), nx, ny);
    if (grid.isEmpty())
        throw KbeError(fileProblem(path, 1, tr("the cell size must be positive")));
    QVector<double> values;
    values.reserve(nx * ny);
    for (int j = 0; j < ny; ++j) {
        const QStringList fields = lines.value(j + 1).split(QLatin1Char(','));
        if (fields.size() != nx)
            throw KbeError(fileProblem(path, j + 2, tr("%1 values are expected").arg(nx)));
        for (const QString& field : fields)
            values.append(number(field, path, j + 2));
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
    // Point sets come back from the database; the other kinds live in memory only.
    struct Import {
        QString key;
        QString file;
        std::function<void(const QString&)> read;
    };
    const QList<Import> imports = {
        {kSamples, QStringLiteral("samples.csv"),
         [this](const QString& path) { _datasets->setPointSet(kSamples, VsdPointSetFile::read(path)); }},
        {kBoundary, QStringLiteral("boundary.csv"),
         [this](const QString& path) { _datasets->setPolygonSet(kBoundary, readBoundary(path)); }},
        {kGrid, QStringLiteral("thickness-grid.csv"),
         [this](const QString& path) { _datasets->setGrid(kGrid, readGrid(path)); }},
    };
    for (const Import& import : imports) {
        const QString path = data.filePath(import.file);
        if (_datasets->contains(import.key) || !QFile::exists(path))
            continue;
        try {
            import.read(path);
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
        set = VsdPointSetFile::read(path);
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
