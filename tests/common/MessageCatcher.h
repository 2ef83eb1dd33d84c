#pragma once
// Collects what KbbDebug prints while it lives: warnings and errors apart, and both in the
// order printed (told).

#include <KbbDebug.h>

#include <QStringList>

class MessageCatcher
{
public:
    MessageCatcher()
    {
        _handle = KbbDebug::addSink([this](KbbDebug::Level level, const QString& text) {
            if (level == KbbDebug::Level::Warning)
                warnings << text;
            else if (level == KbbDebug::Level::Error)
                errors << text;
            if (level >= KbbDebug::Level::Warning)
                told << text;
        });
    }
    ~MessageCatcher() { stop(); }
    MessageCatcher(const MessageCatcher&) = delete;
    MessageCatcher& operator=(const MessageCatcher&) = delete;

    // Ends the collecting; what was collected stays.
    void stop()
    {
        if (_handle)
            KbbDebug::removeSink(_handle);
        _handle = 0;
    }

    void clear()
    {
        warnings.clear();
        errors.clear();
        told.clear();
    }

    QStringList warnings;
    QStringList errors;
    QStringList told;

private:
    int _handle = 0;
};
