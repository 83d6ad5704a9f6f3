// The client: started in the game's folder, without arguments.

#include "app/MainGame.h"
#include "platform/gl/OpenGl.h"

int main() {
    platform::UseOpenGl();
    return MainGame().WinMain();
}
