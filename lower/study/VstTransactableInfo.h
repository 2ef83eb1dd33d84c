#pragma once
// What a transactable object is made with: the project it works in (may be null for an
// object made before a project opens) and the name of its transactions.

#include <QString>

class VssProject;

struct VstTransactableInfo
{
    VssProject* project = nullptr;
    QString name;
};
