// The client: started in the game's folder, without arguments.

#include "app/MainGame.h"
#include "diag/StackText.h"
#include "platform/CrashReport.h"
#include "platform/gl/OpenGl.h"

int main() {
    platform::OutliveSignals();
    platform::ReportCrashes({"_error.txt", "kelvane-stack", StackText});
    platform::UseOpenGl();
    return MainGame().WinMain();
}
