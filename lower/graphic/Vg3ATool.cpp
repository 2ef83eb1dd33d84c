#include <Vg3ATool.h>

#include <Vg3ANode.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoSeparator.h>

Vg3ATool::Vg3ATool(const QString& name)
    : _name(name)
{
    if (!SoDB::isInitialized())
        Vg3OpenInventor::getInstance()->init();
    _root = new SoSeparator;
    _root->setName(SbName(getInventorName().toLatin1().constData()));
}

Vg3ATool::~Vg3ATool() = default;

QString Vg3ATool::getInventorName() const
{
    return Vg3ANode::toInventorName(_name);
}
