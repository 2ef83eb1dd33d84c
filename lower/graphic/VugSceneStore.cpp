#include "VugSceneStore.h"

#include "VugScene.h"

#include <KbeError.h>
#include <VssProject.h>
#include <VusFileUtils.h>
#include <VuxXml.h>

#include <QColor>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSet>
#include <QXmlStreamWriter>
#include <cmath>

namespace {

const int kVersion = 1;
const QString kScene = QStringLiteral("scene");
const QString kZoom = QStringLiteral("zoom");
const QString kItem = QStringLiteral("item");
const QString kStyle = QStringLiteral("style");

QString tr(const char* text)
{
    return QCoreApplication::translate("VugSceneStore", text);
}

VuxXml::Limits limits()
{
    VuxXml::Limits l;
    l.maxBytes = VugSceneStore::MAX_FILE_BYTES;
    // scene > item > style is all a scene file nests.
    l.maxDepth = 8;
    return l;
}

// The shortest text that reads back as the same double.
QString number(double v)
{
    return QString::number(v, 'g', QLocale::FloatingPointShortest);
}

// The style value types a file keeps, by the names it writes.
QString styleTypeName(const QVariant& v)
{
    switch (v.userType()) {
    case QMetaType::Bool: return QStringLiteral("bool");
    case QMetaType::Int: return QStringLiteral("int");
    case QMetaType::LongLong: return QStringLiteral("long");
    case QMetaType::Double: return QStringLiteral("double");
    case QMetaType::QString: return QStringLiteral("string");
    case QMetaType::QColor: return QStringLiteral("color");
    default: return QString();
    }
}

QString styleText(const QVariant& v)
{
    switch (v.userType()) {
    case QMetaType::Bool: return v.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::Double: return number(v.toDouble());
    case QMetaType::QColor: {
        const QColor c = v.value<QColor>();
        return c.isValid() ? c.name(QColor::HexArgb) : QString();
    }
    default: return v.toString();
    }
}

// Control characters other than blanks cannot be written in XML 1.0.
bool isWritable(const QString& text)
{
    for (const QChar c : text)
        if ((c.unicode() < 0x20 && c != QLatin1Char('\t') && c != QLatin1Char('\n') && c != QLatin1Char('\r'))
            || c.unicode() == 0xFFFE || c.unicode() == 0xFFFF)
            return false;
    return true;
}

// Reads one scene file's DOM; every refusal names the source.
class Reader
{
public:
    explicit Reader(const QString& source)
        : _source(source)
    {
    }

    [[noreturn]] void fail(const QString& why) const
    {
        throw KbeError(tr("'%1' is not a valid scene file: %2").arg(_source, why));
    }

    double real(const QDomElement& e, const QString& name) const
    {
        bool ok = false;
        const double v = e.attribute(name).toDouble(&ok);
        if (!ok || !std::isfinite(v))
            fail(tr("the %1 '%2' of <%3> is not a finite number").arg(name, e.attribute(name), e.tagName()));
        return v;
    }

    bool boolean(const QString& text, const QString& what) const
    {
        if (text == QLatin1String("true"))
            return true;
        if (text == QLatin1String("false"))
            return false;
        fail(tr("%1 is '%2', neither 'true' nor 'false'").arg(what, text));
    }

    QVariant styleValue(const QDomElement& e, const QString& itemId) const
    {
        const QString type = e.attribute(QStringLiteral("type"));
        const QString text = e.attribute(QStringLiteral("value"));
        const QString what = tr("the style '%1' of the item '%2'").arg(e.attribute(QStringLiteral("name")), itemId);
        bool ok = true;
        QVariant v;
        if (type == QLatin1String("bool"))
            v = boolean(text, what);
        else if (type == QLatin1String("int"))
            v = text.toInt(&ok);
        else if (type == QLatin1String("long"))
            v = text.toLongLong(&ok);
        else if (type == QLatin1String("double"))
            v = text.toDouble(&ok);
        else if (type == QLatin1String("string"))
            v = text;
        else if (type == QLatin1String("color")) {
            const QColor c(text);
            ok = text.isEmpty() || c.isValid();
            v = c;
        } else
            fail(tr("%1 has the unknown type '%2'").arg(what, type));
        if (!ok)
            fail(tr("%1 is '%2', not a value of type %3").arg(what, text, type));
        return v;
    }

    VugSceneItem item(const QDomElement& e) const
    {
        const QString renderingText = e.attribute(QStringLiteral("rendering"));
        bool ok = false;
        const int value = renderingText.toInt(&ok);
        if (!ok || !VugERendering::existsValue(value))
            fail(tr("the item '%1' has the unknown rendering '%2'").arg(e.attribute(QStringLiteral("id")), renderingText));
        VugSceneItem item(e.attribute(QStringLiteral("id")), e.attribute(QStringLiteral("name")),
                          VugERendering::fromValue(value), e.attribute(QStringLiteral("dataset")),
                          e.attribute(QStringLiteral("sub")));
        item.setActive(boolean(e.attribute(QStringLiteral("active"), QStringLiteral("true")),
                               tr("the 'active' of the item '%1'").arg(item.getId())));
        const QString why = item.problem();
        if (!why.isEmpty())
            fail(why);
        QVariantMap style;
        for (QDomElement s = e.firstChildElement(kStyle); !s.isNull(); s = s.nextSiblingElement(kStyle)) {
            const QString name = s.attribute(QStringLiteral("name"));
            if (name.isEmpty() || style.contains(name))
                fail(tr("the item '%1' has a style with an empty or repeated name ('%2')").arg(item.getId(), name));
            style.insert(name, styleValue(s, item.getId()));
        }
        item.setStyle(style);
        return item;
    }

private:
    QString _source;
};

void empty(VugScene& scene)
{
    scene.clear();
    scene.clearLastZoom();
    scene.setCoordSystemCode(QString());
}

} // namespace

QString VugSceneStore::filePath(const VssProject& project, int sceneId)
{
    return QDir(project.getDatabaseDirectory()).filePath(QStringLiteral("scenes/%1.xml").arg(sceneId));
}

bool VugSceneStore::exists(const VssProject& project, int sceneId)
{
    return QFileInfo(filePath(project, sceneId)).isFile();
}

QByteArray VugSceneStore::toXml(const VugScene& scene)
{
    QByteArray bytes;
    QXmlStreamWriter w(&bytes);
    w.setAutoFormatting(true);
    w.setAutoFormattingIndent(1);
    w.writeStartDocument();
    w.writeStartElement(kScene);
    w.writeAttribute(QStringLiteral("version"), QString::number(kVersion));
    w.writeAttribute(QStringLiteral("id"), QString::number(scene.getId()));
    if (!scene.getCoordSystemCode().isEmpty())
        w.writeAttribute(QStringLiteral("coordsys"), scene.getCoordSystemCode());
    if (scene.hasLastZoom()) {
        const QRectF r = scene.getLastZoom();
        w.writeEmptyElement(kZoom);
        w.writeAttribute(QStringLiteral("x"), number(r.x()));
        w.writeAttribute(QStringLiteral("y"), number(r.y()));
        w.writeAttribute(QStringLiteral("width"), number(r.width()));
        w.writeAttribute(QStringLiteral("height"), number(r.height()));
    }
    for (int rank = 0; rank < scene.count(); ++rank) {
        const VugSceneItem& item = *scene.item(rank);
        w.writeStartElement(kItem);
        w.writeAttribute(QStringLiteral("id"), item.getId());
        w.writeAttribute(QStringLiteral("name"), item.getName());
        w.writeAttribute(QStringLiteral("active"), item.isActive() ? QStringLiteral("true") : QStringLiteral("false"));
        w.writeAttribute(QStringLiteral("rendering"), QString::number(item.getRendering().getValue()));
        if (!item.getDatasetKey().isEmpty())
            w.writeAttribute(QStringLiteral("dataset"), item.getDatasetKey());
        if (!item.getSubDatasetKey().isEmpty())
            w.writeAttribute(QStringLiteral("sub"), item.getSubDatasetKey());
        const QVariantMap& style = item.getStyle();
        for (auto it = style.cbegin(); it != style.cend(); ++it) {
            const QString type = styleTypeName(it.value());
            const QString text = styleText(it.value());
            if (type.isEmpty() || it.key().isEmpty() || !isWritable(it.key()) || !isWritable(text)) {
                qWarning("VugSceneStore::toXml: the style '%s' of the item '%s' (%s) cannot be kept",
                         qUtf8Printable(it.key()), qUtf8Printable(item.getId()), it.value().typeName());
                continue;
            }
            w.writeEmptyElement(kStyle);
            w.writeAttribute(QStringLiteral("name"), it.key());
            w.writeAttribute(QStringLiteral("type"), type);
            w.writeAttribute(QStringLiteral("value"), text);
        }
        w.writeEndElement();
    }
    w.writeEndElement();
    w.writeEndDocument();
    return bytes;
}

QStringList VugSceneStore::fromXml(const QByteArray& data, const QString& sourceName, VugScene& scene)
{
    const Reader reader(sourceName);
    QStringList lost;
    // Each part that cannot be read is left out with its reason; the rest is kept.
    const auto tryRead = [&lost](auto&& read) {
        try {
            read();
        } catch (const KbeError& e) {
            lost.append(e.getMessage());
        }
    };
    try {
        if (data.size() > MAX_FILE_BYTES)
            reader.fail(tr("it is larger than %1 bytes").arg(MAX_FILE_BYTES));
        const QDomDocument document = VuxXml::parseXml(data, kScene, limits(), sourceName);
        const QDomElement root = document.documentElement();
        if (root.tagName() != kScene)
            reader.fail(tr("its root element is <%1>, not <%2>").arg(root.tagName(), kScene));
        bool ok = false;
        const int version = root.attribute(QStringLiteral("version")).toInt(&ok);
        if (!ok || version < 1)
            reader.fail(tr("it has no valid version"));
        if (version > kVersion)
            reader.fail(tr("it was written by a newer version of the application (format %1)").arg(version));
        const int id = root.attribute(QStringLiteral("id")).toInt(&ok);
        if (!ok || id != scene.getId())
            reader.fail(tr("it holds the scene '%1', not the scene %2").arg(root.attribute(QStringLiteral("id"))).arg(scene.getId()));

        QString code;
        tryRead([&] {
            const QString problem = VugSceneItem::textProblem(root.attribute(QStringLiteral("coordsys")), false);
            if (!problem.isEmpty())
                reader.fail(tr("its coordinate-system code is refused: %1").arg(problem));
            code = root.attribute(QStringLiteral("coordsys"));
        });

        QRectF zoom;
        const QDomElement z = root.firstChildElement(kZoom);
        if (!z.isNull())
            tryRead([&] {
                const QRectF r(reader.real(z, QStringLiteral("x")), reader.real(z, QStringLiteral("y")),
                               reader.real(z, QStringLiteral("width")), reader.real(z, QStringLiteral("height")));
                if (r.isEmpty())
                    reader.fail(tr("its zoom has no area"));
                zoom = r;
            });

        QVector<VugSceneItem> items;
        QSet<QString> ids;
        for (QDomElement e = root.firstChildElement(kItem); !e.isNull(); e = e.nextSiblingElement(kItem))
            tryRead([&] {
                VugSceneItem item = reader.item(e);
                if (ids.contains(item.getId()))
                    reader.fail(tr("the item id '%1' is used twice").arg(item.getId()));
                ids.insert(item.getId());
                items.append(item);
            });

        scene.setItems(items);
        if (zoom.isNull())
            scene.clearLastZoom();
        else
            scene.setLastZoom(zoom);
        scene.setCoordSystemCode(code);
    } catch (...) {
        empty(scene);
        throw;
    }
    return lost;
}

void VugSceneStore::save(const VssProject& project, const VugScene& scene)
{
    const QString path = filePath(project, scene.getId());
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        throw KbeError(tr("The folder '%1' cannot be created.").arg(QDir::toNativeSeparators(folder)));
    VuxXml::saveXml(path, toXml(scene));
}

bool VugSceneStore::load(const VssProject& project, VugScene& scene, QString* problem)
{
    if (problem)
        problem->clear();
    const QString path = filePath(project, scene.getId());
    if (!QFileInfo::exists(path) && !QFileInfo(path).isSymLink()) {
        empty(scene);
        return false;
    }
    QStringList lost;
    bool whole = false;
    try {
        lost = fromXml(VuxXml::readFile(path, limits()), QDir::toNativeSeparators(path), scene);
    } catch (const KbeError& e) {
        empty(scene);
        lost = QStringList{e.getMessage()};
        whole = true;
    }
    if (lost.isEmpty())
        return true;
    // Saving the scene writes a new file: the damaged one goes aside first.
    const QString kept = VusFileUtils::keepAside(path);
    if (problem) {
        const QString fate = kept.isEmpty()
                                 ? tr("The file is left where it is, and the scene is not saved over it.")
                                 : tr("The file is kept as '%1'.").arg(QDir::toNativeSeparators(kept));
        *problem = (whole ? tr("The scene's file cannot be read: the scene opens empty. %1\n%2")
                          : tr("Parts of the scene's file cannot be read: the scene opens without them. %1\n%2"))
                       .arg(fate, lost.join(QLatin1Char('\n')));
    }
    return true;
}

bool VugSceneStore::remove(const VssProject& project, int sceneId)
{
    const QString path = filePath(project, sceneId);
    return !QFileInfo::exists(path) || QFile::remove(path);
}
