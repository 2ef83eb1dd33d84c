#pragma once
// A call that breaks the contract of the called code: an unknown key, a bad index.

#include <KbeError.h>

class VELMORA_BASIC_EXPORT KbeProgrammingError : public KbeError
{
public:
    explicit KbeProgrammingError(const QString& message);
    // "'operation' in file 'unit' failed:\n\nreason"
    KbeProgrammingError(const QString& operation, const QString& unit, const QString& reason);
    ~KbeProgrammingError() override;

    static QString failedText(const QString& operation, const QString& unit, const QString& reason);
};
