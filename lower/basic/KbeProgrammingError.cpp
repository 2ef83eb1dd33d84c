#include "KbeProgrammingError.h"

#include <QCoreApplication>

KbeProgrammingError::KbeProgrammingError(const QString& message)
    : KbeError(message)
{
}

KbeProgrammingError::KbeProgrammingError(const QString& operation, const QString& unit, const QString& reason)
    : KbeError(failedText(operation, unit, reason))
{
}

KbeProgrammingError::~KbeProgrammingError() = default;

QString KbeProgrammingError::failedText(const QString& operation, const QString& unit, const QString& reason)
{
    return QCoreApplication::translate("KbeProgrammingError", "'%1' in file '%2' failed:\n\n%3")
        .arg(operation, unit, reason);
}
