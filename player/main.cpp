// Orbel Player: the process starts and ends here; everything in between is the application
// object's start-up (CQKPlayerApp::InitInstance).
#include "platform/CQKApplication.h"
#include "player/CQKPlayerApp.h"

int main(int argc, char** argv)
{
    const QStringList args = CQKApplication::CommandLine(argc, argv);
    CQKApplication app(argc, argv);
    theApp.SetCommandLine(args);
    theApp.InitInstance();
    return 0;
}
