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

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);

    const QString userKeys = VwwWindowTypeFlags::USER.getKeys();
    check(userKeys == QLatin1String("DISPLAY|SPREADSHEET|TASK|BATCH_EDITOR"), QStringLiteral("USER.getKeys()"), userKeys);
    check(VwwEWindowType::fromKey(QStringLiteral("BATCH_EDITOR")) == VwwEWindowType::BATCH_EDITOR,
          QStringLiteral("fromKey(BATCH_EDITOR)"), QLatin1String(VwwEWindowType::fromKey(QStringLiteral("BATCH_EDITOR")).getKey()));
    QString caught = QStringLiteral("no exception");
    try {
        VwwEWindowType::fromKey(QStringLiteral("NO_SUCH_WINDOW"));
    } catch (const KbeProgrammingError& e) {
        caught = e.getMessage();
    }
    check(caught.contains(QLatin1String("NO_SUCH_WINDOW")), QStringLiteral("fromKey(unknown) throws KbeProgrammingError"),
          caught);

    KbbOrderedMap<QString, int> map{{QStringLiteral("zeta"), 1}, {QStringLiteral("alpha"), 2}};
    check(map.keys().join(QLatin1Char(',')) == QLatin1String("zeta,alpha"), QStringLiteral("KbbOrderedMap keeps order"),
          map.keys().join(QLatin1Char(',')));

    QFile icon(QStringLiteral(":/velmora/icons/reporter.svg"));
    check(icon.open(QIODevice::ReadOnly) && icon.size() > 0, QStringLiteral("embedded icon :/velmora/icons/reporter.svg"),
          icon.errorString());

    if (failures == 0)
        QTextStream(stdout) << "velmora_consumer: all checks passed\n";
    return failures == 0 ? 0 : 1;
}
