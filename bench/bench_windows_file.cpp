// Saving and loading "windows.xml" with 20 and 1,000 windows, against a plain
// QXmlStreamWriter / QXmlStreamReader doing the same writes and reads in the same run; and
// opening a project that restores 100 windows of many widgets each (docked in a main
// window), against four times opening one that restores 25: restoring stays linear.

#include "BenchRatio.h"

#include <KbbOrderedMap.h>
#include <VsmModelScene.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VwmMainWindow.h>
#include <VwwAWindow.h>
#include <VwwIWindowFactory.h>
#include <VwwWindowRegistry.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGridLayout>
#include <QLabel>
#include <QToolButton>
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
    explicit BenchWindow(int n, VwwAWindow::WindowFlags flags = VwwAWindow::DOCKED)
        : VwwAWindow(VwwEWindowType::DISPLAY, QStringLiteral("Display %1").arg(n), Vua::Resource::HelpId(), flags,
                     QSize(), Vua::Resource::IconId())
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
        VwwWindowRegistry::reset();
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

// A display as heavy as a map window: a form of 200 widgets in a layout.
class FormWindow : public BenchWindow
{
public:
    FormWindow()
        : BenchWindow(1, VwwAWindow::DOCKED | VwwAWindow::REMOVABLE)
    {
        auto* form = new QWidget;
        auto* grid = new QGridLayout(form);
        for (int i = 0; i < 100; ++i) {
            grid->addWidget(new QLabel(QStringLiteral("Field %1").arg(i)), i / 4, (i % 4) * 2);
            grid->addWidget(new QToolButton, i / 4, (i % 4) * 2 + 1);
        }
        setMainView(form);
    }
    QString getClassID() const override { return QStringLiteral("Form"); }
};

class FormFactory : public VwwIWindowFactory
{
public:
    VwwAWindow* createWindow(const QString&) override { return new FormWindow; }
    VwwAWindow* createToolWindow(const QString&) override { return nullptr; }
    VwwAWindow* createReporterWindow() override { return nullptr; }
    VwwAWindow* createBatchEditor(const QString&) override { return nullptr; }
    VwwASceneWindow* create2DDisplay(const VsoSceneIdentifier&) override { return nullptr; }
    VwwASceneWindow* create3DDisplay(const VsoSceneIdentifier&) override { return nullptr; }
    VwwASceneWindow* createSceneType4Display(const VsoSceneIdentifier&) override { return nullptr; }
    VwwAWindow* createSpreadsheet(const QString&) override { return nullptr; }
};

// A project whose "windows.xml" lists `count` form windows.
QString formProject(const QTemporaryDir& dir, int count)
{
    const QString folder = dir.filePath(QStringLiteral("forms%1").arg(count));
    VssProject::create(folder, QStringLiteral("Forms"));
    QByteArray xml = "<windows><window-list>";
    for (int i = 0; i < count; ++i)
        xml += "<window class-id=\"Form\"/>";
    xml += "</window-list></windows>";
    QFile file(QDir(folder).filePath(QStringLiteral("database/windows.xml")));
    file.open(QIODevice::WriteOnly);
    file.write(xml);
    return folder;
}

void openAndClose(const QString& folder)
{
    VssProjectCollection::getInstance()->openProject(folder);
    VssProjectCollection::getInstance()->closeProject();
}

void BM_Restore(benchmark::State& state)
{
    current.reset();
    QTemporaryDir dir;
    const int count = int(state.range(0));
    const QString many = formProject(dir, count);
    const QString quarter = formProject(dir, count / 4);
    VwmMainWindow main;
    main.resize(1200, 800);
    main.show();
    VwwWindowRegistry::setMainWindow(&main);
    VwwWindowRegistry::setWindowFactory(new FormFactory);
    measurePair(
        state, [&] { openAndClose(many); },
        [&] {
            for (int i = 0; i < 4; ++i)
                openAndClose(quarter);
        });
    VwwWindowRegistry::setWindowFactory(nullptr);
    VwwWindowRegistry::setMainWindow(nullptr);
}

} // namespace

BENCHMARK(BM_Restore)->Arg(100)->Repetitions(3)->Iterations(2)->ReportAggregatesOnly(true);
BENCHMARK(BM_Save)->Arg(20)->Arg(1000)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_Load)->Arg(20)->Arg(1000)->Repetitions(9)->ReportAggregatesOnly(true);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
    QApplication app(argc, argv);
    const int status = runWithRatios(argc, argv,
                                     {{"BM_Save/20", {"windows.xml save, 20 windows", 1.5}},
                                      {"BM_Save/1000", {"windows.xml save, 1000 windows", 1.5}},
                                      {"BM_Load/20", {"windows.xml load, 20 windows", 1.5}},
                                      {"BM_Load/1000", {"windows.xml load, 1000 windows", 1.5}},
                                      {"BM_Restore/100", {"open 100 windows, against 4 x 25", 1.3}}});
    current.reset(); // while the application still lives
    return status;
}
