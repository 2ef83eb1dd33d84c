// Uses the installed library through its installed headers only: enumeration constants
// defined in the shared libraries, a header-only container, an exception thrown inside a
// library and caught here by type, and an icon embedded in a library's resources.
// Prints what differs and exits non-zero.

#include <KbbOrderedMap.h>
#include <KbeProgrammingError.h>
#include <VwwEWindowType.h>
#include <VwwWindowTypeFlags.h>

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTextStream>

namespace {

int failures = 0;

void check(bool ok, const QString& what, const QString& got)
{
    if (ok)
        return;
    QTextStream(stderr) << "FAIL: " << what << " (got: " << got << ")\n";
    ++failures;
}

void checkWindowTypes()
{
    const QString reporterKey = QLatin1String(VwwEWindowType::REPORTER.getKey());
    check(reporterKey == QLatin1String("REPORTER"), QStringLiteral("REPORTER.getKey()"), reporterKey);

    const QString userKeys = VwwWindowTypeFlags::USER.getKeys();
    check(userKeys == QLatin1String("DISPLAY|SPREADSHEET|TASK|BATCH_EDITOR"),
          QStringLiteral("USER.getKeys()"), userKeys);
    check(VwwWindowTypeFlags::APPLICATION.testFlag(VwwEWindowType::MESSAGES)
              && !VwwWindowTypeFlags::USER.testFlag(VwwEWindowType::MESSAGES),
          QStringLiteral("MESSAGES belongs to APPLICATION only"), VwwWindowTypeFlags::APPLICATION.getKeys());

    check(VwwEWindowType::fromKey(QStringLiteral("BATCH_EDITOR")) == VwwEWindowType::BATCH_EDITOR,
          QStringLiteral("fromKey(BATCH_EDITOR)"),
          QLatin1String(VwwEWindowType::fromKey(QStringLiteral("BATCH_EDITOR")).getKey()));

    bool caught = false;
    try {
        VwwEWindowType::fromKey(QStringLiteral("NO_SUCH_WINDOW"));
    } catch (const KbeProgrammingError& e) {
        caught = !e.getMessage().isEmpty();
    }
    check(caught, QStringLiteral("fromKey(unknown) throws KbeProgrammingError"), QStringLiteral("no exception"));
}

void checkOrderedMap()
{
    KbbOrderedMap<QString, QString> map;
    map.insert(QStringLiteral("zeta"), QStringLiteral("1"));
    map.insert(QStringLiteral("alpha"), QStringLiteral("2"));
    map.insert(QStringLiteral("mu"), QStringLiteral("3"));
    map.insert(QStringLiteral("alpha"), QStringLiteral("4"));
    const QString keys = map.keys().join(QLatin1Char(','));
    check(keys == QLatin1String("zeta,alpha,mu"), QStringLiteral("KbbOrderedMap keeps insertion order"), keys);
    check(map.value(QStringLiteral("alpha")) == QLatin1String("4"), QStringLiteral("KbbOrderedMap replaces"),
          map.value(QStringLiteral("alpha")));
    map.take(QStringLiteral("zeta"));
    check(map.value(QStringLiteral("mu")) == QLatin1String("3") && map.size() == 2,
          QStringLiteral("KbbOrderedMap after take"), map.values().join(QLatin1Char(',')));
}

void checkResources()
{
    QFile icon(QStringLiteral(":/velmora/icons/reporter.svg"));
    const bool opened = icon.open(QIODevice::ReadOnly);
    check(opened && icon.size() > 0, QStringLiteral("embedded icon :/velmora/icons/reporter.svg"),
          icon.errorString());
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    checkWindowTypes();
    checkOrderedMap();
    checkResources();
    if (failures == 0)
        QTextStream(stdout) << "velmora_consumer: all checks passed\n";
    return failures == 0 ? 0 : 1;
}
