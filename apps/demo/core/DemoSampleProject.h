#pragma once
// The demo's sample project: a generated field of sampled points with a few variables,
// a boundary polygon and a grid, written as CSV files into the project's "data" folder,
// and a map, a 3D scene and a section that show them.

#include <QRectF>
#include <QString>

namespace DemoSampleProject {

// The folder of the sample project in the user's data folder.
QString defaultFolder();
// Creates the sample project in the folder unless one is there already. Returns false
// with a message when the folder cannot be used.
bool ensure(const QString& folder, QString* message);
// Writes the data files of a new project; `samples` points are drawn with a fixed seed.
void writeData(const QString& projectFolder, int samples);
// The field's square kilometre, in the project's coordinate system (UTM zone 31N).
QRectF fieldExtent();
// The code of that system.
QString coordSystemText();

} // namespace DemoSampleProject
