#pragma once
// The application's message printers. Every message goes to Qt's log and to the sinks
// that want it (the messages window); describeCurrentException() turns whatever a
// catch (...) holds into the text the user is shown.

#include <velmora_basic_export.h>

#include <QString>
#include <functional>

class VELMORA_BASIC_EXPORT KbbDebug
{
public:
    enum class Level { Debug, Info, Warning, Error };
    using Sink = std::function<void(Level, const QString&)>;

    static void printDebug(const QString& text);
    static void printInfo(const QString& text);
    static void printWarning(const QString& text);
    static void printError(const QString& text);
    static void print(Level level, const QString& text);

    // Sinks are called on the thread that prints; they must not print themselves.
    static int addSink(Sink sink);
    static void removeSink(int handle);

    // Inside a catch block: "std::bad_alloc: ...", a KbeError's message, "Unknown exception.".
    static QString describeCurrentException();

    static QString levelName(Level level);

    KbbDebug() = delete;
};
