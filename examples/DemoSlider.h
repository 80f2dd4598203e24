#pragma once
// The demonstration's second window: sliders, static texts and a link button.
#include <memory>

class CQKHostWnd;

// Makes and shows the window beside the main demonstration window; null if it could not be
// made. The window lives as long as the returned object.
std::unique_ptr<CQKHostWnd> OpenSliderDemo();
