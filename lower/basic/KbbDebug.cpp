#include "KbbDebug.h"

#include "KbeError.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMutex>
#include <QVector>
#include <exception>
#include <new>
#include <typeinfo>
#include <utility>

namespace {

struct SinkList
{
    QMutex mutex;
    QVector<std::pair<int, KbbDebug::Sink>> sinks;
    int next = 1;
};

SinkList& sinkList()
{
    static SinkList list;
    return list;
}

QString tr(const char* text)
{
    return QCoreApplication::translate("KbbDebug", text);
}

} // namespace

void KbbDebug::printDebug(const QString& text) { print(Level::Debug, text); }
void KbbDebug::printInfo(const QString& text) { print(Level::Info, text); }
void KbbDebug::printWarning(const QString& text) { print(Level::Warning, text); }
void KbbDebug::printError(const QString& text) { print(Level::Error, text); }

void KbbDebug::print(Level level, const QString& text)
{
    switch (level) {
    case Level::Debug: qDebug().noquote() << text; break;
    case Level::Info: qInfo().noquote() << text; break;
    case Level::Warning: qWarning().noquote() << text; break;
    case Level::Error: qCritical().noquote() << text; break;
    }
    QVector<std::pair<int, Sink>> sinks;
    {
        QMutexLocker lock(&sinkList().mutex);
        sinks = sinkList().sinks;
    }
    for (const auto& sink : sinks)
        sink.second(level, text);
}

int KbbDebug::addSink(Sink sink)
{
    QMutexLocker lock(&sinkList().mutex);
    const int handle = sinkList().next++;
    sinkList().sinks.append({handle, std::move(sink)});
    return handle;
}

void KbbDebug::removeSink(int handle)
{
    QMutexLocker lock(&sinkList().mutex);
    auto& sinks = sinkList().sinks;
    for (int i = 0; i < sinks.size(); ++i) {
        if (sinks[i].first == handle) {
            sinks.remove(i);
            return;
        }
    }
}

QString KbbDebug::describeCurrentException()
{
    try {
        throw;
    } catch (const KbeError& e) {
        return e.getMessage();
    } catch (const std::bad_alloc& e) {
        return tr("std::bad_alloc: %1").arg(QString::fromLocal8Bit(e.what()));
    } catch (const std::bad_cast& e) {
        return tr("std::bad_cast: %1").arg(QString::fromLocal8Bit(e.what()));
    } catch (const std::bad_exception& e) {
        return tr("std::bad_exception: %1").arg(QString::fromLocal8Bit(e.what()));
    } catch (const std::bad_typeid& e) {
        return tr("std::bad_typeid: %1").arg(QString::fromLocal8Bit(e.what()));
    } catch (const std::exception& e) {
        return tr("std::exception: %1").arg(QString::fromLocal8Bit(e.what()));
    } catch (...) {
        return tr("Unknown exception.");
    }
}

QString KbbDebug::levelName(Level level)
{
    switch (level) {
    case Level::Debug: return tr("Debug");
    case Level::Info: return tr("Information");
    case Level::Warning: return tr("Warning");
    case Level::Error: return tr("Error");
    }
    return QString();
}
