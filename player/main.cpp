// Orbel Player: the process starts and ends here; everything in between is the application
// object's start-up (CQKPlayerApp::InitInstance).
#include "controls/QKRegisterControls.h"
#include "platform/CQKApplication.h"
#include "player/CQKPlayerApp.h"

#include <malloc.h>

int main(int argc, char** argv)
{
    // The decoder, the renderer and the toolkit run a score of threads, and glibc would give
    // each its own heap, where freed frames linger. Two heaps, and large blocks always mapped
    // apart (and so given back when freed), keep the memory of a playing video down at no
    // measurable cost in time.
    mallopt(M_ARENA_MAX, 2);
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    const QStringList args = CQKApplication::CommandLine(argc, argv);
    CQKApplication app(argc, argv);
    // The control kinds are known before the first skin file is read.
    QKRegisterControls();
    theApp.SetCommandLine(args);
    theApp.InitInstance();
    CQKApplication::EndProcess(0);
    return 0;
}
