#pragma once
// Input to value editors as a user gives it, and what a listener received: text typed into
// a field (pasted when no keyboard types it), the mouse wheel, and the first argument of
// every signal a spy caught.

#include <QApplication>
#include <QClipboard>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>

namespace EditorInput {

// Replaces the text of the focused field. Short printable ASCII is typed; the rest comes in
// by pasting, which adds it unfiltered.
inline void replaceText(QWidget* field, const QString& text)
{
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Backspace);
    const bool typable = std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c >= ' ' && c < QChar(127); });
    if (text.size() < 100 && typable) {
        QTest::keyClicks(field, text);
    } else {
        QApplication::clipboard()->setText(text);
        QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
    }
}

// One notch of the wheel over the middle of `target` (120 is up); whether it was taken.
inline bool wheel(QWidget* target, int delta)
{
    const QPoint at = target->rect().center();
    QWheelEvent event(at, target->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &event);
    return event.isAccepted();
}

template <class T>
QList<T> firstArguments(const QSignalSpy& spy)
{
    QList<T> result;
    for (const auto& args : spy)
        result << args.at(0).value<T>();
    return result;
}

} // namespace EditorInput
