// Feeds arbitrary bytes to the reader of a map scene's file: it must fill the scene with
// the items it can show (leaving out the others), or throw KbeError and leave the scene
// empty; what it read must be written back and read again whole, to the same scene.

#include <KbeError.h>
#include <VugScene.h>
#include <VugSceneStore.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    VugScene scene(1);
    try {
        VugSceneStore::fromXml(bytes, QStringLiteral("fuzz"), scene);
    } catch (const KbeError&) {
        if (scene.count() != 0)
            std::abort();
        return 0;
    }
    VugScene again(1);
    try {
        if (!VugSceneStore::fromXml(VugSceneStore::toXml(scene), QStringLiteral("fuzz again"), again).isEmpty())
            std::abort();
    } catch (const KbeError&) {
        std::abort();
    }
    if (again.count() != scene.count())
        std::abort();
    return 0;
}
