#pragma once
// Initialises Inventor once per process: Coin's database and node classes, the classes
// this library adds (SoMouseWheelEvent, ...), and offscreen rendering through a Qt
// offscreen surface and framebuffer object, because Coin's own GLX offscreen context fails
// under Xvfb with Mesa. Needs a QGuiApplication for the offscreen part.

#include <velmora_graphic_export.h>

class VELMORA_GRAPHIC_EXPORT Vg3OpenInventor
{
public:
    static Vg3OpenInventor* getInstance();

    // Safe to call again: later calls do nothing.
    void init();
    // The font family of the views' texts (legend, axes, overlays), looked up through
    // fontconfig; Coin draws its built-in bitmap font when no such font is installed.
    static const char* getTextFontName() { return "DejaVu Sans"; }
    bool isInitialized() const;

private:
    Vg3OpenInventor() = default;
    bool _initialized = false;
};
