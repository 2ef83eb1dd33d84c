#pragma once
// The closed set of window kinds. The kind decides how the window registry treats a
// window: which windows are written into the project, which defaults are created when a
// project opens, which windows an iterator visits. Instances are ordered by value.

#include <velmora_widget_export.h>

#include <KbbAEnum.h>

class VELMORA_WIDGET_EXPORT VwwEWindowType : public KbbAEnum
{
public:
    enum EValue {
        REPORTER_V = 0,
        DISPLAY_V = 1,
        SPREADSHEET_V = 2,
        TASK_V = 3,
        MESSAGES_V = 4,
        DEBUG_WINDOW_V = 5,
        BATCH_EDITOR_V = 6,
    };
    using Iterator = KbbEnumIterator<VwwEWindowType>;

    static const VwwEWindowType REPORTER;
    static const VwwEWindowType DISPLAY;
    static const VwwEWindowType SPREADSHEET;
    static const VwwEWindowType TASK;
    static const VwwEWindowType MESSAGES;
    static const VwwEWindowType DEBUG_WINDOW;
    static const VwwEWindowType BATCH_EDITOR;

    // A copy of DISPLAY.
    VwwEWindowType();
    VwwEWindowType(const VwwEWindowType&) = default;
    VwwEWindowType& operator=(const VwwEWindowType&) = default;
    ~VwwEWindowType() = default;

    static int count();
    static Iterator createIterator();

    static bool existsValue(int value);
    static bool existsKey(const QString& key);
    // Compares without case, unlike fromLabel().
    static bool existsLabel(const QString& label);

    // An unknown value, key or label raises KbeProgrammingError.
    static const VwwEWindowType& fromValue(int value);
    static const VwwEWindowType& fromKey(const QString& key);
    static const VwwEWindowType& fromLabel(const QString& label);
    static VwwEWindowType fromValue(int value, const VwwEWindowType& fallback);
    static VwwEWindowType fromKey(const QString& key, const VwwEWindowType& fallback);
    static VwwEWindowType fromLabel(const QString& label, const VwwEWindowType& fallback);

    EValue toEnum() const { return EValue(getValue()); }

    bool operator==(const VwwEWindowType& o) const { return getValue() == o.getValue(); }
    bool operator!=(const VwwEWindowType& o) const { return getValue() != o.getValue(); }
    bool operator<(const VwwEWindowType& o) const { return getValue() < o.getValue(); }
    bool operator<=(const VwwEWindowType& o) const { return getValue() <= o.getValue(); }
    bool operator>(const VwwEWindowType& o) const { return getValue() > o.getValue(); }
    bool operator>=(const VwwEWindowType& o) const { return getValue() >= o.getValue(); }

private:
    VwwEWindowType(const QString& label, int value, const char* key);
    static QMap<int, VwwEWindowType*>& _map();
    static const VwwEWindowType* _default;
};
