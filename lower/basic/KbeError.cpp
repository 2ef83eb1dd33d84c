#include "KbeError.h"

KbeError::KbeError(const QString& message)
    : _message(message)
    , _utf8(message.toUtf8())
{
}

KbeError::~KbeError() = default;
