// Linked into every test of a sanitizer build: keeps the GL driver loaded until the process
// ends. Not only the GL suites load it: with a display at hand, Qt's offscreen platform makes
// its GL contexts through GLX too. The driver is unloaded when the X display closes, before
// the leak check runs at exit; what it still held then is reported as leaked from an unmapped
// address, which the report pins on whichever library now lies near it (one of ours, as often
// as not), so that no suppression can name it. Kept loaded, its allocations stay reachable,
// and the ones it really loses name the driver, which tests/lsan.supp suppresses.

#include <QCoreApplication>

#include <dlfcn.h>
#include <link.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

int collectDriver(dl_phdr_info* info, size_t, void* data)
{
    static const char suffix[] = "_dri.so";
    const size_t suffixLength = sizeof(suffix) - 1;
    const char* name = info->dlpi_name;
    const size_t length = name ? std::strlen(name) : 0;
    if (length > suffixLength && std::strcmp(name + length - suffixLength, suffix) == 0)
        static_cast<std::vector<std::string>*>(data)->emplace_back(name);
    return 0;
}

// Runs as the application is destroyed, before the platform plugin closes the display.
void pinDrivers()
{
    std::vector<std::string> drivers;
    dl_iterate_phdr(&collectDriver, &drivers);
    for (const std::string& driver : drivers)
        dlopen(driver.c_str(), RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

void installPin()
{
    qAddPostRoutine(&pinDrivers);
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(installPin)
