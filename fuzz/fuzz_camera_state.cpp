// Reads arbitrary text as a saved camera, as a damaged or hand-edited windows.xml could give
// it: a text that is read must give a valid state that writes back to a text read the same.

#include <VugCameraState.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    Vug::CameraState state;
    const Vug::CameraState untouched = state;
    if (!Vug::CameraState::fromString(text, state)) {
        if (state != untouched)
            std::abort(); // a refused text changed the state
        return 0;
    }
    if (!state.isValid())
        std::abort();
    Vug::CameraState again;
    if (!Vug::CameraState::fromString(state.toString(), again) || again != state)
        std::abort();
    return 0;
}
