#pragma once
// Memory could not be had for an operation (a buffer, an image, a dataset).

#include <KbeError.h>

class VELMORA_BASIC_EXPORT KbeMemoryError : public KbeError
{
public:
    explicit KbeMemoryError(const QString& message);
    ~KbeMemoryError() override;
};
