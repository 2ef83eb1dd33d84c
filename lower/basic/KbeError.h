#pragma once
// Base of the library's exceptions: a translated message that callers show as it is.

#include <velmora_basic_export.h>

#include <QByteArray>
#include <QString>
#include <exception>

class VELMORA_BASIC_EXPORT KbeError : public std::exception
{
public:
    explicit KbeError(const QString& message);
    ~KbeError() override;

    const QString& getMessage() const { return _message; }
    const char* what() const noexcept override { return _utf8.constData(); }

private:
    QString _message;
    QByteArray _utf8;
};
