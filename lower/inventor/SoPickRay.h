#pragma once
// A ray pick keeps the ray of the last camera it met, even once that camera's separator is
// left; a screen overlay with a camera of its own therefore turns the ray of everything
// after it into the overlay's. The node made here, put right after such an overlay, makes
// the ray again from the camera of the scene around it.

#include <velmora_graphic_export.h>

class SoNode;

namespace SoPickRay {

VELMORA_GRAPHIC_EXPORT SoNode* newRestorer();

} // namespace SoPickRay
