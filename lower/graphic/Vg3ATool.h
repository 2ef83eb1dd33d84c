#pragma once
// A tool shown in a 3D view (a clip-plane manipulator, a ruler, a fence): a name and the
// Inventor sub-graph that draws it, kept apart from the data nodes so that views frame and
// export the data without their tools.

#include <velmora_graphic_export.h>

#include <SoRef.h>

#include <QString>

class SoSeparator;

class VELMORA_GRAPHIC_EXPORT Vg3ATool
{
public:
    explicit Vg3ATool(const QString& name);
    virtual ~Vg3ATool();

    const QString& getName() const { return _name; }
    // As Vg3ANode::getInventorName.
    QString getInventorName() const;
    // Referenced by the tool for its whole life.
    SoSeparator* getRoot() const { return _root; }

private:
    Vg3ATool(const Vg3ATool&) = delete;
    Vg3ATool& operator=(const Vg3ATool&) = delete;
    QString _name;
    SoRef<SoSeparator> _root;
};
