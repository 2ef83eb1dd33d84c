#pragma once
// A named batch of modifications: it holds the update-modify lock from begin() to
// commit() or rollback() (or its destruction), so that listeners redraw once.

#include <velmora_study_export.h>

#include <QString>

class VELMORA_STUDY_EXPORT VstTransaction
{
public:
    explicit VstTransaction(const QString& name = QString());
    ~VstTransaction();
    VstTransaction(const VstTransaction&) = delete;
    VstTransaction& operator=(const VstTransaction&) = delete;

    const QString& getName() const { return _name; }
    void setName(const QString& name) { _name = name; }
    bool isActive() const { return _active; }
    int getCommitCount() const { return _commits; }

    void begin();
    void commit();
    void rollback();

private:
    void _end();
    QString _name;
    bool _active = false;
    int _commits = 0;
};
