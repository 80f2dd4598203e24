// Orbel Player: the process starts and ends here; everything in between is the application
// object's start-up (CQKPlayerApp::InitInstance).
#include "controls/QKRegisterControls.h"
#include "platform/CQKApplication.h"
#include "player/CQKPlayerApp.h"

int main(int argc, char** argv)
{
    const QStringList args = CQKApplication::CommandLine(argc, argv);
    CQKPlayerApp::LoadEngineUnlessHandingOver();
    CQKApplication app(argc, argv);
    // The control kinds are known before the first skin file is read.
    QKRegisterControls();
    theApp.SetCommandLine(args);
    theApp.InitInstance();
    CQKApplication::EndProcess(0);
    return 0;
}
