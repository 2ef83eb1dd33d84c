#pragma once
// Scenes kept in the project: one file per scene, "<database>/scenes/<id>.xml", holding
// the items in drawing order, the last zoom and the coordinate-system code:
//
//   <scene version="1" id="3" coordsys="EPSG:32631">
//     <zoom x="..." y="..." width="..." height="..."/>
//     <item id="wells" name="Wells" active="true" rendering="8" dataset="wells" sub="Porosity">
//       <style name="size" type="double" value="4"/>
//     </item>
//   </scene>
//
// Style entries keep bool, int, long, double, string and colour values; entries of other
// types are left out with a qWarning. Files are replaced atomically. Reading refuses any
// damage (a syntax error, a wrong root, an unknown rendering, a repeated id, a file over
// MAX_FILE_BYTES) with a KbeError that names the file; the scene is then left empty, and
// the caller decides whether to go on with it.

#include <velmora_graphic_export.h>

#include <QByteArray>
#include <QString>

class VssProject;
class VugScene;

class VELMORA_GRAPHIC_EXPORT VugSceneStore
{
public:
    // A scene of several thousand items with their styles stays far below.
    static constexpr qint64 MAX_FILE_BYTES = 4 * 1024 * 1024;

    static QString filePath(const VssProject& project, int sceneId);
    static bool exists(const VssProject& project, int sceneId);

    // Writes the file of scene.getId(); throws KbeError, the previous file then whole.
    static void save(const VssProject& project, const VugScene& scene);
    // Reads the file of scene.getId() into the scene. False, and the scene emptied, when
    // the scene was never saved. Throws KbeError for a damaged file.
    static bool load(const VssProject& project, VugScene& scene);
    // Deletes the scene's file; true when there is none afterwards.
    static bool remove(const VssProject& project, int sceneId);

    // The file's content, and its reading from bytes; sourceName names them in messages.
    static QByteArray toXml(const VugScene& scene);
    static void fromXml(const QByteArray& data, const QString& sourceName, VugScene& scene);

    VugSceneStore() = delete;
};
