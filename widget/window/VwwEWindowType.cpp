#include "VwwEWindowType.h"

#include "VwwWindowTypeFlags.h"

#include <QCoreApplication>

// The instances and the flag constants share this unit so that the instances (and the
// map they register in) exist before the flag constants enumerate them.
const VwwEWindowType VwwEWindowType::REPORTER(QCoreApplication::translate("VwwEWindowType", "Reporter"), REPORTER_V, "REPORTER");
const VwwEWindowType VwwEWindowType::DISPLAY(QCoreApplication::translate("VwwEWindowType", "Display"), DISPLAY_V, "DISPLAY");
const VwwEWindowType VwwEWindowType::SPREADSHEET(QCoreApplication::translate("VwwEWindowType", "Spreadsheet"), SPREADSHEET_V, "SPREADSHEET");
const VwwEWindowType VwwEWindowType::TASK(QCoreApplication::translate("VwwEWindowType", "Task"), TASK_V, "TASK");
const VwwEWindowType VwwEWindowType::MESSAGES(QCoreApplication::translate("VwwEWindowType", "Messages"), MESSAGES_V, "MESSAGES");
const VwwEWindowType VwwEWindowType::DEBUG_WINDOW(QCoreApplication::translate("VwwEWindowType", "Debug"), DEBUG_WINDOW_V, "DEBUG_WINDOW");
const VwwEWindowType VwwEWindowType::BATCH_EDITOR(QCoreApplication::translate("VwwEWindowType", "Batch-Editor"), BATCH_EDITOR_V, "BATCH_EDITOR");
const VwwEWindowType* VwwEWindowType::_default = &VwwEWindowType::DISPLAY;

const VwwWindowTypeFlags VwwWindowTypeFlags::NONE(false);
const VwwWindowTypeFlags VwwWindowTypeFlags::ANY(true);
const VwwWindowTypeFlags VwwWindowTypeFlags::APPLICATION{VwwEWindowType::DEBUG_WINDOW, VwwEWindowType::REPORTER,
                                                         VwwEWindowType::MESSAGES};
const VwwWindowTypeFlags VwwWindowTypeFlags::USER = ~VwwWindowTypeFlags::APPLICATION;

namespace {
const char* const kUnit = "Vw";
}

VwwEWindowType::VwwEWindowType(const QString& label, int value, const char* key)
    : KbbAEnum(label, value, key)
{
    KbbEnumTable::registerItem(_map(), this, "VwwEWindowType");
}

VwwEWindowType::VwwEWindowType()
    : KbbAEnum(*_default)
{
}

QMap<int, VwwEWindowType*>& VwwEWindowType::_map()
{
    static QMap<int, VwwEWindowType*> map;
    return map;
}

int VwwEWindowType::count() { return _map().size(); }
VwwEWindowType::Iterator VwwEWindowType::createIterator() { return Iterator(_map()); }
bool VwwEWindowType::existsValue(int value) { return _map().contains(value); }
bool VwwEWindowType::existsKey(const QString& key) { return KbbEnumTable::findKey(_map(), key) != nullptr; }

bool VwwEWindowType::existsLabel(const QString& label)
{
    return KbbEnumTable::findLabel(_map(), label, Qt::CaseInsensitive) != nullptr;
}

const VwwEWindowType& VwwEWindowType::fromValue(int value)
{
    return KbbEnumTable::fromValue(_map(), value, Q_FUNC_INFO, kUnit);
}

const VwwEWindowType& VwwEWindowType::fromKey(const QString& key)
{
    return KbbEnumTable::fromKey(_map(), key, Q_FUNC_INFO, kUnit);
}

const VwwEWindowType& VwwEWindowType::fromLabel(const QString& label)
{
    return KbbEnumTable::fromLabel(_map(), label, Q_FUNC_INFO, kUnit);
}

VwwEWindowType VwwEWindowType::fromValue(int value, const VwwEWindowType& fallback)
{
    const VwwEWindowType* e = _map().value(value, nullptr);
    return e ? *e : fallback;
}

VwwEWindowType VwwEWindowType::fromKey(const QString& key, const VwwEWindowType& fallback)
{
    const VwwEWindowType* e = KbbEnumTable::findKey(_map(), key);
    return e ? *e : fallback;
}

VwwEWindowType VwwEWindowType::fromLabel(const QString& label, const VwwEWindowType& fallback)
{
    const VwwEWindowType* e = KbbEnumTable::findLabel(_map(), label, Qt::CaseSensitive);
    return e ? *e : fallback;
}

VwwWindowTypeFlags::VwwWindowTypeFlags()
    : KbbAFlags(false)
{
}

VwwWindowTypeFlags::VwwWindowTypeFlags(bool set)
    : KbbAFlags(set)
{
}

VwwWindowTypeFlags::VwwWindowTypeFlags(const VwwEWindowType& type)
    : KbbAFlags(false)
{
    addFlag(type);
}

VwwWindowTypeFlags::VwwWindowTypeFlags(std::initializer_list<VwwEWindowType> types)
    : KbbAFlags(false)
{
    for (const VwwEWindowType& t : types)
        addFlag(t);
}

VwwWindowTypeFlags::VwwWindowTypeFlags(std::initializer_list<VwwWindowTypeFlags> sets)
    : KbbAFlags(false)
{
    for (const VwwWindowTypeFlags& s : sets)
        addFlags(s);
}

VwwWindowTypeFlags VwwWindowTypeFlags::operator~() const
{
    VwwWindowTypeFlags complement;
    for (auto it = VwwEWindowType::createIterator(); it.hasNext();) {
        const VwwEWindowType& t = it.next();
        if (!testFlag(t))
            complement.addFlag(t);
    }
    return complement;
}
