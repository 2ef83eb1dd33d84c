#include "VwmAMainWindow.h"

VwmAMainWindow::VwmAMainWindow(QWidget* parent, Qt::WindowFlags flags)
    : QMainWindow(parent, flags)
{
}

VwmAMainWindow::~VwmAMainWindow() = default;
