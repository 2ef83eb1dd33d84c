#pragma once
// QCOMPARE with a tolerance for 3D vectors, saying both values when it fails.

#include <KbgVector3D.h>

#include <QString>
#include <QTest>

inline QString vectorText(const KbgVector3D& v)
{
    return QStringLiteral("(%1, %2, %3)").arg(v.x()).arg(v.y()).arg(v.z());
}

#define COMPARE_VEC(actual, expected)                                                               \
    do {                                                                                            \
        const KbgVector3D a_ = (actual);                                                            \
        const KbgVector3D e_ = (expected);                                                          \
        QVERIFY2(a_.fuzzyEquals(e_, 1e-9),                                                          \
                 qPrintable(QStringLiteral("got %1, expected %2").arg(vectorText(a_), vectorText(e_)))); \
    } while (false)
