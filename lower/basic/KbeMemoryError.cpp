#include "KbeMemoryError.h"

KbeMemoryError::KbeMemoryError(const QString& message)
    : KbeError(message)
{
}

KbeMemoryError::~KbeMemoryError() = default;
