// Types arbitrary text into a bounded number editor and confirms it with Enter, as a user
// (or a paste) could: the editor must keep a finite value within its bounds, and show it.

#include <VwaDouble.h>

#include <QAbstractSpinBox>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

struct Fixture
{
    Fixture()
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "fuzz_number_text";
        static char* argv[] = {name, nullptr};
        app = new QApplication(argc, argv);
        editor = new VwaDouble;
        editor->setMinimum(-1000.0);
        editor->setMaximum(1000.0);
        editor->setMinimumDefined(true);
        editor->setMaximumDefined(true);
        editor->setPrefix(QStringLiteral("x = "));
        spin = editor->findChild<QAbstractSpinBox*>(QStringLiteral("spinbox"));
        field = spin->findChild<QLineEdit*>();
    }

    QApplication* app;
    VwaDouble* editor;
    QAbstractSpinBox* spin;
    QLineEdit* field;
};

} // namespace

// Fontconfig keeps its caches until exit; they are not ours to free.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Fixture f;
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    f.field->selectAll();
    f.field->insert(text); // what a paste does: through the spin box's validator
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(f.spin, &press);

    const double v = f.editor->getValue();
    if (!std::isfinite(v) || v < -1000.0 || v > 1000.0 || f.field->text() != f.editor->text())
        std::abort();
    return 0;
}
