#include "KbdAVariable.h"

QString KbdAVariable::getTitle() const
{
    const QString symbol = getUnit().getSymbol();
    return symbol.isEmpty() ? getName() : QStringLiteral("%1 (%2)").arg(getName(), symbol);
}
