#include <Vg3ANode.h>

#include <Vg3OpenInventor.h>

#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoPickedPoint.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/nodes/SoScale.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>

// Letters, digits and '_' (ASCII only, as Inventor names require), never a leading digit.
QString Vg3ANode::toInventorName(const QString& name)
{
    QString result;
    result.reserve(name.size() + 1);
    for (const QChar c : name) {
        const ushort u = c.unicode();
        const bool ok = (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') || u == '_';
        result.append(ok ? c : QLatin1Char('_'));
    }
    if (result.isEmpty() || result.at(0).isDigit())
        result.prepend(QLatin1Char('_'));
    return result;
}

Vg3ANode::Vg3ANode(const QString& name)
    : _name(name)
{
    if (!SoDB::isInitialized())
        Vg3OpenInventor::getInstance()->init();
    _root = new SoSeparator;
    _root->setName(SbName(getInventorName().toLatin1().constData()));
    _scale = new SoScale;
    _scale->scaleFactor.setValue(1.0f, 1.0f, _zScale);
    _root->addChild(_scale);
    _content = new SoSeparator;
    _root->addChild(_content);
}

Vg3ANode::~Vg3ANode()
{
    // A watcher may remove itself, or others, while it is told.
    while (!_watchers.empty()) {
        Vg3INodeWatcher* watcher = _watchers.back();
        _watchers.pop_back();
        watcher->nodeDestroyed(this);
    }
}

QStringList Vg3ANode::describe(const SoPickedPoint& picked) const
{
    const KbgVector3D p = toData(picked.getPoint());
    const QLocale locale;
    const auto line = [&](const char* what, double v) {
        return QCoreApplication::translate("Vg3ANode", what) + QStringLiteral(": ") + locale.toString(v, 'f', 2);
    };
    return {getName(), line(QT_TRANSLATE_NOOP("Vg3ANode", "x"), p.x()), line(QT_TRANSLATE_NOOP("Vg3ANode", "y"), p.y()),
            line(QT_TRANSLATE_NOOP("Vg3ANode", "z"), p.z())};
}

void Vg3ANode::addWatcher(Vg3INodeWatcher* watcher)
{
    if (watcher && std::find(_watchers.begin(), _watchers.end(), watcher) == _watchers.end())
        _watchers.push_back(watcher);
}

void Vg3ANode::removeWatcher(Vg3INodeWatcher* watcher)
{
    _watchers.erase(std::remove(_watchers.begin(), _watchers.end(), watcher), _watchers.end());
}

QString Vg3ANode::getInventorName() const
{
    return toInventorName(_name);
}

SbBox3f Vg3ANode::getBoundingBox() const
{
    if (_content->getNumChildren() == 0)
        return SbBox3f();
    SoGetBoundingBoxAction action{SbViewportRegion()};
    action.apply(_root);
    return action.getBoundingBox();
}

void Vg3ANode::rebuild()
{
    // Built aside and swapped in with one change of the content, so a view redraws once.
    _content->enableNotify(false);
    _content->removeAllChildren();
    _build(_content);
    _content->enableNotify(true);
    _content->touch();
}

void Vg3ANode::setZScale(float zScale)
{
    if (!std::isfinite(zScale) || zScale <= 0.0f) {
        qWarning("Vg3ANode::setZScale: %g is not a positive scale, %g is kept", double(zScale), double(_zScale));
        return;
    }
    _zScale = zScale;
    _scale->scaleFactor.setValue(1.0f, 1.0f, zScale);
}

void Vg3ANode::setOffset(const KbgVector3D& offset)
{
    if (!offset.isFinite()) {
        qWarning("Vg3ANode::setOffset: the offset of '%s' must be finite; it is kept", qPrintable(_name));
        return;
    }
    if (offset == _offset)
        return;
    const bool built = _content->getNumChildren() > 0;
    _offset = offset;
    if (built)
        rebuild();
}
