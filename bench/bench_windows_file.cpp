// Saving and loading "windows.xml" with 20 and 1,000 windows, against a plain
// QXmlStreamWriter / QXmlStreamReader doing the same writes and reads in the same run.

#include "BenchRatio.h"

#include <KbbOrderedMap.h>
#include <VsmModelScene.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VwwAWindow.h>
#include <VwwWindowRegistry.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <memory>
#include <vector>

namespace {

// A display with the fields of a typical saved window.
class BenchWindow : public VwwAWindow
{
public:
    explicit BenchWindow(int n)
        : VwwAWindow(VwwEWindowType::DISPLAY, QStringLiteral("Display %1").arg(n), Vua::Resource::HelpId(),
                     VwwAWindow::DOCKED, QSize(), Vua::Resource::IconId())
    {
        _fields.insert(QStringLiteral("scene-id"), QString::number(n));
        _fields.insert(QStringLiteral("zoom"), QStringLiteral("%1 %2 1000.5 800.25").arg(n * 10).arg(n * 7));
        _fields.insert(QStringLiteral("title"), QStringLiteral("Map of porosity & thickness <%1>").arg(n));
        _fields.insert(QStringLiteral("layers"), QStringLiteral("Samples|Boundary|Thickness grid"));
    }
    QString getClassID() const override { return QStringLiteral("Display2D"); }
    bool askForSave() override { return true; }
    void projectAboutToClose() override {}
    void saveInProject() override {}
    void projectOpened(VssProject&) override {}
    Fields serialize() const override { return _fields; }

private:
    Fields _fields;
};

// One project with `count` registered windows; the registry owns the windows.
struct Setup
{
    QTemporaryDir dir;
    QList<BenchWindow*> windows;
    QString path;

    explicit Setup(int count)
    {
        VssProjectCollection::getInstance()->createProject(dir.filePath(QStringLiteral("p")), QStringLiteral("Bench"));
        for (int i = 0; i < count; ++i)
            windows.append(new BenchWindow(i + 1));
        path = VwwWindowRegistry::windowsFilePath(*VssProjectCollection::getInstance()->getCurrentProject());
    }
    ~Setup()
    {
        VssProjectCollection::getInstance()->closeProject();
        VwwWindowRegistry::clear();
    }
};

std::unique_ptr<Setup> current;

Setup& setupFor(int count)
{
    if (!current || current->windows.size() != count) {
        current.reset();
        current = std::make_unique<Setup>(count);
    }
    return *current;
}

void savePlainStream(const Setup& s, const QString& path)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeDTD(QStringLiteral("<!DOCTYPE windows>"));
    xml.writeStartElement(QStringLiteral("windows"));
    xml.writeStartElement(QStringLiteral("window-list"));
    for (const BenchWindow* w : s.windows) {
        xml.writeStartElement(QStringLiteral("window"));
        xml.writeAttribute(QStringLiteral("class-id"), w->getClassID());
        for (const auto& f : w->serialize()) {
            xml.writeStartElement(QStringLiteral("field"));
            xml.writeAttribute(QStringLiteral("name"), f.first);
            xml.writeCharacters(f.second);
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEmptyElement(QStringLiteral("workspace"));
    xml.writeEndElement();
    xml.writeEndDocument();
}

int loadPlainStream(const QString& path)
{
    VwwWindowRegistry::WindowData data;
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    QXmlStreamReader xml(&file);
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("windows"))
            continue;
        if (xml.name() != QLatin1String("window-list")) {
            xml.skipCurrentElement();
            continue;
        }
        while (xml.readNextStartElement()) {
            QPair<QString, KbbOrderedMap<QString, QString>> entry;
            entry.first = xml.attributes().value(QStringLiteral("class-id")).toString();
            while (xml.readNextStartElement()) {
                const QString name = xml.attributes().value(QStringLiteral("name")).toString();
                entry.second.insert(name, xml.readElementText());
            }
            data.append(entry);
        }
    }
    return data.size();
}

// Ours: what closing a project does to the windows file (every window is asked and
// serialised, the file is replaced atomically).
void BM_Save(benchmark::State& state)
{
    Setup& s = setupFor(int(state.range(0)));
    const QString plain = s.path + QStringLiteral(".plain");
    measurePair(
        state, [] { VwwWindowRegistry::getInstance()->isReadyToClose(); }, [&] { savePlainStream(s, plain); });
}

// Ours: what opening a project does to read the windows file (guarded reading included).
void BM_Load(benchmark::State& state)
{
    Setup& s = setupFor(int(state.range(0)));
    VwwWindowRegistry::getInstance()->isReadyToClose();
    measurePair(
        state,
        [&] {
            VwwWindowRegistry::WindowData data;
            QDomElement workspace;
            VwwWindowRegistry::readWindowsFile(s.path, data, workspace);
            benchmark::DoNotOptimize(data.size());
        },
        [&] { benchmark::DoNotOptimize(loadPlainStream(s.path)); });
}

} // namespace

BENCHMARK(BM_Save)->Arg(20)->Arg(1000)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_Load)->Arg(20)->Arg(1000)->Repetitions(9)->ReportAggregatesOnly(true);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int status = runWithRatios(argc, argv,
                                     {{"BM_Save/20", {"windows.xml save, 20 windows", 1.5}},
                                      {"BM_Save/1000", {"windows.xml save, 1000 windows", 1.5}},
                                      {"BM_Load/20", {"windows.xml load, 20 windows", 1.5}},
                                      {"BM_Load/1000", {"windows.xml load, 1000 windows", 1.5}}});
    current.reset(); // while the application still lives
    return status;
}
