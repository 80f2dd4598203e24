#pragma once
// The panel faces showcase of the toolkit demonstration: a window of its own.
#include <memory>

class CQKHostWnd;

// Opens a window with the player panel's drawn faces on buttons of the panel's ids, and
// every face strip on a button of its own. Null when the window cannot be made.
std::unique_ptr<CQKHostWnd> OpenFacesDemo();
