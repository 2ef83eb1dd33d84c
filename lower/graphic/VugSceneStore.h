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
// types are left out with a qWarning. Files are replaced atomically. Reading takes what it
// can: an item, the zoom or the code that cannot be read is left out with its reason; a
// file that cannot be read at all (a syntax error, a wrong root or scene id, a newer
// format, more than MAX_FILE_BYTES) leaves the scene empty. A damaged file is moved aside
// to "<id>.xml.bad", so that saving the scene never writes over what the user had.

#include <velmora_graphic_export.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

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
    // the scene was never saved. A damaged file gives what could be read, and problem (when
    // given) says what was lost and where the file was kept; it is empty otherwise.
    static bool load(const VssProject& project, VugScene& scene, QString* problem);
    // Deletes the scene's file; true when there is none afterwards.
    static bool remove(const VssProject& project, int sceneId);

    // The file's content, and its reading from bytes; sourceName names them in messages.
    // fromXml() returns what it left out, and throws KbeError when nothing could be read.
    static QByteArray toXml(const VugScene& scene);
    static QStringList fromXml(const QByteArray& data, const QString& sourceName, VugScene& scene);

    VugSceneStore() = delete;
};
